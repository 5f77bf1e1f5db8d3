#include "saveChecked.h"

#include "checkSaved.h"

#include <system_error>

namespace Examples {

// [save]
void saveChecked(const std::filesystem::path& path,
                 const std::function<void(const std::filesystem::path&)>& save) {
    std::filesystem::path beside = path;
    beside += ".part";
    try {
        save(beside);
        checkSaved(beside);
        std::filesystem::rename(beside, path);
    } catch (...) {
        std::error_code nothingToRemove;
        std::filesystem::remove(beside, nothingToRemove);
        throw;
    }
}
// [/save]

} // namespace Examples
