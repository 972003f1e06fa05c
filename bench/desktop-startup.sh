#!/usr/bin/env bash
# Times the desktop program from process start to the first painted page of a tune named on the
# command line: the window is shown, the tune imported at its view's first paint, and the program
# ends once those events are handled (CORRIEVAL_EXIT_AFTER_START). Offscreen, fresh folders, after
# one warm-up run that fills the data folder. Prints each run and the median in milliseconds.
#   bench/desktop-startup.sh [BUILD_DIR] [TUNE] [RUNS]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
tune=${2:-data/examples/Corrieval_March.bww}
runs=${3:-7}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen CORRIEVAL_EXIT_AFTER_START=1
export CORRIEVAL_DATA_DIR="$work/data" CORRIEVAL_CONFIG_DIR="$work/config" XDG_RUNTIME_DIR="$work/run"
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
"$build/bin/corrieval" "$tune" >/dev/null 2>&1
times=()
for _ in $(seq "$runs"); do
    start=$(date +%s%N)
    "$build/bin/corrieval" "$tune" >/dev/null 2>&1
    end=$(date +%s%N)
    ms=$(( (end - start) / 1000000 ))
    times+=("$ms")
    echo "start to first page: $ms ms"
done
median=$(printf '%s\n' "${times[@]}" | sort -n | sed -n "$(( (runs + 1) / 2 ))p")
echo "median: $median ms"
