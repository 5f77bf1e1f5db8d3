#include "Qel/Support/CapturedStream.h"
#include "Qel/Support/RecordedLog.h"
#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"

#include <Qel/Log/Log.h>
#include <Qel/Mox2/Model.h>

#include <gtest/gtest.h>

#include <ctime>
#include <iostream>
#include <string>
#include <vector>

namespace {

TEST(Log, ProcessHasOneLogSystem) {
    EXPECT_EQ(&Qel::Log::processLog(), &Qel::Log::processLog());
}

TEST(Log, ReplacedLogSystemGetsTheRecordsUntilTheFormerOneIsBack) {
    Qel::Log::LogSystem* const own = &Qel::Log::processLog();
    {
        const Support::RecordedLog log;
        EXPECT_NE(&Qel::Log::processLog(), own);
        QEL_LOG("Qel::Log::LogTest", "recorded");
        EXPECT_EQ(log.texts(), std::vector<std::string>{"recorded"});
    }
    EXPECT_EQ(&Qel::Log::processLog(), own);
}

TEST(Log, SiteHandsOverOneRecordOfSeverityInfoWithItsPlaceItsTimeAndItsText) {
    const std::time_t before = std::time(nullptr);
    const Support::RecordedLog log;
    const unsigned long line = __LINE__ + 1;
    QEL_LOG("Qel::Log::LogTest::Site", "Message " << 7U << ' ' << 2.5);
    const std::time_t after = std::time(nullptr);
    EXPECT_EQ(log.lines(),
              (Support::LogLines{{"Qel/Log/LogTest", "Qel::Log::LogTest::Site", "Message 7 2.5", 1}}));
    ASSERT_EQ(log.sourceLines(), std::vector<unsigned long>{line});
    EXPECT_GE(log.times().at(0), before);
    EXPECT_LE(log.times().at(0), after);
    EXPECT_EQ(log.printed(), 0);
}

TEST(Log, SiteBuildsItsMessageOnlyWhileSomebodyReceivesIt) {
    const Support::CapturedStream cout(std::cout);
    int built = 0;
    const auto log = [&built] { QEL_LOG("Qel::Log::LogTest", "Message " << ++built); };
    log();
    EXPECT_EQ(built, 0);
    {
        const Support::RecordedLog receiver;
        log();
        EXPECT_EQ(built, 1);
        EXPECT_EQ(receiver.texts(), std::vector<std::string>{"Message 1"});
    }
    log();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(cout.str(), "");
}

TEST(Log, CompleteSaveWritesNothingToAnyStandardStream) {
    const Support::TemporaryFolder folder;
    const Support::CapturedStream cout(std::cout);
    const Support::CapturedStream cerr(std::cerr);
    const Support::CapturedStream clog(std::clog);
    Qel::Mox2::Model model;
    model.saveTo(folder.path("model.mox"), Qel::Mox2::SaverOptions());
    model.addNode(Qel::Mox2::Group, "root");
    model.close();
    EXPECT_EQ(cout.str() + cerr.str() + clog.str(), "");
}

// A root group and a geometry with one array, saved and closed: each line of each site except those of Index
// Blocks and failures.
TEST(Log, CompleteSaveIsToldInOrder) {
    const Support::TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    const Support::EnvironmentGuard blockSize(Support::BlockSizeVariable);
    const Support::RecordedLog log;
    Qel::Mox2::Model model;
    model.saveTo(path, Qel::Mox2::SaverOptions());
    model.addNode(Qel::Mox2::Group, "root");
    const unsigned int geometry = model.addNode(Qel::Mox2::Shape, "part");
    model.addArrayProperty(Qel::Mox2::Coordinates, Qel::Mox2::Array2d<float>(2, 3, 1.0F), geometry,
                           Qel::Mox2::Step());
    const std::vector<std::string> opened = {"Setting mox file \"" + path + "\"",
                                             "Writing Dataset of size 6 width 3 datatype size 4",
                                             "Flushing frozen blocks ... ", "Frozen blocks flushed. "};
    EXPECT_EQ(log.texts(), opened);
    model.close();
    const std::vector<std::string> texts = log.texts();
    const std::vector<std::string> ahead(texts.begin() + 4, texts.begin() + 11);
    EXPECT_EQ(ahead, (std::vector<std::string>{"Saving mox tree ... ", "Mox tree saved. ",
                                               "Saving global information ...", "Global information saved.",
                                               "Writing all buffers to file stream ...",
                                               "Writing buffer 0 to stream.", "Buffer length: 24"}));
    // Six blocks with five lines each and fourteen free entries with three.
    ASSERT_EQ(texts.size(), 4U + 5U + 6U * 5U + 14U * 3U + 1U + 4U);
    EXPECT_EQ(std::vector<std::string>(texts.end() - 6, texts.end()),
              (std::vector<std::string>{"Buffer 19 written to stream.", "All buffers to file stream written.",
                                        "Closing file ...", "File closed.",
                                        // One line comes from the database, the other from the file's
                                        // destructor.
                                        "Closing file ...", "Closing file ..."}));
}

} // namespace
