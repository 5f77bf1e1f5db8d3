#pragma once

#include <filesystem>
#include <functional>

namespace Examples {

/// Saves a model beside `path`, checks the file, and only then gives it its name. Until then a former file
/// of that name stays as it is; if anything fails, nothing new is left.
///
/// @param save    Gets the path beside, saves there, and has closed the model when it returns.
/// @throws        What `save` throws.
/// @throws std::runtime_error if the file is not whole, see checkSaved().
/// @throws std::filesystem::filesystem_error if the file can't be renamed.
void saveChecked(const std::filesystem::path& path,
                 const std::function<void(const std::filesystem::path&)>& save);

} // namespace Examples
