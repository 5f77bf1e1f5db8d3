#!/bin/sh
# Usage: check-symbols.sh LIBRARY SOURCE_FOLDER NM plain|sanitize COMPILER
# Checks the exports of the shared library: all overloads of addArrayProperty, the classes and the exceptions that
# applications name, no internal class, and no path of the machine that built it. With GNU as the compiler the exported
# functions are those of exported-functions.txt; other compilers export some inline functions more or fewer.
set -eu
library=$1
source_folder=$2
nm=$3
kind=$4
compiler=$5

symbols=$("$nm" -D -C --defined-only "$library" | cut -d' ' -f2-)
failed=0
complain() {
    echo "$1" >&2
    failed=1
}

overloads=$(echo "$symbols" | grep -c 'Qel::Mox2::Model::addArrayProperty<')
[ "$overloads" -eq 32 ] || complain "$overloads overloads of addArrayProperty are exported, not 32"

for class in Base Exception MiscelleneousException InvalidArguments FileOpenException FileWriteException OutOfBounds \
             OverflowError UnderflowError KeyNotFound MemoryAllocationException InvalidObjectState \
             TemplateSpecializationNotDefined NotYetImplemented; do
    echo "$symbols" | grep -q "typeinfo for Qel::Exception::$class\$" ||
        complain "the type information of Qel::Exception::$class is not exported"
done

for pattern in 'Array1d<float>::Array1d(' 'Array1d<unsigned int>::Array1d(' 'Array2d<float>::Array2d(' \
               'Array2d<unsigned int>::Array2d(' 'StepList::set(' 'Attributes::set<float>(' \
               'NodeProperties::set<bool>(' 'Log::LogSystem::operator+=(' 'Log::LoggerBase::logRecord(' \
               'Log::Origin::Origin('; do
    echo "$symbols" | grep -qF "$pattern" || complain "$pattern...) is not exported"
done

insides=$(echo "$symbols" | grep -E '^[TWVB] (typeinfo for |vtable for )?(QelTnf|QelMox|QelAdt|QelUtil|Qel::Base|Qel::Mox2::(Adder|Modifier|Extractor|Database))' || true)
[ -z "$insides" ] || complain "classes of the insides are exported:
$insides"

# The list is the promise to applications that are linked with the library: a line that goes breaks them.
if [ "$kind" = plain ] && [ "$compiler" = GNU ]; then
    difference=$(echo "$symbols" | sed -n 's/^[TW] \(void Qel::\|Qel::\)/\1/p' | LC_ALL=C sort -u |
        diff "$(dirname "$0")/exported-functions.txt" -) ||
        complain "other functions are exported than exported-functions.txt lists (<):
$difference"
fi

# Sanitizers embed paths of their own.
if [ "$kind" = plain ] && grep -qF "$source_folder" "$library"; then
    complain "the library holds the path of its sources, $source_folder"
fi
exit $failed
