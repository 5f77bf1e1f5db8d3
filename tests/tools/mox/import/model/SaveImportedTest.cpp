#include "import/model/saveImported.h"
#include "import/Compressor.h"

#include "../../common/Messages.h"
#include "Support/AddressSanitizer.h"
#include "Support/NumberedArrays.h"
#include "Support/TemporaryFolder.h"
#include "common/Failure.h"
#include "common/Platform.h"
#include "common/TemporaryPath.h"

#include <MoxReader/File.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

using MoxTool::saveImported;
using Files = std::vector<std::string>;

class SaveImported : public testing::Test {
protected:
    using Damage = std::function<void(std::string&)>;

    // A shape with numbers. The model is closed early, so that the saved file can be damaged before it is
    // read.
    void fill(Qel::Mox2::Model& model) const {
        model.addNode(Qel::Mox2::RootGroup, "model");
        const auto shape = model.addNode(Qel::Mox2::Shape, "Shape");
        model.addArrayProperty(Qel::Mox2::Coordinates, Qel::Mox2::Array2d<float>(100, 3, 0.5F), shape,
                               Qel::Mox2::Step{});
        model.close();
    }

    // Changes the numbers' block, which is the first.
    void damageNumbers(const Damage& damage) const {
        const auto path = folder.path(folder.files().at(0));
        const auto heavy = MoxReader::File(path).blocks().front();
        ASSERT_EQ(heavy.name, "Heavy Data");
        std::string bytes(heavy.length, '\0');
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekg(static_cast<std::streamoff>(heavy.position));
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        damage(bytes);
        file.seekp(static_cast<std::streamoff>(heavy.position));
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

    // The last byte of the block belongs to its checksum.
    static void breakChecksum(std::string& bytes) { bytes.back() = static_cast<char>(bytes.back() ^ 1); }

    // The message with which an import fails whose output was damaged; empty if it succeeds.
    std::string saveDamaged(bool check, const Damage& damage = breakChecksum) {
        try {
            saveImported({"model.e", folder.path("out.mox"), false, check}, "libtest", messages.terminal(),
                         [&](MoxTool::ImportTarget& target) {
                             fill(target.model);
                             damageNumbers(damage);
                         });
        } catch (const MoxTool::Failure& failure) {
            return failure.what();
        }
        return "";
    }

    Support::TemporaryFolder folder;
    Messages messages;
};

} // namespace

TEST_F(SaveImported, ErrorOfTheCheckLeavesNothingBehind) {
    const auto failure = saveDamaged(true);
    EXPECT_TRUE(failure.starts_with(folder.path("out.mox") +
                                    ": not written, since the check of it failed: error 206 checksum: "))
        << failure;
    EXPECT_EQ(failure.find('\n'), std::string::npos);
    EXPECT_EQ(folder.files(), Files{});
}

TEST_F(SaveImported, NumbersAreLookedAtByTheCheckAlone) {
    EXPECT_EQ(saveDamaged(false), "");
    EXPECT_EQ(folder.files(), Files{"out.mox"});
}

// What the disk did not take of a block, at its end, reads as zeros if it has taken the blocks after it.
TEST_F(SaveImported, NumbersThatDidNotReachTheDiskAreNoticed) {
    const auto lose = [](std::size_t kept) {
        return [kept](std::string& bytes) {
            std::fill(bytes.begin() + static_cast<long>(kept), bytes.end(), '\0');
        };
    };
    for (const unsigned int kept : {0U, 4U, 10U}) {
        const auto failure = saveDamaged(false, lose(kept));
        EXPECT_TRUE(failure.starts_with(folder.path("out.mox") +
                                        ": can't be written: the saved file is not whole (block 0 at 2800: "))
            << failure;
        EXPECT_TRUE(failure.ends_with("); is the disk full?")) << failure;
        EXPECT_EQ(folder.files(), Files{});
    }
}

TEST_F(SaveImported, BlocksTooSmallForTheDatasetsAreSaidToBeThat) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, "512");
    for (const bool check : {false, true}) {
        try {
            saveImported({"model.e", folder.path("out.mox"), false, check}, "libtest", messages.terminal(),
                         [](MoxTool::ImportTarget& target) {
                             Qel::Mox2::Model& model = target.model;
                             model.addNode(Qel::Mox2::RootGroup, "model");
                             const auto shape = model.addNode(Qel::Mox2::Shape, "Shape");
                             for (unsigned i = 0; i < 105; ++i) {
                                 const auto numbers = Support::numbersOfArray(i, 150);
                                 Qel::Mox2::Array1d<unsigned> array(numbers.size());
                                 array.copy_from(numbers.data());
                                 model.addArrayProperty("T" + std::to_string(i), Qel::Mox2::NodeScalar, array,
                                                        shape, Qel::Mox2::Step{});
                             }
                         });
            FAIL() << "nothing was wrong";
        } catch (const MoxTool::Failure& failure) {
            const std::string text = failure.what();
            EXPECT_NE(text.find("a single dataset filled the block before"), std::string::npos) << text;
            EXPECT_EQ(text.find("disk full"), std::string::npos) << text;
            EXPECT_EQ(text.find('\n'), std::string::npos);
        }
        EXPECT_EQ(folder.files(), Files{});
    }
}

#ifndef _WIN32
namespace {

class ImportApart : public SaveImported {
protected:
    // The message with which an import fails that is filled like this; empty if it succeeds.
    std::string failureOf(const MoxTool::ModelFiller& fill, std::uint64_t mostMemory = 0) {
        try {
            saveImported({"model.e", folder.path("out.mox"), false, false, mostMemory}, "libtest",
                         messages.terminal(), fill);
        } catch (const MoxTool::Failure& failure) {
            return failure.what();
        }
        return "";
    }
};

} // namespace

TEST_F(ImportApart, CrashIsOneLineAndLeavesNothingBehind) {
    for (const int signal : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE}) {
        EXPECT_EQ(failureOf([signal](MoxTool::ImportTarget& target) {
                      target.model.addNode(Qel::Mox2::RootGroup, "model");
                      std::signal(signal, SIG_DFL);
                      std::raise(signal);
                  }),
                  "model.e: libtest crashed on this file; it is likely damaged");
        EXPECT_EQ(messages.text(), "");
        EXPECT_EQ(folder.files(), Files{});
    }
}

TEST_F(ImportApart, EndOfTheProcessByTheLibraryIsACrashAsWell) {
    for (const int code : {0, 1}) {
        EXPECT_EQ(failureOf([code](MoxTool::ImportTarget&) { _exit(code); }),
                  "model.e: libtest crashed on this file; it is likely damaged");
        EXPECT_EQ(folder.files(), Files{});
    }
}

TEST_F(ImportApart, LastWordsOfALibraryAreDropped) {
    if (SUPPORT_ADDRESS_SANITIZER) {
        GTEST_SKIP() << "the reports of the sanitizer are kept";
    }
    testing::internal::CaptureStderr();
    failureOf([](MoxTool::ImportTarget&) {
        std::fputs("free(): invalid pointer\n", stderr);
        std::abort();
    });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImportApart, KillBySystemIsSaidToBeThat) {
    EXPECT_EQ(failureOf([](MoxTool::ImportTarget&) { std::raise(SIGKILL); }),
              "model.e: not read to its end, since the system killed the import; was memory short?");
    EXPECT_EQ(folder.files(), Files{});
}

TEST_F(ImportApart, MemoryIsBounded) {
    if (SUPPORT_ADDRESS_SANITIZER) {
        GTEST_SKIP() << "the sanitizer needs too much memory for a bound";
    }
    const auto take = [](MoxTool::ImportTarget& target) {
        std::vector<char> room(std::size_t{3} << 30);
        target.model.addNode(Qel::Mox2::RootGroup, std::string(1, room[1] == 0 ? 'a' : 'b'));
    };
    EXPECT_EQ(failureOf(take, std::uint64_t{2} << 30),
              "model.e: needs more memory than its bound of 2048 MiB; --memory sets another");
    EXPECT_EQ(folder.files(), Files{});
}

TEST_F(ImportApart, CrashAfterAnAllocationThatFailedIsSaidToBeThat) {
    if (SUPPORT_ADDRESS_SANITIZER) {
        GTEST_SKIP() << "the sanitizer needs too much memory for a bound";
    }
    const auto use = [](MoxTool::ImportTarget&) {
        auto* volatile room = static_cast<volatile char*>(std::malloc(std::size_t{3} << 30));
        room[0] = 1;
    };
    EXPECT_EQ(failureOf(use, std::uint64_t{2} << 30),
              "model.e: needs more memory than its bound of 2048 MiB, or is damaged; --memory sets another");
    EXPECT_EQ(folder.files(), Files{});
}

TEST_F(ImportApart, CrashNearTheBoundMayHaveTwoReasons) {
    if (SUPPORT_ADDRESS_SANITIZER) {
        GTEST_SKIP() << "the sanitizer needs too much memory for a bound";
    }
    const auto use = [](MoxTool::ImportTarget& target) {
        const std::vector<char> room(std::size_t{300} << 20, 'a');
        target.model.addNode(Qel::Mox2::RootGroup, std::string(1, room.back()));
        std::raise(SIGSEGV);
    };
    EXPECT_EQ(failureOf(use, std::uint64_t{1} << 30),
              "model.e: libtest crashed on this file; it is damaged, or needs more memory than its bound of "
              "1024 MiB; --memory sets another");
    EXPECT_EQ(failureOf(use, std::uint64_t{1} << 36),
              "model.e: libtest crashed on this file; it is likely damaged");
}

TEST_F(ImportApart, FailureAfterAnAllocationThatFailedNamesTheBoundToo) {
    if (SUPPORT_ADDRESS_SANITIZER) {
        GTEST_SKIP() << "the sanitizer needs too much memory for a bound";
    }
    const auto refuse = [](MoxTool::ImportTarget&) {
        void* volatile room = std::malloc(std::size_t{3} << 30);
        if (room == nullptr) {
            throw MoxTool::Failure("model.e", "damaged: no nodes");
        }
    };
    EXPECT_EQ(failureOf(refuse, std::uint64_t{2} << 30),
              "model.e: damaged: no nodes; or it needs more memory than its bound of 2048 MiB; --memory sets "
              "another");
}

TEST_F(ImportApart, SummaryPassesFromOneProcessToTheOther) {
    const auto summary = saveImported({"model.e", folder.path("out.mox"), false, false, 0}, "libtest",
                                      messages.terminal(), [this](MoxTool::ImportTarget& target) {
                                          fill(target.model);
                                          target.summary.shapes = 1;
                                          target.summary.nodes = 2;
                                          target.summary.elements = 3;
                                          target.summary.steps = 4;
                                          target.summary.datasets = 5;
                                          target.summary.addSkipped("sets", {"a\n\xFF", "b"});
                                          target.summary.addSkipped("records", 6);
                                          target.summary.addSkipped("none", 0);
                                          target.summary.addNote("all is well");
                                          target.summary.addNote("all is well");
                                      });
    EXPECT_EQ(summary.lines(),
              (Files{folder.path("out.mox") +
                         ": shapes: 1, nodes: 2, elements: 3, steps: 4, datasets: 5, compressor: " +
                         MoxTool::Compressor::preferred(),
                     "not taken: sets: 2 (a\\n\\xFF, b)", "not taken: records: 6", "note: all is well"}));
}

TEST_F(ImportApart, ProgressOfACrashedImportIsCleared) {
    Messages watched(true);
    try {
        saveImported({"model.e", folder.path("out.mox"), false, false, 0}, "libtest", watched.terminal(),
                     [](MoxTool::ImportTarget& target) {
                         target.terminal.progress("importing", 0.5);
                         std::raise(SIGKILL);
                     });
        FAIL() << "nothing was wrong";
    } catch (const MoxTool::Failure&) {
        EXPECT_EQ(watched.text(), "\r\x1B[Kimporting  50 %\r\x1B[K");
    }
}

// Both processes hold the end of a pipe to which one of them writes, so reading from it ends when both have ended.
TEST_F(ImportApart, SignalEndsBothProcessesAndLeavesNothing) {
    for (const int signal : {SIGINT, SIGTERM}) {
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        const auto [source, target] = ends;
        const auto id = fork();
        ASSERT_GE(id, 0);
        if (id == 0) {
            close(source);
            std::signal(signal, SIG_DFL); // a test program in the background ignores Ctrl-C
            MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAllForGood);
            failureOf([target = target](MoxTool::ImportTarget&) {
                if (write(target, "x", 1) == 1) {
                    pause();
                }
            });
            _exit(0);
        }
        close(target);
        char letter = 0;
        EXPECT_EQ(read(source, &letter, 1), 1);
        EXPECT_EQ(folder.files().size(), 1U);
        EXPECT_EQ(kill(id, signal), 0);
        EXPECT_EQ(read(source, &letter, 1), 0);
        close(source);
        int status = 0;
        EXPECT_EQ(waitpid(id, &status, 0), id);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_EQ(folder.files(), Files{});
    }
}
#endif
