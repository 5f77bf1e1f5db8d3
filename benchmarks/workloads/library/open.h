#pragma once

#include <Qel/Mox2/Model.h>

#include <string>

namespace Workloads::Library {

/// Lets `model` save to `path`, replacing what is there.
inline void open(Qel::Mox2::Model& model, const std::string& path) {
    Qel::Mox2::SaverOptions options;
    options.overwrite = true;
    model.saveTo(path, options);
}

} // namespace Workloads::Library
