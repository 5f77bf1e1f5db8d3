#pragma once

#include <Qel/Mox2/Model.h>

#include <pybind11/pybind11.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace MoxPython {

/// The arguments of an array property besides its numbers.
struct ArrayCall {
    std::optional<std::string> name; ///< None for the type's own name.
    Qel::Mox2::DatasetType type;
    Qel::Mox2::Array1d<unsigned int> ids;
    Qel::Mox2::StepList steps;
    Qel::Mox2::Attributes attributes;
};

/// A model with what Python needs around it.
///
/// All calls of all models take turns, since the library's own statics are not for two threads, and Python lets
/// any thread use an object. Who waits for a turn has released the GIL, and who has the turn never waits for the
/// GIL.
class SavedModel {
public:
    /// @param blockSize In bytes, what MOXWRITER_DEFAULT_BLOCK_SIZE is for this model alone; 0 for what the
    ///                  environment says.
    explicit SavedModel(std::uint32_t blockSize) : blockSize_(blockSize), model_(new Qel::Mox2::Model) {}
    SavedModel(const SavedModel&) = delete;
    SavedModel& operator=(const SavedModel&) = delete;
    /// Closes the model if it is open, and drops the exception that this may throw.
    ~SavedModel();

    /// Does a short work on the model. To be called with the GIL, which is released only to wait for the turn.
    template <typename Work>
    auto run(const Work& work) {
        if (const std::unique_lock turn(turns(), std::try_to_lock); turn.owns_lock()) {
            return runInTurn(work);
        }
        const pybind11::gil_scoped_release released;
        const std::lock_guard turn(turns());
        return runInTurn(work);
    }

    /// To be called without the GIL, as the next.
    ///
    /// After an exception the model is gone: the library could neither complete its file nor destroy it.
    void close();

    /// @param numbers Row by row.
    template <typename T>
    void addArray(const ArrayCall& call, const T* numbers, std::size_t rows, std::size_t columns);

private:
    static std::mutex& turns();

    template <typename Work>
    auto runInTurn(const Work& work) {
        const BlockSizeInUse inUse(blockSize_);
        return work(*model_);
    }

    // Makes the library find a block size in its environment, while it lives.
    class BlockSizeInUse {
    public:
        explicit BlockSizeInUse(std::uint32_t blockSize);
        BlockSizeInUse(const BlockSizeInUse&) = delete;
        BlockSizeInUse& operator=(const BlockSizeInUse&) = delete;
        ~BlockSizeInUse();
    };

    std::uint32_t blockSize_;
    std::unique_ptr<Qel::Mox2::Model> model_;
};

extern template void SavedModel::addArray(const ArrayCall&, const float*, std::size_t, std::size_t);
extern template void SavedModel::addArray(const ArrayCall&, const unsigned int*, std::size_t, std::size_t);

} // namespace MoxPython
