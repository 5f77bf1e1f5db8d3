#include "readFailure.h"

#include <array>
#include <string_view>

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
    Advice{ErrorCode::NotFinished, "mox salvage saves what reached the disk"},
};

std::string_view adviceFor(ErrorCode code) {
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
    return Failure(file, reasonOf(error) + "; " + std::string(adviceFor(error.code())));
}

} // namespace MoxTool
