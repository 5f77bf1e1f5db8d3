#pragma once

#include <Qel/Mox2/Attributes.h>
#include <Qel/Util/Export.h>

#include <string>

namespace Qel::Mox2 {

/// A step of an analysis, a time or a mode, that an array property belongs to.
struct MOXWRITER_EXPORT Step {
    /// The step's label. Empty for numbers that belong to no step.
    std::string name = {};
    /// What describes the step, such as its time; see Model::addArrayProperty().
    Attributes attributes = {};
};

} // namespace Qel::Mox2
