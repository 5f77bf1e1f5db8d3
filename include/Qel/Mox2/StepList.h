#pragma once

#include <Qel/Mox2/Step.h>
#include <Qel/Util/Export.h>

#include <cstddef>
#include <vector>

namespace Qel::Mox2 {

struct StepData;

/// Several steps that share the same numbers. Its length is given at construction. A plain value: copies are
/// deep.
class MOXWRITER_EXPORT StepList {
public:
    /// `count` steps without names or attributes.
    /// @throws std::length_error "vector too long" for a count above 0x555555555555555.
    /// @throws std::bad_alloc if there is no memory for the steps.
    StepList(std::size_t count = 0);
    /// Copies deeply.
    StepList(const StepList& other);
    /// Copies deeply, the length too.
    const StepList& operator=(const StepList& other);
    ~StepList();

    /// A copy of the step at `index`, counted from 0. The index is not checked.
    Step operator[](std::size_t index) const;

    /// Replaces the step at `index`, which must exist: the list does not grow.
    void set(std::size_t index, const Step& step);

private:
    friend class Model;

    std::vector<StepData>* steps_;
};

} // namespace Qel::Mox2
