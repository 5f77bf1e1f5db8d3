#pragma once

#include "Failure.h"

#include <MoxReader/Error.h>

#include <string>

namespace MoxTool {

/// What the reader found wrong, in one line for the user: the file, the reason, the place, what to do.
/// @param file The file's path as the user gave it.
Failure readFailure(const std::string& file, const MoxReader::Error& error);

/// Does the work and turns an error of the reader into readFailure().
/// @param work Called once, without arguments. Its result is passed on.
template <typename Work>
auto explainErrors(const std::string& file, Work&& work) {
    try {
        return work();
    } catch (const MoxReader::Error& error) {
        throw readFailure(file, error);
    }
}

} // namespace MoxTool
