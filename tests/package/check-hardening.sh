#!/bin/sh
# Usage: check-hardening.sh LIBRARY READELF plain|sanitize
# Checks that the shared library needs no library but these, that its tables are read-only once it is loaded, that its
# stack is not executable, and that it checks its stack.
set -eu
library=$1
readelf=$2
kind=$3

failed=0
complain() {
    echo "$1" >&2
    failed=1
}

# Sanitizers bring libraries of their own and leave out what they replace.
[ "$kind" = plain ] || exit 0

needed=$("$readelf" -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | LC_ALL=C sort)
allowed='libc.so.6
libgcc_s.so.1
libm.so.6
libstdc++.so.6
libz.so.1'
for one in $needed; do
    case $one in
        ld-linux*) ;; # the loader itself
        *) echo "$allowed" | grep -qxF "$one" || complain "the library needs $one" ;;
    esac
done
echo "$needed" | grep -qx libz.so.1 || complain "the library does not name zlib, which it needs"

"$readelf" -lW "$library" | grep -q GNU_RELRO || complain "no table of the library becomes read-only"
"$readelf" -d "$library" | grep -q BIND_NOW || complain "the table of calls stays writable"
"$readelf" -lW "$library" | grep GNU_STACK | grep -q 'RW ' || complain "the stack is executable"
"$readelf" -sW "$library" | grep -q __stack_chk_fail || complain "the stack is not checked"
exit $failed
