#include "foreignKind.h"

#include "readFailure.h"

#include <MoxReader/Format.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace MoxTool {

namespace {

using namespace std::string_view_literals;

struct Row {
    std::string_view beginning;
    std::string_view mark; // stands somewhere after it; empty if the beginning says enough
    ForeignFormat format;
    std::string_view text;
    std::string_view decompressor = {};
};

constexpr auto ExodusText = "an Exodus II file; mox import converts it"sv;
constexpr auto NetcdfText = "a netCDF file; mox import converts it if it is an Exodus II file"sv;
constexpr auto CgnsText = "a CGNS file; mox import converts it"sv;
constexpr auto GmshText = "a Gmsh file; mox import converts it"sv;
constexpr auto VtkText = "a VTK file, which mox writes (mox export) but doesn't read"sv;
constexpr auto Hdf5Beginning = "\x89HDF\r\n\x1A\n"sv;

using enum ForeignFormat;

// The first that fits counts. An import looks into each netCDF and HDF5 file, since all of them may be Exodus II.
constexpr std::array Rows = {
    Row{"CDF"sv, "num_dim"sv, Exodus, ExodusText},
    Row{"CDF"sv, ""sv, Exodus, NetcdfText},
    Row{Hdf5Beginning, "CGNSLibraryVersion"sv, Cgns, CgnsText},
    Row{Hdf5Beginning, "num_dim"sv, Exodus, ExodusText},
    Row{Hdf5Beginning, "_NCProperties"sv, Exodus, NetcdfText},
    Row{Hdf5Beginning, ""sv, Exodus,
        "an HDF5 file; mox import converts it if it is an Exodus II or a CGNS file"sv},
    // As the library of the format writes it, and as a text.
    Row{"\xC0\xA8\xA3\xA9"
        "ADF Database Version"sv,
        ""sv, Cgns, CgnsText},
    Row{"@(#)ADF Database Version"sv, ""sv, Cgns, CgnsText},
    Row{"$MeshFormat"sv, ""sv, Gmsh, GmshText},
    Row{"$Comments"sv, ""sv, Gmsh, GmshText},
    Row{"<?xml"sv, "<VTKFile"sv, Other, VtkText},
    Row{"<VTKFile"sv, ""sv, Other, VtkText},
    Row{"# vtk DataFile"sv, ""sv, Other, VtkText},
    Row{"<?xml"sv, ""sv, Other, "an XML file"sv},
    Row{"PK\x03\x04"sv, ""sv, Other, "a zip archive; unpack it first"sv},
    Row{"7z\xBC\xAF\x27\x1C"sv, ""sv, Other, "a 7-Zip archive; unpack it first"sv},
    Row{"\x1F\x8B"sv, ""sv, Other, "compressed with gzip"sv, "gzip"sv},
    Row{"\xFD"
        "7zXZ\0"sv,
        ""sv, Other, "compressed with xz"sv, "xz"sv},
    Row{"BZh"sv, ""sv, Other, "compressed with bzip2"sv, "bzip2"sv},
    Row{"\x28\xB5\x2F\xFD"sv, ""sv, Other, "compressed with zstd"sv, "zstd"sv},
    Row{"%PDF-"sv, ""sv, Other, "a PDF document"sv},
    Row{"\x89PNG\r\n\x1A\n"sv, ""sv, Other, "a PNG picture"sv},
    Row{"\x93NUMPY"sv, ""sv, Other, "a NumPy array"sv},
    Row{"\x7F"
        "ELF"sv,
        ""sv, Other, "a program"sv},
};

std::string readBeginning(MoxReader::Source& source, std::uint64_t most) {
    std::vector<std::uint8_t> bytes(std::min(source.size(), most));
    source.read(0, bytes);
    return {bytes.begin(), bytes.end()};
}

bool isText(std::string_view start) {
    constexpr std::size_t EnoughToKnow = 512;
    return std::ranges::all_of(start.substr(0, EnoughToKnow), [](char letter) {
        const auto byte = static_cast<unsigned char>(letter);
        return (byte >= ' ' && byte != 0x7F) || letter == '\n' || letter == '\r' || letter == '\t';
    });
}

} // namespace

bool isMox(std::string_view start) {
    const auto& signature = MoxReader::Format::Signature;
    return start.starts_with(std::string(signature.begin(), signature.end()));
}

std::optional<ForeignKind> recogniseForeign(std::string_view start) {
    const auto found = std::ranges::find_if(Rows, [&start](const Row& row) {
        return start.starts_with(row.beginning) && start.find(row.mark) != std::string::npos;
    });
    if (found != Rows.end()) {
        return ForeignKind{found->format, found->text, found->decompressor};
    }
    return !start.empty() && isText(start) ? std::optional(ForeignKind{Other, "a text file", {}})
                                           : std::nullopt;
}

std::string foreignKind(MoxReader::Source& source) {
    if (isMox(readBeginning(source, MoxReader::Format::Signature.size()))) {
        return "";
    }
    const auto kind = recogniseForeign(readBeginning(source, ForeignSearchLength));
    if (!kind) {
        return "";
    }
    return kind->decompressor.empty() ? std::string(kind->text)
                                      : fmt::format("{}; {} -dc FILE | mox ... - reads what is in it",
                                                    kind->text, kind->decompressor);
}

void refuseForeignFile(const std::string& path, MoxReader::Source& source) {
    const auto kind = explainErrors(path, [&] { return foreignKind(source); });
    if (!kind.empty()) {
        throw Failure(path, "is no MOX file but " + kind);
    }
}

} // namespace MoxTool
