#!/usr/bin/env bash
# The command-line tool end to end: inspect, convert byte for byte, draw pages, and the error
# contract (one line on standard error, exit 1 for a file problem, exit 2 for a wrong command line).
set -u
cli=$(realpath "$1") # absolute: one check runs from the work folder
example=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Drawing starts a GUI application, which complains on standard error without a runtime folder.
export XDG_RUNTIME_DIR=$work/runtime
mkdir -m 700 "$XDG_RUNTIME_DIR"
failures=0
passes=0

check() { # description, then a command that must succeed
    local what=$1; shift
    if "$@"; then passes=$((passes + 1)); else echo "FAILED: $what"; failures=$((failures + 1)); fi
}

status_of() { "$@" >"$work/out" 2>"$work/err"; echo $?; }

check "info succeeds" test "$(status_of "$cli" info "$example")" = 0
check "info shows the tree" grep -q '^  CTunePage (0, 0, 8.267 x 11.692)' "$work/out"
check "info shows bars with their repeat lines" grep -q 'CBarEx .*start-repeat' "$work/out"

check "convert to skb" test "$(status_of "$cli" convert "$example" "$work/copy.skb")" = 0
check "the converted score is byte for byte the same" cmp -s "$example" "$work/copy.skb"
check "a template converts too" cp "$example" "$work/t.skt"
check "convert a template" test "$(status_of "$cli" convert "$work/t.skt" "$work/t.skb")" = 0
check "convert to the player form" test "$(status_of "$cli" convert "$example" "$work/tune.skp")" = 0
check "the player file carries its marker" test "$(head -c 18 "$work/tune.skp" | od -An -tx1 | tr -d ' \n')" = "07000000fffeff056b005f0054002d007200"

head -c 100 "$example" >"$work/short.skb"
check "a truncated file exits 1" test "$(status_of "$cli" info "$work/short.skb")" = 1
check "with one line naming the file and the byte" grep -qx "corrieval-cli: $work/short.skb: end of file at byte [0-9]*" "$work/err"
check "and nothing else" test "$(wc -l <"$work/err")" = 1
check "a failed conversion writes nothing" test "$(status_of "$cli" convert "$work/short.skb" "$work/none.skb")" = 1
check "no output file" test ! -e "$work/none.skb"

sed 's/CStaveGroup/CStaveGroop/' "$example" >"$work/bad.skb"
check "an unknown class exits 1" test "$(status_of "$cli" info "$work/bad.skb")" = 1
check "and names the class" grep -q "bad class 'CStaveGroop' at byte" "$work/err"
check "a missing file exits 1" test "$(status_of "$cli" info "$work/missing.skb")" = 1

png_size() { od -An -tu1 -j16 -N8 "$1" | awk '{ print $1*16777216 + $2*65536 + $3*256 + $4 "x" $5*16777216 + $6*65536 + $7*256 + $8 }'; }

check "draw to pdf" test "$(status_of "$cli" convert "$example" "$work/tune.pdf")" = 0
check "which names the file written" grep -qx "$work/tune.pdf" "$work/out"
check "a pdf of one page" test "$(grep -ac '/Type /Page$' "$work/tune.pdf")" = 1
check "draw to svg for print" test "$(status_of "$cli" convert "$example" "$work/tune.svg" --print)" = 0
check "an svg" grep -q '<svg' "$work/tune.svg"
check "draw to png at 100 dpi" test "$(status_of "$cli" convert --dpi 100 "$example" "$work/tune.png")" = 0
check "an A4 page at 100 dpi" test "$(png_size "$work/tune.png")" = 827x1169
check "png at the default 150 dpi for print" test "$(status_of "$cli" convert "$example" "$work/print.png" --print)" = 0
check "an A4 page at 150 dpi" test "$(png_size "$work/print.png")" = 1240x1754
check "draw to a missing folder exits 1" test "$(status_of "$cli" convert "$example" "$work/no/tune.pdf")" = 1
check "with one line naming the file" grep -qx "corrieval-cli: $work/no/tune.pdf: .*" "$work/err"
check "and nothing else" test "$(wc -l <"$work/err")" = 1
mkdir "$work/nofont"
check "no music font exits 1" test "$(CORRIEVAL_FONT_DIR=$work/nofont status_of "$cli" convert "$example" "$work/nofont.pdf")" = 1
check "saying so in one line" grep -q "^corrieval-cli: .*music font" "$work/err"
check "and drawing nothing" test ! -e "$work/nofont.pdf"
for dpi in 0 -5 abc 1e3 100000; do
    check "--dpi $dpi exits 2" test "$(status_of "$cli" convert --dpi "$dpi" "$example" "$work/dpi.png")" = 2
done
check "and writes nothing" test ! -e "$work/dpi.png"
check "--dpi for a pdf exits 2" test "$(status_of "$cli" convert --dpi 300 "$example" "$work/dpi.pdf")" = 2
check "--print for a score exits 2" test "$(status_of "$cli" convert --print "$example" "$work/print.skb")" = 2
check "an unknown option exits 2" test "$(status_of "$cli" convert --colour "$example" "$work/x.pdf")" = 2

# Sound, from recordings made up here: nine stereo files each as short as the player takes.
mkdir "$work/samples" "$work/nosamples"
python3 - "$work/samples" <<'EOF'
import sys, wave
for n in range(1, 10):
    with wave.open(f"{sys.argv[1]}/bp{n}.wav", "wb") as w:
        w.setnchannels(2)
        w.setsampwidth(2)
        w.setframerate(44100)
        w.writeframes(bytes([n, 16]) * 262144)
EOF
check "render to wav" test "$(status_of "$cli" convert "$example" "$work/tune.wav" --samples "$work/samples" --part 1)" = 0
check "which names the file written" grep -qx "$work/tune.wav" "$work/out"
check "a stereo 16-bit wav at 44,100 Hz" test "$(od -An -tx1 -j8 -N32 "$work/tune.wav" | tr -d ' \n')" = \
    "57415645666d7420100000000100020044ac000010b102000400100066616374"
check "sound in whole blocks of 40,960 bytes" test $(( ($(stat -c %s "$work/tune.wav") - 56) % 40960 )) = 0
check "no recordings exits 1" test "$(status_of "$cli" convert "$example" "$work/x.wav" --samples "$work/nosamples")" = 1
check "naming the folder and the file" grep -q "^corrieval-cli: $work/nosamples/: .*bp1.wav" "$work/err"
check "and nothing else" test "$(wc -l <"$work/err")" = 1
check "another instrument's recordings are missing" \
    test "$(status_of "$cli" convert "$example" "$work/x.wav" --samples "$work/samples" --instrument chanter)" = 1
check "naming its first file" grep -q "Chanter recordings: ch1.wav" "$work/err"
for bad in "--part 5" "--part none" "--tempo 0" "--tempo fast" "--instrument kazoo"; do
    # shellcheck disable=SC2086
    check "$bad exits 2" test "$(status_of "$cli" convert "$example" "$work/x.wav" $bad)" = 2
done
check "a tempo for a pdf exits 2" test "$(status_of "$cli" convert "$example" "$work/x.pdf" --tempo 90)" = 2
check "play without a sound device" \
    test "$(status_of "$cli" play "$example" --samples "$work/samples" --no-sound --tempo 999)" = 0
check "shows the bars as they play" grep -q "bar 1 of 16" "$work/out"
check "to the last" grep -q "bar 16 of 16" "$work/out"
check "Ctrl-C stops a loop" test "$(status_of timeout --preserve-status -s INT 1 \
    "$cli" play "$example" --samples "$work/samples" --no-sound --loop)" = 0
check "no sound server exits 1" \
    test "$(PULSE_SERVER="unix:$work/none" status_of "$cli" play "$example" --samples "$work/samples")" = 1
check "saying so" grep -q "^The audio engine could not be initialised." "$work/err"

# Imports: their messages name the file, --report lists the words passed over, and the batch form
# converts each file in a child process of its own, so that one broken file refuses only itself.
tune=$(dirname "$0")/../../data/examples/Corrieval_March.bww
printf "Bagpipe Reader:1.0\n\n& sharpf sharpc 2_4\nI!'' LA_4 B_4 ''!I\n" >"$work/broken.bww" # no heading texts, which only --strict refuses
cat >"$work/words.bww" <<'EOF'
Bagpipe Reader:1.0
"Passed Over",(T,C,0,0,Times New Roman,16,700,0,0,18,0,0,0)
"March",(Y,L,0,0,Times New Roman,14,400,0,0,18,0,0,0)
"Trad.",(M,R,0,0,Times New Roman,14,400,0,0,18,0,0,0)
& sharpf sharpc 2_4
I!'' LA_4 B_4 ! C_4 frobble D_4 !
E_4 F_4 ! HG_4 HA_4 ''!I
EOF
check "--report on an import" test "$(status_of "$cli" convert --report "$work/words.bww" "$work/words.skb")" = 0
check "lists the word passed over with its line" test "$(cat "$work/out")" = "$work/words.bww:6: passed over frobble"
{ head -n 5 "$work/words.bww"; echo "I!'' LA_4 $(yes frobble | head -n 10001 | tr '\n' ' ')B_4 ''!I"; } >"$work/many.bww"
check "--report on more words than are kept" test "$(status_of "$cli" convert --report "$work/many.bww" "$work/m.skb")" = 0
check "lists the first 10,000 and says so" test "$(wc -l <"$work/out") $(tail -n 1 "$work/out")" = \
    "10001 $work/many.bww: only the first 10000 words passed over are listed"
check "--report on a score lists nothing" test "$(status_of "$cli" convert --report "$example" "$work/r.skb")" = 0
check "nothing at all" test ! -s "$work/out"
check "a tune without heading texts imports in full" \
    test "$(status_of "$cli" convert "$work/broken.bww" "$work/untitled.skb")" = 0
check "but not strictly, where it is a broken file" \
    test "$(status_of "$cli" convert --strict "$work/broken.bww" "$work/untitled.skb")" = 1
mkdir -p "$work/strict-config"
printf '[Settings]\nStrictBWW=1\n' >"$work/strict-config/Corrieval4 Book.ini"
check "nor with StrictBWW in the settings" \
    test "$(CORRIEVAL_CONFIG_DIR="$work/strict-config" status_of "$cli" convert "$work/broken.bww" "$work/untitled.skb")" = 1
# Without a runtime folder every child starts as quietly as the tool itself.
check "a batch with a broken file exits 1" \
    test "$(status_of env -u XDG_RUNTIME_DIR "$cli" convert --to png --out "$work/batch" --dpi 20 --strict "$tune" "$work/broken.bww")" = 1
"$cli" convert --dpi 20 --strict "$tune" "$work/single.png" >/dev/null
check "the good file is drawn with the options given" cmp -s "$work/batch/Corrieval_March.png" "$work/single.png"
check "and named on standard output" grep -qx "$work/batch/Corrieval_March.png" "$work/out"
check "the broken file writes nothing" test ! -e "$work/batch/broken.png"
check "its message names it" grep -qx "$work/broken.bww: Invalid BWW file!" "$work/err"
check "and Qt's start says nothing" test "$(grep -c QStandardPaths "$work/err")" = 0
check "the summary counts the files and the one message" \
    test "$(tail -n 1 "$work/err") $(grep -c -e "^$tune: " -e "^$work/broken.bww: " "$work/err")" = \
    "2 files: 1 converted, 1 refused, 1 message 1"
check "two inputs of one name exit 2" \
    test "$(status_of "$cli" convert --to skb --out "$work/same" "$work/words.bww" "$work/batch/../words.bww")" = 2
check "naming both" grep -q "^corrieval-cli: '$work/words.bww' and '$work/batch/../words.bww' " "$work/err"
check "and converting neither" test ! -e "$work/same"
cp "$work/words.bww" "$work/-dash.bww"
check "an input named like an option" \
    test "$(cd "$work" && status_of "$cli" convert --to skb --out batch --report -- -dash.bww)" = 0
check "reaches its conversion as a file" grep -qx -- "-dash.bww:6: passed over frobble" "$work/out"
mkfifo "$work/stuck.bww" # never opened for writing, so reading it never ends
check "a conversion that hangs is stopped and refused" test "$(CORRIEVAL_CONVERT_TIME_LIMIT=1 \
    status_of "$cli" convert --to skb --out "$work/batch" "$work/stuck.bww" "$work/words.bww")" = 1
check "saying so" grep -qx "$work/stuck.bww: took too long and was stopped" "$work/err"
check "while the other converts" grep -qx "2 files: 1 converted, 1 refused, 1 message" "$work/err"

# Every command that reads a tune imports a BWW tune on the way, as convert does.
check "info on a BWW tune" test "$(status_of "$cli" info "$tune")" = 0
check "shows the imported score" grep -q '^CCorrievalDoc version' "$work/out"
check "sequence on a BWW tune" test "$(status_of "$cli" sequence "$tune")" = 0
check "lists its notes" grep -qP '^0\t0\t0\t' "$work/out"
check "play on a BWW tune" \
    test "$(status_of "$cli" play "$tune" --samples "$work/samples" --no-sound --tempo 999)" = 0
check "goes through its bars" grep -q "bar 1 of " "$work/out"
check "a broken BWW tune in info exits 1" \
    test "$(CORRIEVAL_CONFIG_DIR="$work/strict-config" status_of "$cli" info "$work/broken.bww")" = 1
check "with the import's message naming it" grep -qx "$work/broken.bww: Invalid BWW file!" "$work/err"
check "a clean conversion without a runtime folder" \
    test "$(status_of env -u XDG_RUNTIME_DIR "$cli" convert "$tune" "$work/clean.pdf")" = 0
check "says nothing on standard error" test ! -s "$work/err"

# Help on standard output with status 0, for the tool and for each command.
for command in convert play info sequence movements make-samples; do
    check "$command --help exits 0" test "$(status_of "$cli" "$command" --help)" = 0
    check "with its own usage" grep -q "^usage: corrieval-cli $command" "$work/out"
    check "and its options" grep -q "^  -h, --help" "$work/out"
    check "and nothing on standard error" test ! -s "$work/err"
    cp "$work/out" "$work/help"
    check "$command -h is the same" test "$(status_of "$cli" "$command" -h)" = 0
    check "the same text" cmp -s "$work/out" "$work/help"
done
check "--help with a wrong option still helps" test "$(status_of "$cli" convert --colour --help)" = 0
check "help COMMAND helps too" test "$(status_of "$cli" help play)" = 0
check "the same text" cmp -s "$work/out" <("$cli" play --help)
for help in --help -h help; do
    check "the tool's $help exits 0" test "$(status_of "$cli" $help)" = 0
    check "listing the commands" grep -q "^  make-samples  " "$work/out"
done
version=$(sed -n 's/^project(Corrieval VERSION \([0-9.]*\).*/\1/p' "$(dirname "$0")/../../CMakeLists.txt")
check "--version exits 0" test "$(status_of "$cli" --version)" = 0
check "with the project's version" test "$(cat "$work/out")" = "corrieval-cli (Corrieval) $version"

# A wrong command line: its one line, where to find the right usage, and status 2.
wrong_line() { # the command's name (empty for the tool), then the line
    local command=$1; shift
    check "'$*' exits 2" test "$(status_of "$cli" "$@")" = 2
    check "with one line of error" test "$(wc -l <"$work/err") $(head -n 1 "$work/err" | cut -c 1-14)" = "2 corrieval-cli:"
    check "then where help is" test "$(tail -n 1 "$work/err")" = "Try 'corrieval-cli ${command:+$command }--help'."
    check "and nothing on standard output" test ! -s "$work/out"
}
wrong_line ""
wrong_line "" frobnicate
wrong_line "" help frobnicate
wrong_line convert convert "$example"
wrong_line convert convert "$example" "$work/x.txt"
wrong_line convert convert --colour "$example" "$work/x.pdf"
wrong_line convert convert --to pdf "$example"
wrong_line info info "$example" "$example"
wrong_line info info "$work/notes.txt"
wrong_line sequence sequence
wrong_line play play "$tune" --tempo 0
wrong_line play play "$tune" --dpi 100
wrong_line movements movements extra
wrong_line make-samples make-samples --colour

echo "$passes passed, $failures failed"
test "$failures" = 0
