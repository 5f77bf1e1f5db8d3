#pragma once

// The body of Index::Put<T>, for the sources that instantiate it.

#include <Qel/Exception/Throw.h>
#include <Qel/Tnf/Index.h>

namespace QelTnf {

template <typename T>
void Index::Put(const std::string& name, const T& value) {
    const std::uint64_t id = ChooseBlock(name);
    if (InfoOf(id).frozen) {
        QEL_THROW(Qel::Exception::MiscelleneousException("Attempt to write into a frozen block"));
    }
    BlockOf(id).Put(value);
}

} // namespace QelTnf
