#!/usr/bin/env bash
# Plays the example tune through the sound server (started when none runs; with no sound card it
# plays into a null sink) while the window resizes, zooms and scrolls without a pause, and reports
# how often the server ran out of sound. Load the machine further (for example a build) to see
# play hold under two busy cores.
#   bench/play-while-busy.sh [BUILD_DIR] [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
scripts/sound-server
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
exec "$build/bin/corrieval-play-busy" data/examples/Corrieval_March.bww "$build/share/corrieval/samples/" "${2:-20}"
