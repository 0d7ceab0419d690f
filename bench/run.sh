#!/usr/bin/env bash
# Times vornhale-cli convert on generated zLog .ALL logs of growing size and prints the
# wall time and the peak memory of each run. Usage: bench/run.sh BUILD_DIR
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
