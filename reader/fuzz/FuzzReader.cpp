// Reads arbitrary bytes as a file, using everything that the library offers. Any outcome but a value or an
// Error is a bug.
//
//     moxreader_fuzz -max_len=8192 CORPUS_FOLDER
//
// Few changes of the bytes of a file would get past zlib and the index, so most are made to the contents of the
// streams, from which a file is packed again. With PLAIN_MUTATION in the environment all are made to the bytes.

#include "Container.h"
#include "SpanSource.h"
#include "TimeLimit.h"
#include "mutateStreams.h"
#include "readAll.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using namespace MoxFuzz;

constexpr std::size_t FrontSize = 2800;

std::size_t store(const Bytes& file, std::uint8_t* data, std::size_t maxSize) {
    const auto size = std::min(file.size(), maxSize);
    std::copy_n(file.begin(), size, data);
    return size;
}

bool mutatesBytes(std::minstd_rand& chance) {
    static const bool isPlain = std::getenv("PLAIN_MUTATION") != nullptr;
    return isPlain || chance() % 8 == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const TimeLimit limit;
    const auto source = std::make_shared<SpanSource>(ByteSpan(data, size));
    try {
        // First by the damaged index, so that the blocks of a file with a wrong header are read too.
        readAll(MoxReader::File(source, scanIndex(*source)));
    } catch (const MoxReader::Error&) {
        return 0;
    }
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    std::minstd_rand chance(seed);
    auto streams = mutatesBytes(chance) ? std::nullopt : unpack({data, size});
    if (!streams || maxSize <= FrontSize) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    mutateStreams(*streams, maxSize - FrontSize, chance);
    const auto stored = store(pack(*streams, chance), data, maxSize);
    return chance() % 8 == 0 ? LLVMFuzzerMutate(data, stored, maxSize) : stored;
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                                 const std::uint8_t* otherData, std::size_t otherSize,
                                                 std::uint8_t* out, std::size_t maxSize, unsigned seed) {
    std::minstd_rand chance(seed);
    auto streams = unpack({data, size});
    const auto other = unpack({otherData, otherSize});
    if (!streams || !other) {
        return 0;
    }
    crossStreams(*streams, *other, chance);
    return store(pack(*streams, chance), out, maxSize);
}
