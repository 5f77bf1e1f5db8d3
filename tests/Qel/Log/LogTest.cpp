#include "Qel/Support/CapturedStream.h"
#include "Support/TemporaryFolder.h"

#include <Qel/Log/Log.h>
#include <Qel/Mox2/Model.h>

#include <gtest/gtest.h>

#include <iostream>

namespace {

TEST(Log, ProcessHasOneLogSystem) {
    EXPECT_EQ(&Qel::Log::processLog(), &Qel::Log::processLog());
}

TEST(Log, SiteBuildsItsMessageThoughItIsDropped) {
    const Support::CapturedStream cout(std::cout);
    int built = 0;
    QEL_LOG("Qel::Log::LogTest", "Message " << ++built);
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

} // namespace
