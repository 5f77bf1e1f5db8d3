// Paths that can't be written, a disk that is full, files that may not grow, signals, and files that vanish: all as the
// system itself makes them.

#include "Support/Bytes.h"
#include "Support/CaseStride.h"
#include "Support/TemporaryFolder.h"
#include "api/Support/Failures.h"
#include "faults/FailingFiles.h"
#include "faults/SavedSteps.h"
#include "faults/checkFile.h"

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace Faults {

namespace {

namespace fs = std::filesystem;

/// Not the superuser's, who may write everywhere.
constexpr uid_t Nobody = 65534;

bool savesQuietly(const std::string& path) {
    SavedSteps steps;
    steps.build(path);
    return steps.close() && steps.thrown().empty();
}

/// Runs a function in a process of its own.
/// @return what it returned; false if the process died.
bool inChild(const std::function<bool()>& function) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(function() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// A file system in memory with very little room.
class SmallFileSystem {
public:
    SmallFileSystem(std::string path, const std::string& size) : path_(std::move(path)) {
        fs::create_directory(path_);
        isMounted_ = mount("tmpfs", path_.c_str(), "tmpfs", 0, ("size=" + size).c_str()) == 0;
        reason_ = isMounted_ ? "" : std::strerror(errno);
    }
    SmallFileSystem(const SmallFileSystem&) = delete;
    SmallFileSystem& operator=(const SmallFileSystem&) = delete;
    ~SmallFileSystem() {
        if (isMounted_) {
            umount(path_.c_str());
        }
    }

    /// Why there is none; empty if there is one.
    const std::string& reason() const { return reason_; }

private:
    std::string path_;
    bool isMounted_ = false;
    std::string reason_;
};

void ignore(int) {}

/// A signal that comes all the time and lets the calls of the system that wait be broken off.
class Interruptions {
public:
    Interruptions() {
        struct sigaction action {};
        action.sa_handler = ignore;
        sigaction(SIGALRM, &action, &before_);
        const itimerval often{{0, Microseconds}, {0, Microseconds}};
        setitimer(ITIMER_REAL, &often, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;
    ~Interruptions() {
        const itimerval never{};
        setitimer(ITIMER_REAL, &never, nullptr);
        sigaction(SIGALRM, &before_, nullptr);
    }

private:
    static constexpr suseconds_t Microseconds = 50;
    struct sigaction before_ {};
};

class UnwillingSystem : public testing::Test {
protected:
    static testing::AssertionResult isRefused(const std::string& path) {
        Qel::Mox2::Model model;
        const std::string text = "Unable to open file \"" + path + "\"";
        return Api::fails([&] { model.saveTo(path, {.overwrite = true}); },
                          Api::failure<Qel::Exception::MiscelleneousException>(2, text, "Qel/Tnf/TnFile",
                                                                               "QelTnf::TnFile::OpenFile"));
    }

    Support::ByteVector soundBytes() const {
        const std::string sound = folder.path("sound.mox");
        EXPECT_TRUE(savesQuietly(sound));
        return Support::bytesOf(sound);
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("saved.mox");
};

} // namespace

TEST_F(UnwillingSystem, FolderInPlaceOfAFileIsRefused) {
    EXPECT_TRUE(isRefused(folder.path(".")));
}

TEST_F(UnwillingSystem, FolderThatDoesNotExistIsRefused) {
    EXPECT_TRUE(isRefused(folder.path("missing/saved.mox")));
    EXPECT_FALSE(fs::exists(folder.path("missing")));
}

TEST_F(UnwillingSystem, FolderWithoutPermissionIsRefused) {
    ASSERT_EQ(chmod(folder.path("").c_str(), S_IRUSR | S_IXUSR | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH), 0);
    EXPECT_TRUE(inChild([&] {
        if (geteuid() == 0 && setuid(Nobody) != 0) {
            return false;
        }
        return static_cast<bool>(isRefused(path));
    }));
    EXPECT_FALSE(fs::exists(path));
    chmod(folder.path("").c_str(), S_IRWXU);
}

// The limit cuts a write in two: a part is done and the rest is refused.
TEST_F(UnwillingSystem, FileThatMayNotGrowIsNotReportedButNotWhole) {
    const std::size_t size = soundBytes().size();
    const std::size_t step = size / 20 * CaseStride;
    for (std::size_t limit = 0; limit < size; limit += step) {
        SCOPED_TRACE("at " + std::to_string(limit) + " bytes");
        fs::remove(path);
        EXPECT_TRUE(inChild([&] {
            (void)std::signal(SIGXFSZ, SIG_IGN);
            const rlimit small{limit, limit};
            return setrlimit(RLIMIT_FSIZE, &small) == 0 && savesQuietly(path);
        }));
        EXPECT_LE(fs::file_size(path), limit);
        EXPECT_EQ(checkFile(path), CheckResult::Damaged);
    }
}

TEST_F(UnwillingSystem, FullDiskIsNotReportedButTheFileIsNotWhole) {
    const SmallFileSystem small(folder.path("small"), "16k");
    if (!small.reason().empty()) {
        GTEST_SKIP() << "no file system can be mounted: " << small.reason();
    }
    const std::string onFullDisk = folder.path("small/saved.mox");
    EXPECT_TRUE(savesQuietly(onFullDisk));
    EXPECT_EQ(checkFile(onFullDisk), CheckResult::Damaged);
}

TEST_F(UnwillingSystem, SignalsDuringASaveChangeNothing) {
    const Support::ByteVector sound = soundBytes();
    FailingFiles::disarm();
    const Interruptions interruptions;
    EXPECT_TRUE(savesQuietly(path));
    EXPECT_EQ(Support::bytesOf(path), sound);
}

TEST_F(UnwillingSystem, FileThatIsRemovedMeanwhileIsSavedWithoutItsNameAndNothingIsReported) {
    SavedSteps steps;
    steps.build(path);
    ASSERT_TRUE(fs::remove(path));
    EXPECT_TRUE(steps.close());
    EXPECT_TRUE(steps.thrown().empty());
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(UnwillingSystem, FileWhoseFolderIsRenamedMeanwhileIsWholeInThere) {
    const std::string before = folder.path("before");
    const std::string after = folder.path("after");
    fs::create_directory(before);
    SavedSteps steps;
    steps.build(before + "/saved.mox");
    fs::rename(before, after);
    EXPECT_TRUE(steps.close());
    EXPECT_TRUE(steps.thrown().empty());
    EXPECT_EQ(checkFile(after + "/saved.mox"), CheckResult::Whole);
    EXPECT_FALSE(fs::exists(before));
}

} // namespace Faults
