#include "import/ModelFormat.h"
#include "Support/TemporaryFolder.h"
#include "common/Failure.h"

using MoxTool::ModelFormat;
using MoxTool::recogniseFormat;

namespace {

const std::string Hdf5 = "\x89HDF\r\n\x1A\n";

} // namespace

TEST(ModelFormat, IsToldByTheFirstBytesWhateverTheName) {
    const Support::TemporaryFolder folder;
    EXPECT_EQ(recogniseFormat(folder.write("a.msh", "CDF\x01")), ModelFormat::Exodus);
    EXPECT_EQ(recogniseFormat(folder.write("a.e", "$MeshFormat\n2.2 0 8\n")), ModelFormat::Gmsh);
    EXPECT_EQ(recogniseFormat(folder.write("b.e", "$Comments\nby hand\n")), ModelFormat::Gmsh);
    EXPECT_EQ(recogniseFormat(folder.write("a.exo", "@(#)ADF Database Version B02012>")), ModelFormat::Cgns);
}

TEST(ModelFormat, Hdf5FileIsCgnsIfItHasItsNodes) {
    const Support::TemporaryFolder folder;
    EXPECT_EQ(recogniseFormat(folder.write("a", Hdf5 + std::string(5000, '\0') + "CGNSLibraryVersion")),
              ModelFormat::Cgns);
    EXPECT_EQ(recogniseFormat(folder.write("b.cgns", Hdf5 + "_NCProperties")), ModelFormat::Exodus);
}

TEST(ModelFormat, EverythingElseIsUnknown) {
    const Support::TemporaryFolder folder;
    EXPECT_EQ(recogniseFormat(folder.write("a.e", "")), ModelFormat::Unknown);
    EXPECT_EQ(recogniseFormat(folder.write("b.cgns", "CGNSLibraryVersion")), ModelFormat::Unknown);
    EXPECT_EQ(recogniseFormat(folder.write("c.msh", "\n$MeshFormat")), ModelFormat::Unknown);
}

TEST(ModelFormat, MissingFileIsRefused) {
    const Support::TemporaryFolder folder;
    EXPECT_THROW(recogniseFormat(folder.path("none.e")), MoxTool::Failure);
}
