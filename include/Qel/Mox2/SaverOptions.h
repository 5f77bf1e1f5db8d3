#pragma once

#include <string>

namespace Qel::Mox2 {

/// How Model::saveTo() opens the file, and who writes it.
struct SaverOptions {
    /// True: an existing file at that path is emptied and replaced. False: it makes saveTo() fail.
    bool overwrite = false;
    /// The application's name; goes into the file.
    std::string sourceName = {};
    /// The application's version; goes into the file, but only together with a sourceName.
    std::string sourceVersion = {};
    /// Accepted but not used.
    std::string sourceComment = {};
};

} // namespace Qel::Mox2
