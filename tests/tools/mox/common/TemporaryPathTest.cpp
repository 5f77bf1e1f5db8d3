#include "common/TemporaryPath.h"

#include "Support/TemporaryFolder.h"
#include "common/Failure.h"
#include "common/OutputFile.h"
#include "common/OutputFolder.h"
#include "common/Platform.h"
#include "export/vtk/ReplaceableFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

#ifndef _WIN32
#include <unistd.h>
#endif

using MoxTool::TemporaryPath;

namespace {

void fill(const std::filesystem::path& path) {
    std::ofstream(path) << "half";
}

} // namespace

TEST(TemporaryPath, StandsBesideItsTargetAndIsFree) {
    const Support::TemporaryFolder folder;
    const std::filesystem::path target = folder.path("out.mox");
    const TemporaryPath temporary(target);
    EXPECT_EQ(temporary.path().parent_path(), target.parent_path());
    EXPECT_TRUE(temporary.path().filename().string().starts_with("out.mox."));
    EXPECT_TRUE(folder.files().empty());
}

TEST(TemporaryPath, TakesAwayWhatIsThereAtItsEnd) {
    const Support::TemporaryFolder folder;
    {
        const TemporaryPath file(folder.path("file"));
        fill(file.path());
        const TemporaryPath tree(folder.path("tree"));
        tree.createFolder();
        fill(tree.path() / "file");
        EXPECT_EQ(folder.files().size(), 2u);
    }
    EXPECT_TRUE(folder.files().empty());
}

TEST(TemporaryPath, MovesToItsTarget) {
    const Support::TemporaryFolder folder;
    {
        const TemporaryPath temporary(folder.path("out"));
        fill(temporary.path());
        temporary.moveToTarget();
    }
    EXPECT_EQ(folder.files(), std::vector<std::string>{"out"});
}

TEST(TemporaryPath, ReportsThatItCanNotMove) {
    const Support::TemporaryFolder folder;
    const TemporaryPath temporary(folder.path("out"));
    EXPECT_THROW(temporary.moveToTarget(), MoxTool::Failure);
}

TEST(TemporaryPath, ReplacesAFolder) {
    const Support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("out"));
    folder.write("out/old", "");
    {
        const TemporaryPath temporary(folder.path("out"));
        temporary.createFolder();
        fill(temporary.path() / "new");
        temporary.replaceTarget();
    }
    EXPECT_EQ(folder.files(), std::vector<std::string>{"out"});
    EXPECT_TRUE(std::filesystem::exists(folder.path("out/new")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("out/old")));
}

TEST(TemporaryPath, KeepsTheFolderThatItCanNotReplace) {
    const Support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("out"));
    folder.write("out/old", "");
    const TemporaryPath temporary(folder.path("out"));
    EXPECT_THROW(temporary.replaceTarget(), MoxTool::Failure);
    EXPECT_EQ(folder.files(), std::vector<std::string>{"out"});
    EXPECT_TRUE(std::filesystem::exists(folder.path("out/old")));
}

TEST(TemporaryPath, AllCanBeTakenAwayAtOnceButForThoseThatMoved) {
    const Support::TemporaryFolder folder;
    const auto workAndEnd = [&] {
        MoxTool::OutputFile ready(folder.path("ready.mox"), false);
        fill(ready.temporaryPath());
        ready.commit();
        const MoxTool::OutputFile file(folder.path("out.mox"), false);
        fill(file.temporaryPath());
        const MoxTool::OutputFolder tree(folder.path("out"));
        fill(tree.temporaryPath() / "file");
        TemporaryPath::removeAllForGood();
        std::_Exit(0);
    };
    EXPECT_EXIT(workAndEnd(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"ready.mox"});
}

#ifndef _WIN32

namespace {

// Waits to be ended by the thread that takes the signal.
void workUntil(int signal, const std::string& target) {
    MoxTool::Platform::runAtInterruption(TemporaryPath::removeAllForGood);
    const MoxTool::OutputFile file(target, false);
    fill(file.temporaryPath());
    kill(getpid(), signal);
    std::this_thread::sleep_for(std::chrono::minutes(1));
    std::_Exit(0);
}

} // namespace

TEST(Interruption, LeavesNoUnfinishedFileAndEndsTheProcessAsUsual) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const Support::TemporaryFolder folder;
        EXPECT_EXIT(workUntil(signal, folder.path("out.mox")), testing::KilledBySignal(signal), "");
        EXPECT_TRUE(folder.files().empty());
    }
}

namespace {

// Fills a folder until it is ended, and would end by itself if a file could not be made.
template <typename Folder, typename... Options>
void fillUntil(int signal, const std::string& target, Options... options) {
    MoxTool::Platform::runAtInterruption(TemporaryPath::removeAllForGood);
    {
        const Folder tree(target, options...);
        for (int number = 0;; ++number) {
            if (number == 200) {
                kill(getpid(), signal);
            }
            std::ofstream file(tree.temporaryPath() / std::to_string(number));
            if (!file) {
                break;
            }
        }
    }
    std::_Exit(0);
}

} // namespace

TEST(Interruption, LeavesNothingOfAFolderThatIsBeingFilled) {
    for (int i = 0; i < 5; ++i) {
        const Support::TemporaryFolder folder;
        EXPECT_EXIT(fillUntil<MoxTool::OutputFolder>(SIGTERM, folder.path("out")),
                    testing::KilledBySignal(SIGTERM), "");
        EXPECT_EQ(folder.files(), std::vector<std::string>{});
    }
}

TEST(Interruption, LeavesTheFolderOfStepsThatWasToBeReplacedAndNothingBesideIt) {
    const Support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("out_steps"));
    folder.write("out_steps/1.vtu", "old");
    EXPECT_EXIT(fillUntil<MoxTool::ReplaceableFolder>(SIGTERM, folder.path("out_steps"), ".vtu", true),
                testing::KilledBySignal(SIGTERM), "");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"out_steps"});
    EXPECT_EQ(folder.read("out_steps/1.vtu"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("out_steps")), {}), 1);
}

TEST(StandardStreams, FileThatIsOpenedDoesNotTakeThePlaceOfAMissingOne) {
    const Support::TemporaryFolder folder;
    const auto work = [&] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        MoxTool::Platform::reserveStandardStreams();
        std::ofstream file(folder.path("file"));
        std::fputs("message", stderr);
        const bool isLost = std::fputs("data", stdout) == EOF || std::fflush(stdout) == EOF;
        const bool isClosed = std::fgetc(stdin) == EOF;
        std::_Exit(isLost && isClosed ? 0 : 1);
    };
    EXPECT_EXIT(work(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(folder.read("file"), "");
}

TEST(Interruption, LeavesSignalsAloneThatTheProcessIgnores) {
    const auto ignoreAndWork = [] {
        std::signal(SIGHUP, SIG_IGN);
        MoxTool::Platform::runAtInterruption([] { std::_Exit(1); });
        kill(getpid(), SIGHUP);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        std::_Exit(0);
    };
    EXPECT_EXIT(ignoreAndWork(), testing::ExitedWithCode(0), "");
}

#endif
