#include "importFormatOf.h"

#include "../common/Failure.h"
#include "../common/checkIsFile.h"
#include "../common/utf8Path.h"

#include <fmt/format.h>

#include <fstream>

namespace MoxTool {

namespace {

// The second sentence names the way that the Python package has for what meshio reads.
constexpr const char* Formats =
    "Exodus II, CGNS and Gmsh .msh; python3 -m moxwriter.convert reads other mesh formats";

std::string readBeginning(const std::string& path) {
    std::ifstream file(pathOf(path), std::ios::binary);
    if (!file) {
        throw Failure(path, "can't be opened");
    }
    std::string bytes(ForeignSearchLength, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::string whyNot(const std::string& start, const std::optional<ForeignKind>& kind) {
    if (start.empty()) {
        return "is empty";
    }
    if (isMox(start)) {
        return "is a MOX file already, so there is nothing to import; mox info shows what it has";
    }
    if (!kind) {
        return fmt::format("is in no format that mox import reads; these are {}", Formats);
    }
    if (!kind->decompressor.empty()) {
        return fmt::format("is {}; decompress it first, as with {} -d", kind->text, kind->decompressor);
    }
    return fmt::format("is {}; mox import reads {}", kind->text, Formats);
}

} // namespace

// The libraries of the formats go back and forth in the file.
ForeignFormat importFormatOf(const std::string& path) {
    if (path == "-") {
        throw Failure(path, "can't be imported from stdin; save it as a file first");
    }
    checkIsFile(path);
    const auto start = readBeginning(path);
    const auto kind = recogniseForeign(start);
    if (!kind || kind->format == ForeignFormat::Other) {
        throw Failure(path, whyNot(start, kind));
    }
    return kind->format;
}

} // namespace MoxTool
