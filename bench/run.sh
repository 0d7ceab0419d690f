#!/usr/bin/env bash
# Times vornhale-cli convert on generated zLog .ALL logs of growing size and prints the
# wall time and the peak memory of each run, then times the entity import and lookup.
# Usage: bench/run.sh BUILD_DIR
set -euo pipefail
build=${1:-build}
cli="$build/cli/vornhale-cli"
gen="$build/bench/GenerateZlogAll"
calls=/usr/share/hamradio-files/MASTER.SCP
work="$build/bench-run"
rm -rf "$work" && mkdir -p "$work"

printf '%-10s %10s %12s %14s\n' contacts seconds "peak MB" "µs/contact"
# The exchange analysis counts in 16 bits, so a log stays below 32,768 lines.
for n in 1000 10000 30000; do
    log="$work/BENCH$n.ALL"
    "$gen" "$n" "$log" "$calls"
    home="$work/home$n"
    # One warm-up run so that the program folder exists, then the measured one.
    "$cli" convert --home "$home" "$log" > /dev/null 2>&1
    /usr/bin/time -f '%e %M' -o "$work/time$n" "$cli" convert --home "$home" "$log" > /dev/null 2>&1
    read -r secs kb < "$work/time$n"
    awk -v n="$n" -v s="$secs" -v kb="$kb" \
        'BEGIN { printf "%-10d %10.2f %12.1f %14.2f\n", n, s, kb / 1024, s * 1e6 / n }'
done

# The same contacts as a Cabrillo log (with its zLog .TXT form), an ADIF log and a zLog .ALL
# log, each converted end to end: 30,000 in the three forms, to compare the time per contact,
# and 100,000 as Cabrillo and ADIF (the .ALL form stays below 32,768 lines, see above).
"$build/bench/GenerateCabrilloAdif" 30000 "$work/SAME30000" "$calls"
"$build/bench/GenerateCabrilloAdif" 100000 "$work/SAME100000" "$calls"
echo
printf '%-16s %10s %10s %12s %14s\n' "same contacts" seconds "cpu s" "peak MB" "µs/contact"
for run in "30000 all ALL" "30000 cbr CBR" "30000 adi ADI" "100000 cbr CBR" "100000 adi ADI"; do
    read -r n kind ext <<< "$run"
    log="$work/SAME$n.$ext"
    home="$work/home-same-$kind"
    "$cli" convert --home "$home" --type "$kind" "$log" > /dev/null 2>&1
    /usr/bin/time -f '%e %U %S %M' -o "$work/time-same" "$cli" convert --home "$home" --type "$kind" "$log" > /dev/null 2>&1
    read -r secs user sys kb < "$work/time-same"
    awk -v what="$n $kind" -v n="$n" -v s="$secs" -v u="$user" -v y="$sys" -v kb="$kb" \
        'BEGIN { printf "%-16s %10.2f %10.2f %12.1f %14.2f\n", what, s, u + y, kb / 1024, s * 1e6 / n }'
done

# A 10,000-contact log against name, QTH and province masters of 100,000 lines each.
home="$work/home-masters"
log="$work/BENCH10000.ALL"
"$cli" settings --home "$home" init > /dev/null 2>&1
"$build/bench/GenerateMasters" 100000 "$home" "$calls"
masters="--set Check15=1 --set Check29=1 --set Check25=1 --set Check27=1 --set Check5=1 --province-master $home/bench_prov.mas"
"$cli" convert --home "$home" $masters "$log" > /dev/null 2>&1
/usr/bin/time -f '%e %M' -o "$work/time-masters" "$cli" convert --home "$home" $masters "$log" > /dev/null 2>&1
read -r secs kb < "$work/time-masters"
echo
awk -v s="$secs" -v kb="$kb" \
    'BEGIN { printf "10,000 contacts, 3 masters of 100,000 lines: %.2f s, %.1f MB peak\n", s, kb / 1024 }'

# The cty.dat import and the entity lookup, apart from the whole run.
echo
if [ -f /usr/share/hamradio-files/cty.dat ]; then
    "$build/bench/EntityBench"
else
    echo "EntityBench skipped: /usr/share/hamradio-files/cty.dat is not installed"
fi

# The history scan of a HAMLOG log of a million QSOs (database and CSV export) into the
# history master, and the lookups of a 10,000-contact log against that master.
hist="$build/bench/HistoryBench"
hwork="$work/history"
"$hist" generate 1000000 "$hwork" "$calls"
echo
printf '%-28s %10s %12s\n' "history (1,000,000 QSOs)" seconds "peak MB"
for source in Hamlog.hdb export.csv; do
    /usr/bin/time -f '%M' -o "$hwork/time-$source" "$hist" scan "$hwork/$source" "$hwork/home-$source" > "$hwork/secs-$source"
    awk -v what="scan of $source" -v s="$(cat "$hwork/secs-$source")" -v kb="$(cat "$hwork/time-$source")" \
        'BEGIN { printf "%-28s %10.2f %12.1f\n", what, s, kb / 1024 }'
done
/usr/bin/time -f '%M' -o "$hwork/time-lookup" "$hist" lookup "$hwork/home-Hamlog.hdb" 10000 "$calls" > "$hwork/lookup"
read -r load secs hits entries < "$hwork/lookup"
awk -v l="$load" -v s="$secs" -v kb="$(cat "$hwork/time-lookup")" -v h="$hits" -v e="$entries" \
    'BEGIN { printf "%-28s %10.3f %12.1f   (load %.3f s, %d calls in the master, %d hits)\n", "lookup of 10,000 contacts", s, kb / 1024, l, e, h }'

# A whole conversion of the 10,000-contact log against that history: the first run scans the
# database into the master, the second reuses the master as the program does.
home="$work/home-history"
history="--set Option04=1 --set Check04=0 --set Check05=0 --set hamlog_hdb_dir=$hwork/Hamlog.hdb"
for run in scan reuse; do
    /usr/bin/time -f '%e %M' -o "$work/time-history-$run" "$cli" convert --home "$home" $history "$work/BENCH10000.ALL" > /dev/null 2>&1
    read -r secs kb < "$work/time-history-$run"
    awk -v what="10,000 contacts, history ($run)" -v s="$secs" -v kb="$kb" \
        'BEGIN { printf "%-28s %10.2f %12.1f\n", what, s, kb / 1024 }'
done

# The manager master of 100,000 lines: its load and the lookups of 10,000 contacts with the web
# search off, then a whole conversion of the 10,000-contact log against it.
mwork="$work/managers"
mkdir -p "$mwork"
"$build/bench/ManagerBench" generate 100000 "$mwork/MNG_Vornhale_full.txt" "$calls"
read -r load walk hits entries < <("$build/bench/ManagerBench" lookup "$mwork/MNG_Vornhale_full.txt" 10000 "$calls")
echo
awk -v l="$load" -v w="$walk" -v h="$hits" \
    'BEGIN { printf "manager master, 100,000 lines: load %.3f s + 10,000 lookups %.3f s = %.3f s (target 0.3 s, %s), %d hits\n", l, w, l + w, (l + w < 0.3 ? "met" : "missed"), h }'
home="$work/home-managers"
managers="--set Check18=0 --set mng_z_full_txt_dir=$mwork/MNG_Vornhale_full.txt"
"$cli" convert --home "$home" $managers "$work/BENCH10000.ALL" > /dev/null 2>&1
/usr/bin/time -f '%e %M' -o "$work/time-managers" "$cli" convert --home "$home" $managers "$work/BENCH10000.ALL" > /dev/null 2>&1
read -r secs kb < "$work/time-managers"
awk -v s="$secs" -v kb="$kb" \
    'BEGIN { printf "10,000 contacts, manager master of 100,000 lines: %.2f s, %.1f MB peak\n", s, kb / 1024 }'
