#include "Qel/Support/CapturedStream.h"

#include <Qel/Log/LoggerBase.h>

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>
#include <type_traits>

namespace {

TEST(LoggerBase, LogRecordReturnsTheSameObject) {
    Qel::Log::LoggerBase logger;
    EXPECT_EQ(&logger.logRecord("file", "function", 1, Qel::Log::Severity::Info), &logger);
}

TEST(LoggerBase, DoesNothingWithAStream) {
    const Support::CapturedStream cout(std::cout);
    Qel::Log::LoggerBase logger;
    logger.logRecord("file", "function", 1, Qel::Log::Severity::Info) += std::ostringstream("abc");
    EXPECT_EQ(cout.str(), "");
}

TEST(LoggerBase, CanNotBeCopied) {
    EXPECT_TRUE(std::is_default_constructible_v<Qel::Log::LoggerBase>);
    EXPECT_FALSE(std::is_copy_constructible_v<Qel::Log::LoggerBase>);
    EXPECT_FALSE(std::is_copy_assignable_v<Qel::Log::LoggerBase>);
}

/// A logger as an application may define it.
class KeepingLogger : public Qel::Log::LoggerBase {
public:
    LoggerBase& logRecord(const char* file, const char* function, unsigned long line,
                          Qel::Log::Severity::Severity) override {
        kept << file << ' ' << function << ' ' << line << ' ';
        return *this;
    }
    void operator+=(const std::ostream& stream) override {
        kept << dynamic_cast<const std::ostringstream&>(stream).str();
    }

    std::ostringstream kept;
};

TEST(LoggerBase, BothOperationsAreVirtual) {
    KeepingLogger keeping;
    Qel::Log::LoggerBase& logger = keeping;
    logger.logRecord("file", "function", 12, Qel::Log::Severity::Info) += std::ostringstream("abc");
    EXPECT_EQ(keeping.kept.str(), "file function 12 abc");
}

} // namespace
