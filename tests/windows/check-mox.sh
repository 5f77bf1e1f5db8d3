#!/bin/sh
# Usage: check-mox.sh RUN_WINE BUILD_FOLDER
# What depends on Windows: names in UTF-8, line ends, Ctrl-C.
set -eu
wine=$1
build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failed=0
complain() {
    echo "check-mox.sh: $1" >&2
    failed=1
}
run() {
    program=$1
    shift
    "$wine" "$build" "$build/$program.exe" "$@"
}
mox() {
    run tools/mox/mox "$@"
}

# The example and mox are programs with the manifest that asks for UTF-8.
run examples/cantilever/cantilever 'Größe-Ω漢.mox' > /dev/null || complain "the library does not save under a name in UTF-8"
[ -f 'Größe-Ω漢.mox' ] || complain "the file has not the name that was given"
mox check 'Größe-Ω漢.mox' || complain "a file with a name in UTF-8 is not read"
mox split 'Größe-Ω漢.mox' 'Teile-Ω漢' || complain "a folder with a name in UTF-8 is not made"
mox join -q 'Ganz-Ω漢.mox' 'Teile-Ω漢'/*.mox || complain "files with names in UTF-8 are not joined"
mox check 'Ganz-Ω漢.mox' || complain "the joined file is not whole"

# A file that exists is an error in one line, and stays as it is.
if mox join 'Ganz-Ω漢.mox' 'Teile-Ω漢'/*.mox 2> message; then
    complain "a file that exists was replaced"
fi
grep -q 'Ganz-Ω漢.mox: exists already' message || complain "the message does not name the file in UTF-8: $(cat message)"

# What is meant for programs has its bytes unchanged.
if mox dump 'Größe-Ω漢.mox' | od -An -v -tx1 | tr -d '\n' | grep -q '0d 0a'; then
    complain "the lines of a dump end in CR and LF"
fi

# Ctrl-C reaches a Windows program as a call in a thread of its own; wine makes it of SIGINT.
run examples/cantilever/cantilever --size 2 large.mox > /dev/null
mox extract --all numbers large.mox &
process=$!
attempts=0
until ls | grep -q '[.]part$' || [ $attempts -eq 600 ] || [ -d numbers ]; do
    sleep 0.1
    attempts=$((attempts + 1))
done
ls | grep -q '[.]part$' || complain "the extraction was not met at work"
kill -INT $process
! wait $process || complain "the interrupted extraction ended as if nothing had happened"
[ ! -e numbers ] || complain "the interrupted extraction left something under the final name"
! ls | grep '[.]part' || complain "the interrupted extraction left something temporary"

[ $failed -ne 0 ] || echo "check-mox.sh: all is well"
exit $failed
