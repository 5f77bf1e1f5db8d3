#pragma once

#include <Qel/Mox/Geometry.h>

#include <string>

namespace Support {

/// A geometry that says it is of another version.
class OlderGeometry final : public QelMox::Geometry {
public:
    using Geometry::Geometry;

    std::string GetVersion() const override { return "0.5"; }
};

} // namespace Support
