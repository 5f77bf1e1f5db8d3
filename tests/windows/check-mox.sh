#!/bin/sh
# Usage: check-mox.sh RUN_WINE BUILD_FOLDER
# What of mox depends on Windows: files that are open, line ends, Ctrl-C.
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

run examples/cantilever/cantilever beam.mox > /dev/null || complain "the example does not save"
mox check beam.mox || complain "the file is not whole"
mox split beam.mox pieces || complain "a folder is not made"
mox join -q whole.mox pieces/*.mox || complain "files are not joined"
mox check whole.mox || complain "the joined file is not whole"

# A file that exists is an error in one line, and stays as it is.
if mox join whole.mox pieces/*.mox 2> message; then
    complain "a file that exists was replaced"
fi
grep -q 'whole.mox: exists already' message || complain "the message is: $(cat message)"

# What is meant for programs has its bytes unchanged.
if mox dump beam.mox | od -An -v -tx1 | tr -d '\n' | grep -q '0d 0a'; then
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
wait $process || true # wine lets it end with 0, Windows with another code
[ ! -e numbers ] || complain "the interrupted extraction left something under the final name"
! ls | grep '[.]part' || complain "the interrupted extraction left something temporary"

[ $failed -ne 0 ] || echo "check-mox.sh: all is well"
exit $failed
