#include <Qel/Mox2/StepList.h>

#include <Qel/Mox2/StepData.h>

#include <cstdint>
#include <new>
#include <stdexcept>
#include <utility>

namespace Qel::Mox2 {

namespace {

// The same bound on all platforms, though the size of a step differs.
constexpr std::uint64_t LargestCount = 0x555555555555555;

std::size_t checkedCount(std::size_t count) {
    if (count > LargestCount) {
        throw std::length_error("vector too long");
    }
    if (count > std::vector<StepData>().max_size()) {
        throw std::bad_alloc();
    }
    return count;
}

} // namespace

StepList::StepList(std::size_t count) : steps_(new std::vector<StepData>(checkedCount(count))) {}

StepList::StepList(const StepList& other) : steps_(new std::vector<StepData>(*other.steps_)) {}

const StepList& StepList::operator=(const StepList& other) {
    if (this != &other) {
        *steps_ = std::vector<StepData>(*other.steps_);
    }
    return *this;
}

StepList::~StepList() {
    delete std::exchange(steps_, nullptr);
}

Step StepList::operator[](std::size_t index) const {
    const StepData& data = (*steps_)[index];
    Step step;
    step.name = data.name;
    *step.attributes.map_ = data.attributes;
    return step;
}

void StepList::set(std::size_t index, const Step& step) {
    (*steps_)[index] = StepData(step.name, *step.attributes.map_);
}

} // namespace Qel::Mox2
