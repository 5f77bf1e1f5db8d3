#pragma once

#include "api/Support/Failure.h"
#include "api/Support/PublicNames.h"

/// The failures that several calls have in common.
namespace Api {

inline Failure fileNotOpen() {
    return failure<Qel::Exception::InvalidObjectState>(17, "File not open.", "Qel/Mox2/Database",
                                                       "Qel::Mox2::Database::assertOpenedForWriting");
}

inline Failure notInitialized() {
    return failure<Qel::Exception::InvalidObjectState>(17, "Not initialized", "Qel/Mox2/Database",
                                                       "Qel::Mox2::Database::assertNotEmpty");
}

inline Failure notEmpty() {
    return failure<Qel::Exception::InvalidObjectState>(17, "Not Empty", "Qel/Mox2/Database",
                                                       "Qel::Mox2::Database::assertEmpty");
}

/// Can be set, but no file keeps an unsigned number.
inline Attributes refusedAttributes() {
    Attributes attributes;
    attributes.set("count", 7U);
    return attributes;
}

inline Failure attributeRefused() {
    return failure<Qel::Exception::InvalidArguments>(3, "Invalid arguments", "Qel/Mox2/Helper/Attributes",
                                                     "Qel::Mox2::Helper::Attributes::AttributeValueGetter");
}

/// The current node is looked up, but the current id is not that of a node.
inline Failure currentNodeUnknown() {
    return failure<Qel::Exception::KeyNotFound>(14, "Key not found", "Qel/Adt/AdtTree", "GetCurrentNode");
}

inline Failure savingTheBufferFailed() {
    return failure<Qel::Exception::FileWriteException>(7, "Saving the buffer failed", "Qel/Tnf/Index",
                                                       "QelTnf::Index::WriteBufferToFileStream");
}

} // namespace Api
