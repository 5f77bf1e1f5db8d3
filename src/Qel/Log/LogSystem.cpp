#include <Qel/Log/LogSystem.h>

#include <iostream>
#include <sstream>

namespace Qel::Log {

LogSystem::LogSystem() = default;

LogSystem::LogSystem(const LogSystem&) = default;

LogSystem& LogSystem::operator=(const LogSystem&) = default;

LogSystem::~LogSystem() = default;

void LogSystem::operator+=(const Record<char>&) {}

// Kept though nothing calls it; see docs/oddities.md.
void LogSystem::operator+=(const std::ostream& stream) {
    if (const auto* const text = dynamic_cast<const std::ostringstream*>(&stream)) {
        std::cout << text->str() << '\n';
    }
}

} // namespace Qel::Log
