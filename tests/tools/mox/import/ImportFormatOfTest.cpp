#include "import/importFormatOf.h"
#include "Support/TemporaryFolder.h"
#include "common/Failure.h"

using MoxTool::ForeignFormat;
using MoxTool::importFormatOf;

namespace {

const std::string Hdf5 = "\x89HDF\r\n\x1A\n";

} // namespace

TEST(ImportFormatOf, IsToldByTheFirstBytesWhateverTheName) {
    const Support::TemporaryFolder folder;
    EXPECT_EQ(importFormatOf(folder.write("a.msh", "CDF\x01")), ForeignFormat::Exodus);
    EXPECT_EQ(importFormatOf(folder.write("a.e", "$MeshFormat\n2.2 0 8\n")), ForeignFormat::Gmsh);
    EXPECT_EQ(importFormatOf(folder.write("b.e", "$Comments\nby hand\n")), ForeignFormat::Gmsh);
    EXPECT_EQ(importFormatOf(folder.write("a.exo", "@(#)ADF Database Version B02012>")), ForeignFormat::Cgns);
}

TEST(ImportFormatOf, Hdf5FileIsCgnsIfItHasItsNodes) {
    const Support::TemporaryFolder folder;
    EXPECT_EQ(importFormatOf(folder.write("a", Hdf5 + std::string(5000, '\0') + "CGNSLibraryVersion")),
              ForeignFormat::Cgns);
    EXPECT_EQ(importFormatOf(folder.write("b.cgns", Hdf5 + "_NCProperties")), ForeignFormat::Exodus);
}

TEST(ImportFormatOf, FileOfAnotherKindIsNamedWithWhatToDo) {
    const Support::TemporaryFolder folder;
    const std::vector<std::pair<std::string, std::string>> refusals = {
        {"", "is empty"},
        {"\x89TNF\r\n\x1A\n",
         "is a MOX file already, so there is nothing to import; mox info shows what it has"},
        {"<VTKFile type=\"UnstructuredGrid\">",
         "is a VTK file, which mox writes (mox export) but doesn't read; "
         "mox import reads Exodus II, CGNS and Gmsh .msh; "
         "python3 -m moxwriter.convert reads other mesh formats"},
        {"\x1F\x8B\x08", "is compressed with gzip; decompress it first, as with gzip -d"},
        {"BZh9", "is compressed with bzip2; decompress it first, as with bzip2 -d"},
        {"\n$MeshFormat", "is a text file; mox import reads Exodus II, CGNS and Gmsh .msh; "
                          "python3 -m moxwriter.convert reads other mesh formats"},
        {"\x01\x02", "is in no format that mox import reads; these are Exodus II, CGNS and Gmsh .msh; "
                     "python3 -m moxwriter.convert reads other mesh formats"},
    };
    for (const auto& [bytes, reason] : refusals) {
        const auto path = folder.write("a.e", bytes);
        try {
            importFormatOf(path);
            ADD_FAILURE() << reason;
        } catch (const MoxTool::Failure& failure) {
            EXPECT_EQ(failure.what(), path + ": " + reason);
        }
    }
}

TEST(ImportFormatOf, StdinIsRefused) {
    EXPECT_THROW(importFormatOf("-"), MoxTool::Failure);
}

TEST(ImportFormatOf, MissingFileIsRefused) {
    const Support::TemporaryFolder folder;
    EXPECT_THROW(importFormatOf(folder.path("none.e")), MoxTool::Failure);
}
