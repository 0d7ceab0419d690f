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
for n in 1000 10000 100000; do
    log="$work/BENCH$n.ALL"
    "$gen" "$n" "$log" "$calls"
    home="$work/home$n"
    # One warm-up run so that the program folder exists, then the measured one.
    "$cli" convert --home "$home" "$log" > /dev/null
    /usr/bin/time -f '%e %M' -o "$work/time$n" "$cli" convert --home "$home" "$log" > /dev/null
    read -r secs kb < "$work/time$n"
    awk -v n="$n" -v s="$secs" -v kb="$kb" \
        'BEGIN { printf "%-10d %10.2f %12.1f %14.2f\n", n, s, kb / 1024, s * 1e6 / n }'
done

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
