#pragma once

#include <ostream>
#include <sstream>
#include <string>

namespace Support {

/// Captures what is written to a stream, such as `std::cout`, during its lifetime.
class CapturedStream {
public:
    explicit CapturedStream(std::ostream& stream) : captured_(stream), former_(stream.rdbuf(text_.rdbuf())) {}
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;
    ~CapturedStream() { captured_.rdbuf(former_); }

    std::string str() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::ostream& captured_;
    std::streambuf* former_;
};

} // namespace Support
