// What becomes of an import that several processes do, where one of them fails or the whole is ended.

#include "import/model/JoinedImport.h"

#include "../../common/Messages.h"
#include "Support/TemporaryFolder.h"
#include "common/Failure.h"
#include "common/Platform.h"
#include "common/TemporaryPath.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Files = std::vector<std::string>;

class JoinedImportTest : public testing::Test {
protected:
    // The message with which an import fails whose parts are filled like this.
    std::string failureOf(const std::vector<MoxTool::ModelFiller>& fillers, std::size_t processes) {
        MoxTool::ImportRequest request{"model.e", folder.path("out.mox")};
        request.processes = processes;
        const std::string library = "libtest";
        try {
            MoxTool::JoinedImport output(request, library, messages.terminal());
            std::vector<MoxTool::ImportPart> parts;
            for (const auto& fill : fillers) {
                auto own = request;
                own.input = "piece" + std::to_string(parts.size());
                parts.push_back({own.input + ".mox", own, fill});
            }
            output.save(parts);
        } catch (const MoxTool::Failure& failure) {
            return failure.what();
        }
        return "";
    }

    static void fill(MoxTool::ImportTarget& target) { target.model.addNode(Qel::Mox2::RootGroup, "model"); }
    static void sleep(MoxTool::ImportTarget&) {
        for (;;) {
            pause();
        }
    }

    Support::TemporaryFolder folder;
    Messages messages;
};

// Each of them would wait for ever.
TEST_F(JoinedImportTest, ProcessThatIsKilledEndsTheOthersAndLeavesNothing) {
    const auto die = [](MoxTool::ImportTarget&) { std::raise(SIGKILL); };
    EXPECT_EQ(failureOf({sleep, die, sleep}, 3),
              "piece1: not read to its end, since the system killed the import; was memory short?");
    EXPECT_EQ(messages.text(), "");
    EXPECT_EQ(folder.files(), Files{});
}

TEST_F(JoinedImportTest, FailureOfALaterPartEndsTheOthersAndLeavesNothing) {
    const auto fail = [](MoxTool::ImportTarget&) { throw MoxTool::Failure("piece2", "is no good"); };
    EXPECT_EQ(failureOf({sleep, fill, fail, sleep}, 2), "piece2: is no good");
    EXPECT_EQ(folder.files(), Files{});
}

// What comes after the part that fails is not begun: it would be killed, which is another message.
TEST_F(JoinedImportTest, OneProcessTakesTheParts) {
    const auto fail = [](MoxTool::ImportTarget&) { throw MoxTool::Failure("piece1", "is no good"); };
    const auto die = [](MoxTool::ImportTarget&) { std::raise(SIGKILL); };
    EXPECT_EQ(failureOf({fill, fail, die}, 1), "piece1: is no good");
}

// All processes hold the end of a pipe to which two of them write, so reading from it ends when all have ended.
TEST_F(JoinedImportTest, SignalEndsAllProcessesAndLeavesNothing) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const auto [source, target] = ends;
    const auto id = fork();
    ASSERT_GE(id, 0);
    if (id == 0) {
        close(source);
        std::signal(SIGINT, SIG_DFL); // a test program in the background ignores Ctrl-C
        MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAllForGood);
        const auto wait = [target = target](MoxTool::ImportTarget& model) {
            if (write(target, "x", 1) == 1) {
                sleep(model);
            }
        };
        failureOf({wait, wait}, 2);
        _exit(0);
    }
    close(target);
    char letter = 0;
    EXPECT_EQ(read(source, &letter, 1), 1);
    EXPECT_EQ(read(source, &letter, 1), 1);
    EXPECT_EQ(folder.files().size(), 1U);
    EXPECT_EQ(kill(id, SIGINT), 0);
    EXPECT_EQ(read(source, &letter, 1), 0);
    close(source);
    int status = 0;
    EXPECT_EQ(waitpid(id, &status, 0), id);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    EXPECT_EQ(folder.files(), Files{});
}

} // namespace
#endif
