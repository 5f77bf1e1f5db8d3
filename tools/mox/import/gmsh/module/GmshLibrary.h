#pragma once

#include "../GmshModel.h"
#include "MshCheck.h"

#include <string>

namespace MoxTool {

/// A Gmsh file, read by the Gmsh library. The library has one state for the whole process, so there can be
/// only one object at a time.
class GmshLibrary : public GmshModel {
public:
    /// @throws Failure if it is not a Gmsh file, or if it is damaged or cut off.
    explicit GmshLibrary(const std::string& path);

    std::string version() const override { return mesh_.version(); }
    std::vector<std::string> sections() const override { return mesh_.sections(); }
    std::uint64_t nodesInFile() const override { return mesh_.nodeCount(); }
    GmshNodes nodes() const override;
    std::vector<GmshEntity> entities() const override;
    std::string physicalName(int dimension, int tag) const override;
    std::vector<GmshElements> elements(const GmshEntity& entity) const override;
    std::vector<GmshView> views() const override;
    std::optional<GmshViewStep> viewStep(const GmshView& view, int step) const override;

private:
    // The library's state.
    struct LibraryState {
        LibraryState();
        LibraryState(const LibraryState&) = delete;
        LibraryState& operator=(const LibraryState&) = delete;
        ~LibraryState();
    };

    template <typename Function>
    void call(Function function) const;

    std::string path_;
    LibraryState state_;
    MshCheck mesh_;
};

} // namespace MoxTool
