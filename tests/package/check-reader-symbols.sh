#!/bin/sh
# Usage: check-reader-symbols.sh LIBRARY INCLUDE_FOLDER NM plain|sanitize
# Checks the exports of the reader's shared library: every class and function of its headers, the exception by which
# programs catch its errors, and nothing else.
set -eu
library=$1
headers=$2
nm=$3
kind=$4

# Under sanitizers everything is exported.
[ "$kind" = plain ] || exit 0

symbols=$("$nm" -D -C --defined-only "$library" | cut -d' ' -f2- | sed 's,\[abi:cxx11\],,g')
failed=0
complain() {
    echo "$1" >&2
    failed=1
}

# Functions of the headers stand at the beginning of a line.
functions=$(sed -n 's/^\(const \)\{0,1\}[A-Za-z:_][A-Za-z0-9:_<>]* \([a-z][A-Za-z]*\)(.*/\2/p' "$headers"/MoxReader/*.h | sort -u)
[ "$(echo "$functions" | wc -l)" -ge 20 ] || complain "the headers' functions were not found"
for function in $functions; do
    grep -q "^inline.* $function(\|^constexpr.* $function(" "$headers"/MoxReader/*.h && continue
    echo "$symbols" | grep -q "^T MoxReader::$function(" || complain "MoxReader::$function() is not exported"
done
for member in 'ChildTable::ChildTable(' 'Error::Error(' 'File::File(' 'FileSource::FileSource(' 'HeavyData::readFloats(' \
              'LinkTable::LinkTable(' 'MemorySource::MemorySource(' 'Model::resolve(' 'RawIndex::isDisplaced(' \
              'Source::read(' 'StreamReader::readNumber<double>(' 'StreamReader::readNumbers<float>('; do
    echo "$symbols" | grep -qF "MoxReader::$member" || complain "MoxReader::$member...) is not exported"
done
for class in Error Source FileSource MemorySource; do
    echo "$symbols" | grep -q "typeinfo for MoxReader::$class\$" ||
        complain "the type information of MoxReader::$class is not exported"
done

insides=$(echo "$symbols" | grep -Ev '^[TWV] (([a-z ]+|std::vector<[a-z ]+, std::allocator<[a-z ]+> >) )?((typeinfo|typeinfo name|vtable) for )?MoxReader::[A-Z][A-Za-z]*::|^[TWV] ((typeinfo|typeinfo name|vtable) for )?MoxReader::(Error|Source|FileSource|MemorySource)$' |
    grep -vE "^T MoxReader::($(echo "$functions" | paste -sd'|'))\(" || true)
[ -z "$insides" ] || complain "more is exported than the headers have:
$insides"
for class in ByteRanges Inflater IndexScanner ModelReader VersionedRecord; do
    if echo "$symbols" | grep -q "MoxReader::$class::"; then
        complain "the class $class of the insides is exported"
    fi
done
exit $failed
