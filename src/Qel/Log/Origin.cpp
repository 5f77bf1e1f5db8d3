#include <Qel/Log/Origin.h>

#include <ctime>

namespace Qel::Log {

Origin::Origin(const char* const sourcePath, const char* const sourceName, unsigned long sourceLine)
    : file(sourcePath), function(sourceName), line(sourceLine), time(std::time(nullptr)) {}

} // namespace Qel::Log
