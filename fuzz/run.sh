#!/usr/bin/env bash
# Runs every fuzz target for a bounded time each, then prints one line per target: seconds,
# executions, corpus size and the outcome. Usage: fuzz/run.sh BUILD_DIR SECONDS [TARGET...]
set -euo pipefail
build=${1:-build-fuzz}
seconds=${2:-60}
shift 2 || true
here=$(cd "$(dirname "$0")" && pwd)
status=0
summary=()
if [ $# -gt 0 ]; then
    targets=()
    for name in "$@"; do targets+=("$build/fuzz/$name"); done
else
    targets=("$build"/fuzz/*_fuzz)
fi
for target in "${targets[@]}"; do
    name=$(basename "$target")
    corpus="$build/fuzz-corpus/$name"
    mkdir -p "$corpus"
    seeds="$here/corpus/$name"
    mkdir -p "$seeds"
    echo "== $name for ${seconds}s"
    outcome=ok
    if ! "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
            -print_final_stats=1 -artifact_prefix="$build/fuzz-corpus/$name-" \
            "$corpus" "$seeds" 2>"$build/$name.log"; then
        echo "FAILED: $name (see $build/$name.log)"
        tail -30 "$build/$name.log"
        status=1
        outcome=FINDING
    fi
    runs=$(grep -oE "stat::number_of_executed_units: *[0-9]+" "$build/$name.log" | grep -oE "[0-9]+$" || echo "?")
    files=$(find "$corpus" -type f | wc -l)
    summary+=("$(printf '%-26s %6ss %12s execs %6s corpus  %s' "$name" "$seconds" "$runs" "$files" "$outcome")")
done
echo
printf '%s\n' "${summary[@]}"
exit $status
