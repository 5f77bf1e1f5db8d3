// zlib's contract for compress2(), case by case: what moxwriter-deflate does is compared with what zlib itself does.

#include "Support/AddressSanitizer.h"

#include <MoxWriterDeflate/compressor.h>

#include <gtest/gtest.h>
#include <libdeflate.h>
#include <zlib.h>

#include <dlfcn.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<Bytef>;
using Compress2 = decltype(&compress2);

constexpr std::array<int, 10> LevelsThatCompress = {Z_DEFAULT_COMPRESSION, 1, 2, 3, 4, 5, 6, 7, 8, 9};
constexpr Bytef Untouched = 0xA5;

// A name of this program's own finds moxwriter-deflate first; zlib itself is asked for its function.
Compress2 zlibItself() {
    static void* const library = dlopen("libz.so.1", RTLD_NOW | RTLD_LOCAL);
    static const auto function = reinterpret_cast<Compress2>(dlsym(library, "compress2"));
    return function;
}

struct Outcome {
    int result = 0;
    uLongf length = 0;
    /// As much as the caller gave room for, and 16 bytes more.
    Bytes room;

    Bytes stream() const { return {room.begin(), room.begin() + static_cast<std::ptrdiff_t>(length)}; }
    bool exceedsRoom() const {
        return !std::all_of(room.end() - 16, room.end(), [](Bytef byte) { return byte == Untouched; });
    }
};

Outcome outcomeOf(Compress2 function, const Bytes& source, std::size_t room, int level) {
    Outcome outcome{.length = static_cast<uLongf>(room), .room = Bytes(room + 16, Untouched)};
    outcome.result = function(outcome.room.data(), &outcome.length, source.data(),
                              static_cast<uLong>(source.size()), level);
    return outcome;
}

Outcome ours(const Bytes& source, int level) {
    return outcomeOf(compress2, source, compressBound(static_cast<uLong>(source.size())), level);
}

Outcome zlibs(const Bytes& source, int level) {
    return outcomeOf(zlibItself(), source, compressBound(static_cast<uLong>(source.size())), level);
}

Bytes inflated(const Bytes& stream, std::size_t size) {
    Bytes content(size + 1);
    auto length = static_cast<uLongf>(content.size());
    const int result = uncompress(content.data(), &length, stream.data(), static_cast<uLong>(stream.size()));
    EXPECT_EQ(Z_OK, result);
    content.resize(length);
    return content;
}

Bytes noise(std::size_t size) {
    std::mt19937 random(static_cast<unsigned>(size));
    Bytes bytes(size);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<Bytef>(random()); });
    return bytes;
}

Bytes text(std::size_t size) {
    const std::string words = "the strain, the stress and the temperature of a part, step by step; ";
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<Bytef>(words[(i + i / 1000) % words.size()]);
    }
    return bytes;
}

std::vector<Bytes> samples() {
    return {text(1),  text(2),     text(100),     text(65'535),   text(65'536),     text(1'000'000),
            noise(1), noise(1000), noise(70'000), noise(300'001), Bytes(500'000, 0)};
}

class CompressTwo : public testing::Test {
protected:
    CompressTwo() { moxwriter_set_compressor(MOXWRITER_COMPRESSOR_DEFLATE); }
    ~CompressTwo() override { moxwriter_set_compressor(MOXWRITER_COMPRESSOR_DEFLATE); }
};

TEST_F(CompressTwo, IsThatOfLibdeflateInAProgramThatLinksItBeforeZlib) {
    const unsigned long long before = moxwriter_deflate_calls();
    ASSERT_EQ(Z_OK, ours(text(1000), 6).result);
    EXPECT_EQ(before + 1, moxwriter_deflate_calls());
    ASSERT_NE(nullptr, zlibItself());
    ASSERT_NE(zlibItself(), &compress2);
}

TEST_F(CompressTwo, InflatesToTheSameContentAtEveryLevel) {
    for (const Bytes& source : samples()) {
        for (const int level : LevelsThatCompress) {
            const Outcome outcome = ours(source, level);
            ASSERT_EQ(Z_OK, outcome.result) << source.size() << " bytes at level " << level;
            EXPECT_FALSE(outcome.exceedsRoom());
            EXPECT_EQ(source, inflated(outcome.stream(), source.size()));
        }
    }
}

TEST_F(CompressTwo, LeavesEveryLevelThatCompressesToLibdeflate) {
    for (const int level : LevelsThatCompress) {
        const unsigned long long before = moxwriter_deflate_calls();
        ours(text(1000), level);
        EXPECT_EQ(before + 1, moxwriter_deflate_calls()) << level;
    }
}

TEST_F(CompressTwo, GivesZlibsBytesAtLevelZero) {
    for (const Bytes& source : samples()) {
        const Outcome expected = zlibs(source, Z_NO_COMPRESSION);
        const Outcome outcome = ours(source, Z_NO_COMPRESSION);
        EXPECT_EQ(expected.result, outcome.result);
        EXPECT_EQ(expected.stream(), outcome.stream());
    }
}

TEST_F(CompressTwo, RefusesLevelsAsZlibDoes) {
    for (const int level :
         {-2, 10, 11, 12, 13, 100, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        const Outcome expected = zlibs(text(100), level);
        const Outcome outcome = ours(text(100), level);
        EXPECT_EQ(Z_STREAM_ERROR, outcome.result) << level;
        EXPECT_EQ(expected.result, outcome.result) << level;
        EXPECT_EQ(0U, outcome.length) << level;
        EXPECT_EQ(expected.length, outcome.length) << level;
    }
}

TEST_F(CompressTwo, GivesZlibsBytesForEmptyInput) {
    for (const int level : {-1, 0, 1, 6, 9}) {
        const Outcome expected = zlibs({}, level);
        const Outcome outcome = ours({}, level);
        EXPECT_EQ(Z_OK, outcome.result);
        EXPECT_EQ(expected.stream(), outcome.stream()) << level;
    }
    EXPECT_EQ((Bytes{0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01}), ours({}, 6).stream());
}

TEST_F(CompressTwo, TakesANullSourceOnlyWithoutALengthAsZlibDoes) {
    for (const uLong length : {0UL, 1UL, 1000UL}) {
        Bytes room(100);
        auto expectedLength = static_cast<uLongf>(room.size());
        const int expected = zlibItself()(room.data(), &expectedLength, nullptr, length, 6);
        auto outcomeLength = static_cast<uLongf>(room.size());
        const int outcome = compress2(room.data(), &outcomeLength, nullptr, length, 6);
        EXPECT_EQ(length == 0 ? Z_OK : Z_STREAM_ERROR, outcome);
        EXPECT_EQ(expected, outcome) << length;
        EXPECT_EQ(expectedLength, outcomeLength) << length;
    }
}

TEST_F(CompressTwo, RefusesANullDestinationAsZlibDoes) {
    const Bytes source = text(100);
    for (const uLongf room : {0UL, 1000UL}) {
        uLongf expectedLength = room;
        const int expected = zlibItself()(nullptr, &expectedLength, source.data(), 100, 6);
        uLongf outcomeLength = room;
        const int outcome = compress2(nullptr, &outcomeLength, source.data(), 100, 6);
        EXPECT_EQ(Z_STREAM_ERROR, outcome);
        EXPECT_EQ(expected, outcome);
        EXPECT_EQ(expectedLength, outcomeLength);
    }
}

TEST_F(CompressTwo, FillsTooLittleRoomAsZlibDoes) {
    const Bytes source = noise(2000);
    for (const std::size_t room : {0U, 1U, 2U, 7U, 100U, 1000U, 1999U}) {
        const Outcome expected = outcomeOf(zlibItself(), source, room, 6);
        const Outcome outcome = outcomeOf(compress2, source, room, 6);
        EXPECT_EQ(Z_BUF_ERROR, outcome.result) << room;
        EXPECT_EQ(expected.result, outcome.result) << room;
        EXPECT_EQ(expected.length, outcome.length) << room;
        EXPECT_EQ(expected.stream(), outcome.stream()) << room;
        EXPECT_FALSE(outcome.exceedsRoom()) << room;
    }
}

TEST_F(CompressTwo, NeedsNoMoreRoomThanZlib) {
    for (const Bytes& source : samples()) {
        for (const int level : LevelsThatCompress) {
            const uLongf needed = zlibs(source, level).length;
            const Outcome outcome = outcomeOf(compress2, source, needed, level);
            ASSERT_EQ(Z_OK, outcome.result) << source.size() << " bytes at level " << level;
            EXPECT_FALSE(outcome.exceedsRoom());
            EXPECT_EQ(source, inflated(outcome.stream(), source.size()));
        }
    }
}

TEST_F(CompressTwo, LeavesToZlibWhatLibdeflateHasTooLittleRoomFor) {
    // Where zlib needs less than libdeflate it succeeds, and else it fails as it always does.
    for (std::size_t size = 1; size <= 300; ++size) {
        const Bytes source = noise(size);
        const std::size_t room = ours(source, 6).length - 1;
        const unsigned long long before = moxwriter_deflate_calls();
        const Outcome expected = outcomeOf(zlibItself(), source, room, 6);
        const Outcome outcome = outcomeOf(compress2, source, room, 6);
        EXPECT_EQ(before, moxwriter_deflate_calls()) << size;
        EXPECT_EQ(expected.result, outcome.result) << size;
        EXPECT_EQ(expected.stream(), outcome.stream()) << size;
    }
}

TEST_F(CompressTwo, LeavesTheSourceAsItIs) {
    const Bytes source = text(100'000);
    Bytes given = source;
    Bytes room(compressBound(static_cast<uLong>(given.size())));
    auto length = static_cast<uLongf>(room.size());
    ASSERT_EQ(Z_OK, compress2(room.data(), &length, given.data(), static_cast<uLong>(given.size()), 6));
    EXPECT_EQ(source, given);
}

TEST_F(CompressTwo, GivesZlibsBytesWhenZlibIsChosen) {
    moxwriter_set_compressor(MOXWRITER_COMPRESSOR_ZLIB);
    EXPECT_EQ(MOXWRITER_COMPRESSOR_ZLIB, moxwriter_compressor());
    const unsigned long long before = moxwriter_deflate_calls();
    for (const Bytes& source : samples()) {
        for (const int level : LevelsThatCompress) {
            EXPECT_EQ(zlibs(source, level).stream(), ours(source, level).stream()) << level;
        }
    }
    EXPECT_EQ(before, moxwriter_deflate_calls());
}

TEST_F(CompressTwo, LeavesToZlibWhatLibdeflateHasNoMemoryFor) {
    const Bytes source = text(100'000);
    libdeflate_set_memory_allocator([](std::size_t) -> void* { return nullptr; }, std::free);
    const Outcome outcome = ours(source, 6);
    libdeflate_set_memory_allocator(std::malloc, std::free);
    EXPECT_EQ(Z_OK, outcome.result);
    EXPECT_EQ(zlibs(source, 6).stream(), outcome.stream());
}

TEST_F(CompressTwo, ServesManyThreadsAtOnce) {
    constexpr unsigned threadCount = 8;
    std::array<unsigned, threadCount> successes{};
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < threadCount; ++number) {
        threads.emplace_back([number, &successes] {
            const Bytes source = text(20'000 + 1000 * number);
            for (int round = 0; round < 30; ++round) {
                const Outcome outcome = ours(source, 1 + static_cast<int>(number) % 9);
                successes[number] +=
                    outcome.result == Z_OK && inflated(outcome.stream(), source.size()) == source ? 1U : 0U;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const unsigned count : successes) {
        EXPECT_EQ(30U, count);
    }
}

// Zeros take no memory until something is written to them.
class Zeros {
public:
    explicit Zeros(std::size_t size)
        : size_(size),
          address_(mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
    Zeros(const Zeros&) = delete;
    Zeros& operator=(const Zeros&) = delete;
    ~Zeros() { munmap(address_, size_); }

    const Bytef* data() const {
        return address_ == MAP_FAILED ? nullptr : static_cast<const Bytef*>(address_);
    }

private:
    std::size_t size_;
    void* address_;
};

TEST_F(CompressTwo, TakesMoreThanFourGibibytes) {
    if (sizeof(uLong) < 8) {
        GTEST_SKIP() << "lengths have 32 bits here";
    }
    if (SUPPORT_ADDRESS_SANITIZER != 0) {
        GTEST_SKIP() << "nearly all of a minute is spent in libraries without sanitizers";
    }
    constexpr std::uint64_t size = (std::uint64_t{1} << 32U) + 12'345;
    const Zeros source(size);
    ASSERT_NE(nullptr, source.data());
    Bytes room(16 * 1024 * 1024);
    auto length = static_cast<uLongf>(room.size());
    ASSERT_EQ(Z_OK, compress2(room.data(), &length, source.data(), size, 1));

    z_stream stream{};
    ASSERT_EQ(Z_OK, inflateInit(&stream));
    stream.next_in = room.data();
    stream.avail_in = static_cast<uInt>(length);
    Bytes part(1024 * 1024);
    const Bytes zeros(part.size(), 0);
    int result = Z_OK;
    while (result == Z_OK) {
        stream.next_out = part.data();
        stream.avail_out = static_cast<uInt>(part.size());
        result = inflate(&stream, Z_NO_FLUSH);
        ASSERT_EQ(0, std::memcmp(zeros.data(), part.data(), part.size() - stream.avail_out));
    }
    inflateEnd(&stream);
    // The end of a stream is its checksum, which inflate() has compared.
    EXPECT_EQ(Z_STREAM_END, result);
    EXPECT_EQ(size, stream.total_out);
}

} // namespace
