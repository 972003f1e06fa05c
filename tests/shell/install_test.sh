#!/usr/bin/env bash
# The desktop program installed into a prefix of its own: everything a desktop needs is in place,
# and the installed copy starts, finds its font, movement definitions and guide relative to itself
# (not in the build tree), and ends cleanly.
set -u
cmake=$1
build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
failures=0

check() { # description, then a command that must succeed
    local what=$1; shift
    if ! "$@"; then echo "FAILED: $what"; failures=$((failures + 1)); fi
}

"$cmake" --install "$build" --prefix "$prefix" >"$work/install.out" 2>&1 || { cat "$work/install.out"; exit 1; }

for file in bin/corrieval \
            share/corrieval/fonts/Tormaven_Corrieval4.otf \
            share/corrieval/movements/ghb-movements.json \
            share/corrieval/help/index.html \
            share/corrieval/examples/Corrieval_March.bww \
            share/applications/corrieval.desktop \
            share/icons/hicolor/scalable/apps/corrieval.svg \
            share/mime/packages/corrieval.xml; do
    check "installs $file" test -e "$prefix/$file"
done
if command -v desktop-file-validate >/dev/null; then
    check "the desktop entry is valid" desktop-file-validate "$prefix/share/applications/corrieval.desktop"
fi
for ext in skb skt skp glm bww bmw; do
    check "the MIME package knows .$ext" grep -q "pattern=\"\*\.$ext\"" "$prefix/share/mime/packages/corrieval.xml"
done

mkdir -m 700 "$work/runtime"
env -u CORRIEVAL_FONT_DIR -u CORRIEVAL_MOVEMENTS_DIR \
    QT_QPA_PLATFORM=offscreen CORRIEVAL_EXIT_AFTER_START=1 CORRIEVAL_MESSAGES_TO_STDERR=1 \
    CORRIEVAL_DATA_DIR="$work/data" CORRIEVAL_CONFIG_DIR="$work/config" XDG_RUNTIME_DIR="$work/runtime" \
    timeout 60 "$prefix/bin/corrieval" >"$work/out" 2>"$work/err"
status=$?
check "the installed program starts and ends with status 0 (was $status)" test "$status" = 0
# Every message to the user (a missing font, definitions or folder) starts with the caption. The
# test has no sound server, which the program rightly says; nothing else may be wrong.
check "the installed program has nothing to complain of" \
    bash -c "! grep '^Corrieval: ' '$work/err' | grep -v 'The audio engine could not be initialised'"
check "start-up ran to its end" bash -c "tail -n 1 '$work/data/corrlog.log' | grep -q '^AddDocTemplate\.'"
check "the movement definitions were copied into the settings" grep -q 'Doublings' "$work/config/Corrieval4.ini"
check "the data folder was made" test -d "$work/data/Music Scores"
# Sanitizer builds make no recordings to ship.
if [ -d "$build/share/corrieval/samples" ]; then
    check "the shipped recordings were copied in" test -f "$work/data/Instrument Samples/bp1.wav"
fi
check "the running copy's mark is gone after the end" bash -c "! ls '$work/runtime' | grep -q TORMAVENBOOK"

if [ "$failures" -gt 0 ]; then
    sed 's/^/stderr: /' "$work/err"
    exit 1
fi
