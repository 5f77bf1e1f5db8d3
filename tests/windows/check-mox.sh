#!/bin/sh
# Usage: check-mox.sh RUN_WINE BUILD_FOLDER
# What of mox depends on Windows: characters and lengths of paths, folders where nothing can be made, line ends,
# Ctrl-C.
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

# Any character may be in a path: on the command line, in what mox writes, and in what it says.
folder='Träger 🔧'
mkdir "$folder"
cp beam.mox "$folder/模型.mox"
mox check -q "$folder/模型.mox" || complain "a path that is not ASCII is not found"
mox diff "$folder/模型.mox" beam.mox > /dev/null || complain "a path that is not ASCII is not compared"
mox export -q "$folder/模型.mox" "$folder/形.pvd" || complain "nothing is exported to a path that is not ASCII"
grep -q 'file="形_steps/step_00001.vtu"' "$folder/形.pvd" || complain "the series names its folder wrongly"
[ -f "$folder/形_steps/step_00001.vtu" ] || complain "the folder of a series has the wrong name"
mox extract --all "$folder/數" "$folder/模型.mox" || complain "nothing is extracted to a path that is not ASCII"
[ -f "$folder/數/index.json" ] || complain "the folder of an extraction has the wrong name"
mox split "$folder/模型.mox" "$folder/片" || complain "nothing is split into a folder that is not ASCII"
mox join -q --under '{file}' "$folder/Größe.mox" "$folder/模型.mox" "$folder"/片/*.mox ||
    complain "files are not joined at a path that is not ASCII"
mox tree "$folder/Größe.mox" | grep 模型 > /dev/null || complain "a group is not called like its file"
mox view --no-open -q -o "$folder/見.html" "$folder/模型.mox" || complain "there is no page at a path that is not ASCII"
[ -f "$folder/見.html" ] || complain "the page has the wrong name"
if mox info "$folder/無.mox" 2> message; then
    complain "a file that is not there was read"
fi
grep -q "^mox info: $folder/無.mox: there is no such file" message || complain "the message is: $(cat message)"
! ls "$folder" | grep '[.]part' || complain "something temporary is left"

# Paths of more than 259 characters.
part=$(printf '%080d' 0)
mkdir -p "$part/$part/$part/$part"
mox split beam.mox "$part/$part/$part/$part/pieces" || complain "a long path is not written"
mox check -q "$part/$part/$part/$part/pieces"/1*.mox || complain "a long path is not read"

# Where nothing can be made. (A file that is read-only is not tried: wine lets root replace it.)
if mox join -q /proc/whole.mox pieces/*.mox 2> message; then
    complain "a file was made where none can be"
fi
[ "$(wc -l < message)" -eq 1 ] && grep -q 'whole.mox: ' message || complain "the message is: $(cat message)"

# What is meant for programs has its bytes unchanged.
if mox dump beam.mox | od -An -v -tx1 | tr -d '\n' | grep -q '0d 0a'; then
    complain "the lines of a dump end in CR and LF"
fi

# Ctrl-C reaches a Windows program as a call in a thread of its own; wine makes it of SIGINT.
run examples/cantilever/cantilever --size 2 large.mox > /dev/null
"$wine" "$build" "$build/tools/mox/mox.exe" extract --all numbers large.mox & # no function, whose process would be another
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
