#include "faults/SavedSteps.h"

#include "Support/EnvironmentGuard.h"
#include "Support/NumberedArrays.h"

namespace Faults {

using namespace Qel::Mox2;

namespace {

constexpr unsigned int NumbersInAnArray = 25;
const std::string BlockSize = "200"; // bytes: two arrays of 25 numbers of four bytes

} // namespace

void SavedSteps::build(const std::string& path) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, BlockSize);
    attempt("saveTo", [&] { model_->saveTo(path, {.overwrite = true, .sourceName = "steps"}); });
    attempt("addNode(Group)", [&] { model_->addNode(Group, "root"); });
    attempt("addNode(Shape)", [&] { model_->addNode(Shape, "part"); });
    for (unsigned int i = 0; i < Arrays; ++i) {
        const Array1d<unsigned int> numbers(Support::numbersOfArray(i, NumbersInAnArray));
        attempt("addArrayProperty",
                [&] { model_->addArrayProperty("T" + std::to_string(i), NodeScalar, numbers, 3U, Step{}); });
    }
}

bool SavedSteps::close() {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, BlockSize);
    return attempt("close", [&] { model_->close(); });
}

void SavedSteps::abandon() {
    (void)model_.release();
}

bool SavedSteps::attempt(const std::string& call, const std::function<void()>& action) {
    try {
        action();
        return true;
    } catch (...) {
        thrown_.push_back({call, std::current_exception()});
        return false;
    }
}

} // namespace Faults
