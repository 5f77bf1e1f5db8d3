#include "foreignKind.h"

#include "readFailure.h"

#include <MoxReader/Format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace MoxTool {

namespace {

using namespace std::string_view_literals;

// The names by which files in a common container are told apart are near its beginning.
constexpr std::uint64_t SearchLength = std::uint64_t{1} << 20U;

struct Kind {
    std::string_view beginning;
    std::string_view mark; // stands somewhere after it; empty if the beginning says enough
    std::string_view text;
};

constexpr auto Exodus = "an Exodus II file; mox import converts it"sv;
constexpr auto Netcdf = "a netCDF file; mox import converts it if it is an Exodus II file"sv;
constexpr auto Cgns = "a CGNS file; mox import converts it"sv;
constexpr auto Gmsh = "a Gmsh file; mox import converts it"sv;
constexpr auto Vtk = "a VTK file, which mox writes (mox export) but doesn't read"sv;
constexpr auto Hdf5Beginning = "\x89HDF\r\n\x1A\n"sv;

// The first that fits counts.
constexpr std::array Kinds = {
    Kind{"CDF"sv, "num_dim"sv, Exodus},
    Kind{"CDF"sv, ""sv, Netcdf},
    Kind{Hdf5Beginning, "CGNSLibraryVersion"sv, Cgns},
    Kind{Hdf5Beginning, "num_dim"sv, Exodus},
    Kind{Hdf5Beginning, "_NCProperties"sv, Netcdf},
    Kind{Hdf5Beginning, ""sv, "an HDF5 file; mox import converts it if it is an Exodus II or a CGNS file"sv},
    Kind{"@(#)ADF Database Version"sv, ""sv, Cgns},
    Kind{"$MeshFormat"sv, ""sv, Gmsh},
    Kind{"$Comments"sv, ""sv, Gmsh},
    Kind{"<?xml"sv, "<VTKFile"sv, Vtk},
    Kind{"<VTKFile"sv, ""sv, Vtk},
    Kind{"# vtk DataFile"sv, ""sv, Vtk},
    Kind{"<?xml"sv, ""sv, "an XML file"sv},
    Kind{"PK\x03\x04"sv, ""sv, "a zip archive; unpack it first"sv},
    Kind{"7z\xBC\xAF\x27\x1C"sv, ""sv, "a 7-Zip archive; unpack it first"sv},
    Kind{"\x1F\x8B"sv, ""sv, "compressed with gzip; gzip -dc FILE | mox ... - reads what is in it"sv},
    Kind{"\xFD"
         "7zXZ\0"sv,
         ""sv, "compressed with xz; xz -dc FILE | mox ... - reads what is in it"sv},
    Kind{"BZh"sv, ""sv, "compressed with bzip2; bzip2 -dc FILE | mox ... - reads what is in it"sv},
    Kind{"\x28\xB5\x2F\xFD"sv, ""sv, "compressed with zstd; zstd -dc FILE | mox ... - reads what is in it"sv},
    Kind{"%PDF-"sv, ""sv, "a PDF document"sv},
    Kind{"\x89PNG\r\n\x1A\n"sv, ""sv, "a PNG picture"sv},
    Kind{"\x93NUMPY"sv, ""sv, "a NumPy array"sv},
    Kind{"\x7F"
         "ELF"sv,
         ""sv, "a program"sv},
};

std::string readBeginning(MoxReader::Source& source, std::uint64_t most) {
    std::vector<std::uint8_t> bytes(std::min(source.size(), most));
    source.read(0, bytes);
    return {bytes.begin(), bytes.end()};
}

bool isMox(MoxReader::Source& source) {
    const auto& signature = MoxReader::Format::Signature;
    return std::ranges::equal(readBeginning(source, signature.size()),
                              std::string(signature.begin(), signature.end()));
}

bool isText(std::string_view start) {
    constexpr std::size_t EnoughToKnow = 512;
    return std::ranges::all_of(start.substr(0, EnoughToKnow), [](char letter) {
        const auto byte = static_cast<unsigned char>(letter);
        return (byte >= ' ' && byte != 0x7F) || letter == '\n' || letter == '\r' || letter == '\t';
    });
}

} // namespace

std::string foreignKind(MoxReader::Source& source) {
    if (source.size() == 0 || isMox(source)) {
        return "";
    }
    const auto start = readBeginning(source, SearchLength);
    const auto found = std::ranges::find_if(Kinds, [&start](const Kind& kind) {
        return start.starts_with(kind.beginning) && start.find(kind.mark) != std::string::npos;
    });
    if (found != Kinds.end()) {
        return std::string(found->text);
    }
    return isText(start) ? "a text file" : "";
}

void refuseForeignFile(const std::string& path, MoxReader::Source& source) {
    const auto kind = explainErrors(path, [&] { return foreignKind(source); });
    if (!kind.empty()) {
        throw Failure(path, "is no MOX file but " + kind);
    }
}

} // namespace MoxTool
