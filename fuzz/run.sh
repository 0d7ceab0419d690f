#!/usr/bin/env bash
# Runs every fuzz target for a bounded time each. Usage: fuzz/run.sh BUILD_DIR SECONDS
set -euo pipefail
build=${1:-build-fuzz}
seconds=${2:-60}
here=$(cd "$(dirname "$0")" && pwd)
status=0
for target in "$build"/fuzz/*_fuzz; do
    name=$(basename "$target")
    corpus="$build/fuzz-corpus/$name"
    mkdir -p "$corpus"
    seeds="$here/corpus/$name"
    echo "== $name for ${seconds}s"
    if ! "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
            -artifact_prefix="$build/fuzz-corpus/$name-" "$corpus" "$seeds" 2>"$build/$name.log"; then
        echo "FAILED: $name (see $build/$name.log)"
        tail -30 "$build/$name.log"
        status=1
    else
        grep -E "^#[0-9]+.*DONE|Done [0-9]+ runs" "$build/$name.log" | tail -1 || true
    fi
done
exit $status
