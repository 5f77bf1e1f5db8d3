#include "SavedModel.h"

#include <Qel/Tnf/Block.h>

#include <cstring>

namespace MoxPython {

using Qel::Mox2::Array1d;
using Qel::Mox2::Array2d;
using Qel::Mox2::Model;
using Qel::Mox2::StepList;

namespace {

constexpr std::uint32_t DefaultGrowth = 10'485'760;

// What the library finds as its variable; empty for the variable itself. Guarded by the turns.
std::string blockSizeText;

} // namespace

// The linker sends the library's calls of getenv() in this module here. So one model's block size shows neither in
// the environment of the process nor in that of its children.
extern "C" char* __real_getenv(const char* name);
extern "C" char* __wrap_getenv(const char* name);

extern "C" char* __wrap_getenv(const char* name) {
    const bool isReplaced = !blockSizeText.empty() && std::strcmp(name, "MOXWRITER_DEFAULT_BLOCK_SIZE") == 0;
    return isReplaced ? blockSizeText.data() : __real_getenv(name);
}

// The library keeps the step by which buffers grow from one model to the next.
SavedModel::BlockSizeInUse::BlockSizeInUse(std::uint32_t blockSize) {
    QelTnf::defaultBlockSize = DefaultGrowth;
    if (blockSize != 0) {
        blockSizeText = std::to_string(blockSize);
    }
}

SavedModel::BlockSizeInUse::~BlockSizeInUse() {
    blockSizeText.clear();
}

std::mutex& SavedModel::turns() {
    static std::mutex mutex;
    return mutex;
}

SavedModel::~SavedModel() {
    try {
        const pybind11::gil_scoped_release released;
        close();
    } catch (...) {
        // Python hears of it only from close().
    }
}

void SavedModel::close() {
    const std::lock_guard turn(turns());
    try {
        runInTurn([](Model& model) { model.close(); });
    } catch (...) {
        auto next = std::make_unique<Model>();
        // The destructor of a model that can't be closed ends the process.
        static_cast<void>(model_.release());
        model_ = std::move(next);
        throw;
    }
}

template <typename T>
void SavedModel::addArray(const ArrayCall& call, const T* numbers, std::size_t rows, std::size_t columns) {
    const std::lock_guard turn(turns());
    Array2d<T> table(rows, columns);
    table.copy_from(numbers);
    runInTurn([&](Model& model) {
        if (call.name) {
            model.addArrayProperty(*call.name, call.type, table, call.ids, call.steps, call.attributes);
        } else {
            model.addArrayProperty(call.type, table, call.ids, call.steps, call.attributes);
        }
    });
}

template void SavedModel::addArray(const ArrayCall&, const float*, std::size_t, std::size_t);
template void SavedModel::addArray(const ArrayCall&, const unsigned int*, std::size_t, std::size_t);

} // namespace MoxPython
