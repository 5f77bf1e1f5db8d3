#include <Qel/Log/Record.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

class LogRecord : public testing::Test {
protected:
    Qel::Log::Record<char> record{Qel::Log::Severity::Info,
                                  Qel::Log::Origin("Qel/Tnf/TnFile", "QelTnf::TnFile::CloseFile", 7)};
};

TEST_F(LogRecord, IsAStringStream) {
    EXPECT_TRUE((std::is_base_of_v<std::basic_ostringstream<char>, Qel::Log::Record<char>>));
}

TEST_F(LogRecord, StartsWithAnEmptyText) {
    EXPECT_EQ(record.str(), "");
}

TEST_F(LogRecord, HoldsWhateverIsStreamedIntoItInDefaultFormatting) {
    record << "Buffer " << 19U << " written to stream." << 2.5;
    EXPECT_EQ(record.str(), "Buffer 19 written to stream.2.5");
}

TEST_F(LogRecord, KnowsItsSeverityAndOrigin) {
    EXPECT_EQ(record.severity, Qel::Log::Severity::Info);
    EXPECT_STREQ(record.origin.file, "Qel/Tnf/TnFile");
    EXPECT_STREQ(record.origin.function, "QelTnf::TnFile::CloseFile");
    EXPECT_EQ(record.origin.line, 7U);
}

TEST(Severity, OfAllSitesHasTheValue1) {
    EXPECT_EQ(static_cast<int>(Qel::Log::Severity::Info), 1);
}

} // namespace
