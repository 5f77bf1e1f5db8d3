#pragma once

#include <ostream>
#include <sstream>
#include <string>

namespace Support {

/// Captures what is written to a stream, such as `std::cout`, during its lifetime.
class CapturedStream {
public:
    explicit CapturedStream(std::ostream& stream) : captured(stream), former(stream.rdbuf(text.rdbuf())) {}
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;
    ~CapturedStream() { captured.rdbuf(former); }

    std::string str() const { return text.str(); }

private:
    std::ostringstream text;
    std::ostream& captured;
    std::streambuf* former;
};

} // namespace Support
