#pragma once

#include <Qel/Log/Log.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace Support {

/// A log record without its line and its time, which differ from run to run.
struct LogLine {
    std::string file;
    std::string source;
    std::string text;
    int severity = 1;

    friend bool operator==(const LogLine&, const LogLine&) = default;
    friend void PrintTo(const LogLine& line, std::ostream* stream) {
        *stream << '[' << line.severity << "] " << line.file << ' ' << line.source << " \"" << line.text
                << '"';
    }
};

using LogLines = std::vector<LogLine>;

/// The lines from one named site.
inline LogLines linesOf(const std::string& file, const std::string& source,
                        const std::vector<std::string>& texts) {
    LogLines lines;
    for (const std::string& text : texts) {
        lines.push_back({file, source, text});
    }
    return lines;
}

/// Keeps the library's records, in place of the process's log system, during its lifetime.
class RecordedLog final : private Qel::Log::LogSystem {
public:
    RecordedLog() : former_(Qel::Log::replaceProcessLog(*this)) {}
    RecordedLog(const RecordedLog&) = delete;
    RecordedLog& operator=(const RecordedLog&) = delete;
    ~RecordedLog() override { Qel::Log::replaceProcessLog(former_); }

    const LogLines& lines() const { return recorded_; }
    /// Only the texts.
    std::vector<std::string> texts() const {
        std::vector<std::string> result;
        for (const LogLine& line : recorded_) {
            result.push_back(line.text);
        }
        return result;
    }
    /// The line numbers of the sites in their files, and the seconds since the epoch.
    const std::vector<unsigned long>& sourceLines() const { return lineNumbers_; }
    const std::vector<std::int64_t>& times() const { return seconds_; }
    /// How often a text was printed instead.
    int printed() const { return prints_; }

private:
    void operator+=(const Qel::Log::Record<char>& record) override {
        recorded_.push_back({record.origin.file, record.origin.function, record.str(), int{record.severity}});
        lineNumbers_.push_back(record.origin.line);
        seconds_.push_back(record.origin.time);
    }
    void operator+=(const std::ostream&) override { ++prints_; }

    LogSystem& former_;
    LogLines recorded_;
    std::vector<unsigned long> lineNumbers_;
    std::vector<std::int64_t> seconds_;
    int prints_ = 0;
};

} // namespace Support
