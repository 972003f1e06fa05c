#!/usr/bin/env bash
# What `cmake --install` puts in place for corrieval-cli: the program, its manual page, which
# documents every option the program's help lists, and the bash completion, which offers the
# commands, their options, the choices of an option and the files of the kinds each place takes.
set -u
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
failures=0
passes=0

check() { # description, then a command that must succeed
    local what=$1; shift
    if "$@"; then passes=$((passes + 1)); else echo "FAILED: $what"; failures=$((failures + 1)); fi
}

check "cmake --install into a fresh prefix" cmake --install "$build" --prefix "$prefix/usr" >/dev/null
cli=$prefix/usr/bin/corrieval-cli
page=$prefix/usr/share/man/man1/corrieval-cli.1
completion=$prefix/usr/share/bash-completion/completions/corrieval-cli
check "the program is installed" test -x "$cli"
check "and runs" test "$("$cli" --version | cut -d ' ' -f 1-2)" = "corrieval-cli (Corrieval)"
check "the manual page is installed" test -f "$page"
check "bash-completion finds the completion by the command's name" test -f "$completion"

if command -v man >/dev/null; then
    check "man formats the page without a warning" \
        test -z "$(LC_ALL=C MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)"
    LC_ALL=C MANWIDTH=200 man -l "$page" 2>/dev/null >"$prefix/page.txt"
    for command in convert play info sequence movements make-samples; do
        check "the page has $command" grep -q "corrieval-cli $command" "$prefix/page.txt"
        for option in $("$cli" "$command" --help | grep -oE '^  (-h, )?--[a-z-]+' | sed 's/.* //'); do
            # as the heading of an item of its own
            check "the page documents $command $option" grep -qE -- "^ {7}(-h, )?$option( |$)" "$prefix/page.txt"
        done
    done
fi

# Completion, as bash asks for it: the words typed so far and the one being completed.
# shellcheck disable=SC1090
source "$completion"
complete_line() { # the words of the line; the last is the one being completed
    COMP_WORDS=("$cli" "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _corrieval_cli
    printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' '
}
check "the commands" test "$(complete_line "")" = \
    "--help --version convert help info make-samples movements play sequence "
check "a command's options, from its help" test "$(complete_line play --)" = \
    "--help --instrument --loop --no-sound --part --samples --tempo "
check "the kinds --to takes" test "$(complete_line convert --to "")" = "pdf png skb skp svg wav "
check "the instruments" test "$(complete_line play x.skb --instrument smallpipes-)" = \
    "smallpipes-a smallpipes-bb smallpipes-c smallpipes-d "
mkdir "$prefix/tunes" "$prefix/tunes/folder"
touch "$prefix/tunes/"{a.bww,b.BMW,c.skb,d.txt,e.pdf}
cd "$prefix/tunes" || exit 1
check "the tunes a command reads, and folders" test "$(complete_line info "")" = "a.bww b.BMW c.skb folder "
check "the kinds convert writes after the tune" test "$(complete_line convert a.bww "")" = "c.skb e.pdf folder "

echo "$passes passed, $failures failed"
test "$failures" = 0
