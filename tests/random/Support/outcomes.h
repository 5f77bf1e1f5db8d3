#pragma once

#include "random/Support/Outcome.h"

#include <string>

/// All outcomes of calls.
namespace RandomUse {

Outcome nothing();
Outcome returned(std::vector<unsigned int> ids);

Outcome fileNotOpen();
Outcome notInitialized();
Outcome notEmpty();
Outcome fileExists();
Outcome unableToOpen(const std::string& path);
Outcome savingTheBufferFailed();
Outcome invalidRootType();
Outcome invalidNodeType();
Outcome currentNodeUnknown();
/// @param operation The class of the operation, below `Qel::Mox2::Modifier`.
Outcome outOfBounds(const std::string& operation);
Outcome invalidStringPosition();
Outcome invalidProperties();
Outcome invalidPropertyType();
Outcome valueOfAnotherType();
/// @param setter The function, below `QelMox`.
Outcome invalidArraySize(const std::string& nodeClass, const std::string& setter);
Outcome attributeRefused();
Outcome relativePath();
Outcome otherRoot();
Outcome noName();
Outcome noWidth();
Outcome negativeCount();
Outcome otherWidth();
Outcome noMemory();

} // namespace RandomUse
