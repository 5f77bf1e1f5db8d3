// Memory runs out at each allocation of the reader in turn.

#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"
#include "memory/FailingAllocator.h"
#include "memory/readWhole.h"

#include <MoxReader/Error.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {

using Memory::FailingAllocator;
using Memory::readWhole;

struct Reading {
    std::uint64_t sum = 0;
    bool isOutOfMemory = false;
    bool isError = false;
    MoxReader::ErrorCode code{};
};

Reading readingOf(const std::string& path) {
    Reading reading;
    try {
        reading.sum = readWhole(path);
    } catch (const std::bad_alloc&) {
        reading.isOutOfMemory = true;
    } catch (const MoxReader::Error& error) {
        reading.isError = true;
        reading.code = error.code();
    }
    return reading;
}

// The streams of the standard library turn a lack of memory into a failed read.
bool isFailedRead(const Reading& reading) {
    return reading.isError && (reading.code == MoxReader::ErrorCode::ReadFailed ||
                               reading.code == MoxReader::ErrorCode::OpenFailed);
}

class ReaderOutOfMemory : public testing::Test {
protected:
    static void failEachAllocation(const std::string& path, FailingAllocator::Mode mode,
                                   const Reading& sound) {
        constexpr unsigned int Least = 10;
        unsigned int number = 1;
        for (;; ++number) {
            const long long liveBefore = FailingAllocator::live();
            FailingAllocator::arm(number, mode);
            const Reading reading = readingOf(path);
            FailingAllocator::disarm();
            SCOPED_TRACE("allocation " + std::to_string(number));
            ASSERT_EQ(FailingAllocator::live(), liveBefore) << "memory has leaked";
            if (!FailingAllocator::hasFailed()) {
                break;
            }
            ASSERT_TRUE(reading.isOutOfMemory || isFailedRead(reading))
                << "the reader makes something else of it";
        }
        const Reading reading = readingOf(path);
        EXPECT_EQ(reading.sum, sound.sum);
        EXPECT_EQ(reading.isError, sound.isError);
        EXPECT_GT(number, Least) << "hardly anything was allocated";
    }

    // In both ways, one allocation and all from one on.
    static void failIn(const std::string& path) {
        SCOPED_TRACE(path);
        const Reading sound = readingOf(path);
        ASSERT_FALSE(sound.isOutOfMemory);
        failEachAllocation(path, FailingAllocator::Mode::Once, sound);
        failEachAllocation(path, FailingAllocator::Mode::FromThenOn, sound);
    }

    static std::string golden(const std::string& name) { return MOXWRITER_GOLDEN_FOLDER "/" + name; }

    Support::TemporaryFolder folder;
};

TEST_F(ReaderOutOfMemory, EachFailedAllocationIsReportedAndLeaksNothing) {
    for (const char* const name : {"golden.mox", "node-sets.mox", "links.mox", "small-blocks.mox"}) {
        failIn(golden(name));
    }
}

TEST_F(ReaderOutOfMemory, EachFailedAllocationOfADamagedFileIsReportedAndLeaksNothing) {
    const Support::ByteVector sound = Support::bytesOf(golden("golden.mox"));
    for (const std::size_t cut : {std::size_t{1000}, std::size_t{2900}, sound.size() - 1}) {
        const std::string path = folder.write(
            "cut.mox", std::string(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(cut)));
        failIn(path);
    }
}

} // namespace
