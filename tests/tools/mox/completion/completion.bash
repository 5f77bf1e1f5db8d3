#!/bin/bash
# Completes some command lines with the script of the program given as the only argument.
set -eu

source <("$1" completion bash)
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
cd "$folder"
touch "two words.mox"
mkdir inner

# expect WANTED WORD...: the completions of the last word, each in angle brackets.
expect() {
    local wanted=$1
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _mox
    local found
    found=$(printf '<%s>' "${COMPREPLY[@]}")
    if [[ "$found" != "$wanted" ]]; then
        echo "completing '$*': expected $wanted, got $found" >&2
        exit 1
    fi
}

expect '<stat>' mox st
expect '<--version>' mox --v
expect '<--attributes>' mox tree --a
expect '<-a>' mox tree -a
expect '<csv>' mox extract --format c
expect '<inner>' mox extract --all i
expect '<two words.mox>' mox extract -o t
expect '<>' mox extract --step t
expect '<fish>' mox completion f
expect '<import>' mox help im
expect '<--no-date>' mox --no-color dump --no-d
expect '<two words.mox>' mox info two
expect '<>' mox info nothing
echo "all completions are as expected"
