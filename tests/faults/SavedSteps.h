#pragma once

#include <Qel/Mox2/Model.h>

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Faults {

/// Saves a model of many blocks, call by call, and keeps what each call threw.
///
/// Its arrays fill a block each two of them, so that blocks go to disk while the model is built, and there are
/// more than the first index has room for.
class SavedSteps {
public:
    struct Thrown {
        std::string call;
        std::exception_ptr failure;
    };

    /// Makes all calls up to the last array.
    void build(const std::string& path);
    /// @return whether the close succeeded.
    bool close();
    /// Drops the model without closing it; for one that can no longer be closed.
    void abandon();

    const std::vector<Thrown>& thrown() const { return thrown_; }

    static constexpr unsigned int Arrays = 48;
    static constexpr unsigned int ArraysInABlock = 2;

private:
    bool attempt(const std::string& call, const std::function<void()>& action);

    std::unique_ptr<Qel::Mox2::Model> model_ = std::make_unique<Qel::Mox2::Model>();
    std::vector<Thrown> thrown_;
};

} // namespace Faults
