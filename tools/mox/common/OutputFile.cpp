#include "OutputFile.h"

#include "Failure.h"
#include "Platform.h"
#include "followLinks.h"
#include "utf8Path.h"

#include <fstream>
#include <iostream>
#include <system_error>
#include <utility>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

bool isStandardOutput(const fs::path& path) {
    return path == "-" || Platform::isStandardOutput(path);
}

// Whether the path names something that bytes can only be sent to.
bool isStream(const fs::path& path) {
    std::error_code ignored;
    const auto status = fs::status(path, ignored);
    const bool isOther = fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
    return isOther || isStandardOutput(path);
}

// Nothing can be put beside a device, and what is sent there should be complete, so it is collected elsewhere.
fs::path targetOf(const fs::path& path, bool isStream) {
    std::error_code ignored; // without a folder for temporary files it is the working folder
    return isStream ? fs::temp_directory_path(ignored) / "mox" : followLinks(path);
}

bool copy(std::istream& in, std::ostream& out) {
    if (in.peek() != std::istream::traits_type::eof()) {
        out << in.rdbuf();
    }
    return out.flush() && !in.bad();
}

} // namespace

OutputFile::OutputFile(fs::path path, bool mayOverwrite)
    : path_(std::move(path)),
      overwrite_(mayOverwrite),
      isStream_(isStream(path_)),
      target_(targetOf(path_, isStream_)),
      temporary_(checkedTarget()) {}

void OutputFile::commit() {
    if (isStream_) {
        send();
        return;
    }
    checkedTarget();
    temporary_.moveToTarget();
}

/// @return the target, if a file may be put there.
const fs::path& OutputFile::checkedTarget() const {
    if (isStream_) {
        return target_;
    }
    if (!target_.has_filename()) {
        throw Failure(utf8Of(path_), "names no file");
    }
    std::error_code error;
    if (!fs::is_directory(folderOf(target_), error)) {
        throw Failure(utf8Of(path_), "the folder does not exist");
    }
    const auto status = fs::status(target_, error);
    if (status.type() == fs::file_type::none) {
        throw Failure(utf8Of(path_), "can't be written: " + error.message());
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Failure(utf8Of(path_), "exists and is no regular file");
    }
    if (fs::exists(status) && !overwrite_) {
        throw Failure(utf8Of(path_), "exists already; --overwrite replaces it");
    }
    return target_;
}

// The file loses its name first, where an open file can: a pipe whose reader goes away ends the process.
void OutputFile::send() const {
    std::ifstream in(temporary_.path(), std::ios::binary);
    std::error_code ignored;
    fs::remove(temporary_.path(), ignored);
    bool isSent = false;
    if (isStandardOutput(path_)) {
        Platform::makeBinary(stdout);
        isSent = in && copy(in, std::cout);
    } else {
        std::ofstream out(path_, std::ios::binary);
        isSent = in && out && copy(in, out);
    }
    if (!isSent) {
        throw Failure(utf8Of(path_), "can't be written");
    }
}

} // namespace MoxTool
