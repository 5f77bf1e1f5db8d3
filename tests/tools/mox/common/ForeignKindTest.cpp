#include "common/foreignKind.h"

#include <MoxReader/MemorySource.h>

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace {

std::string kindOf(const std::string& bytes) {
    MoxReader::MemorySource source({bytes.begin(), bytes.end()});
    return MoxTool::foreignKind(source);
}

} // namespace

TEST(ForeignKind, KnowsTheFilesThatAnImportConverts) {
    EXPECT_EQ(kindOf("CDF\x01\0\0num_dim\0"s), "an Exodus II file; mox import converts it");
    EXPECT_EQ(kindOf("\x89HDF\r\n\x1A\n...num_dim"s), "an Exodus II file; mox import converts it");
    EXPECT_EQ(kindOf("\x89HDF\r\n\x1A\n...CGNSLibraryVersion"s), "a CGNS file; mox import converts it");
    EXPECT_EQ(kindOf("@(#)ADF Database Version B0"), "a CGNS file; mox import converts it");
    EXPECT_EQ(kindOf("\xC0\xA8\xA3\xA9"
                     "ADF Database Version A02011>"),
              "a CGNS file; mox import converts it");
    EXPECT_EQ(kindOf("$MeshFormat\n"), "a Gmsh file; mox import converts it");
}

TEST(ForeignKind, TellsContainersFromWhatTheyHold) {
    EXPECT_EQ(kindOf("CDF\x02\0\0latitude"s),
              "a netCDF file; mox import converts it if it is an Exodus II file");
    EXPECT_EQ(kindOf("\x89HDF\r\n\x1A\n...other"s),
              "an HDF5 file; mox import converts it if it is an Exodus II or a CGNS file");
}

TEST(ForeignKind, KnowsCompressedFilesAndSaysHowToReadThem) {
    EXPECT_EQ(kindOf("\x1F\x8B\x08\0"s),
              "compressed with gzip; gzip -dc FILE | mox ... - reads what is in it");
    EXPECT_EQ(kindOf("\xFD"
                     "7zXZ\0\0"s),
              "compressed with xz; xz -dc FILE | mox ... - reads what is in it");
    EXPECT_EQ(kindOf("PK\x03\x04\x14"s), "a zip archive; unpack it first");
}

TEST(ForeignKind, KnowsVtkFilesAndTexts) {
    EXPECT_EQ(kindOf("<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\">"),
              "a VTK file, which mox writes (mox export) but doesn't read");
    EXPECT_EQ(kindOf("<?xml version=\"1.0\"?>\n<html>"), "an XML file");
    EXPECT_EQ(kindOf("a,b\n1,2\n"), "a text file");
}

TEST(ForeignKind, IsEmptyForAMoxFileAndForUnknownBytesAndForNone) {
    EXPECT_EQ(kindOf(""), "");
    EXPECT_EQ(kindOf("\x89TNF\r\n\x1A\n"s + "1.3"), "");
    EXPECT_EQ(kindOf("\x01\x02\x03"), "");
}
