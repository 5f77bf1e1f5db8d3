#include "readFailure.h"

#include "utf8Path.h"

#include <MoxReader/Format.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace MoxTool {

namespace {

using MoxReader::ErrorCode;

struct Advice {
    ErrorCode code;
    std::string_view text;
};

constexpr std::array Advices = {
    Advice{ErrorCode::OpenFailed, "check the path and the permissions"},
    Advice{ErrorCode::ReadFailed, "check the disk or the network"},
    Advice{ErrorCode::BadSignature, "is this a MOX file?"},
    Advice{ErrorCode::UnsupportedFileVersion, "this mox reads version 1.3 alone"},
    Advice{ErrorCode::Truncated, "mox salvage saves what is left"},
    Advice{ErrorCode::BlockBeyondFile, "mox salvage saves what is left"},
    Advice{ErrorCode::NotFinished, "mox salvage saves what reached the disk"},
};

// Of stdin the size is not known, and -1 stands for that of a file that is not there.
std::uintmax_t sizeOf(const std::string& file) {
    std::error_code ignored;
    return std::filesystem::file_size(pathOf(file), ignored);
}

bool endsBeforeItsBlocks(const std::string& file, ErrorCode code) {
    return (code == ErrorCode::Truncated || code == ErrorCode::NotFinished) &&
           sizeOf(file) <= MoxReader::Format::FirstBlockPosition;
}

std::string_view adviceFor(const std::string& file, ErrorCode code) {
    if (endsBeforeItsBlocks(file, code)) {
        return "no block of it is left, so nothing can be saved";
    }
    for (const auto& advice : Advices) {
        if (advice.code == code) {
            return advice.text;
        }
    }
    return "mox check lists all damage";
}

// The reader's text for a file that can't be opened names the path again.
std::string reasonOf(const MoxReader::Error& error) {
    return error.code() == ErrorCode::OpenFailed ? std::string(MoxReader::errorText(error.code()))
                                                 : error.what();
}

} // namespace

Failure readFailure(const std::string& file, const MoxReader::Error& error) {
    if (error.code() == ErrorCode::Truncated && sizeOf(file) == 0) {
        return Failure(file, "is empty");
    }
    return Failure(file, reasonOf(error) + "; " + std::string(adviceFor(file, error.code())));
}

} // namespace MoxTool
