#include "Qel/Support/CapturedStream.h"

#include <Qel/Log/LogSystem.h>
#include <Qel/Log/Record.h>

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

namespace {

/// A record that holds a text.
struct TextRecord : Qel::Log::Record<char> {
    explicit TextRecord(const std::string& text)
        : Qel::Log::Record<char>(Qel::Log::Severity::Info,
                                 Qel::Log::Origin("Qel/Log/LogSystemTest", "Record", 1)) {
        *this << text;
    }
};

TEST(LogSystem, DropsRecords) {
    const Support::CapturedStream cout(std::cout);
    Qel::Log::LogSystem() += TextRecord("abc");
    EXPECT_EQ(cout.str(), "");
}

TEST(LogSystem, PrintsARecordThatIsHandedOverAsAStreamWithoutTimeAndSeverity) {
    const Support::CapturedStream cout(std::cout);
    const TextRecord record("abc");
    Qel::Log::LogSystem() += static_cast<const std::ostream&>(record);
    EXPECT_EQ(cout.str(), "abc\n");
}

TEST(LogSystem, PrintsOneNewlineForAnEmptyRecord) {
    const Support::CapturedStream cout(std::cout);
    const TextRecord record("");
    Qel::Log::LogSystem() += static_cast<const std::ostream&>(record);
    EXPECT_EQ(cout.str(), "\n");
}

TEST(LogSystem, PrintsAnyStringStream) {
    const Support::CapturedStream cout(std::cout);
    std::ostringstream stream;
    stream << "two\nlines " << 7;
    Qel::Log::LogSystem() += stream;
    EXPECT_EQ(cout.str(), "two\nlines 7\n");
}

TEST(LogSystem, PrintsNothingForAStreamThatIsNoStringStream) {
    const Support::CapturedStream cout(std::cout);
    const std::ostream stream(nullptr);
    Qel::Log::LogSystem() += stream;
    EXPECT_EQ(cout.str(), "");
}

TEST(LogSystem, CanBeCopiedAndItsAssignmentReturnsTheObject) {
    Qel::Log::LogSystem system;
    const Qel::Log::LogSystem copy(system);
    EXPECT_EQ(&(system = copy), &system);
}

/// A log system as an application may define it.
struct CountingSystem : Qel::Log::LogSystem {
    void operator+=(const Qel::Log::Record<char>&) override { ++records; }
    void operator+=(const std::ostream&) override { ++streams; }

    int records = 0;
    int streams = 0;
};

TEST(LogSystem, BothOperationsAreVirtual) {
    CountingSystem counting;
    Qel::Log::LogSystem& system = counting;
    const TextRecord record("abc");
    system += record;
    system += record;
    system += static_cast<const std::ostream&>(record);
    EXPECT_EQ(counting.records, 2);
    EXPECT_EQ(counting.streams, 1);
}

} // namespace
