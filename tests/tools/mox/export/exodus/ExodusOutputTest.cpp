#include "exodus/ExodusOutput.h"

#include "Support/TemporaryFolder.h"
#include "common/Failure.h"

#include <gtest/gtest.h>

#include <cerrno>

// A function of the library that gets no memory for the name of a dimension takes the file for one without nodes.
TEST(ExodusOutput, AllocationThatFailedInACallIsAFailureThoughTheCallReportsSuccess) {
    const Support::TemporaryFolder folder;
    MoxTool::ExodusOutput::Layout layout;
    layout.dimension = 1;
    layout.nodes = 2;
    MoxTool::ExodusOutput output(folder.path("model.e"), "model.e", layout);
    output.coordinates(0, {1, 2});
    errno = ENOMEM;
    try {
        output.coordinates(0, {1, 2});
        FAIL() << "the lack of memory went unseen";
    } catch (const MoxTool::Failure& failure) {
        EXPECT_STREQ(failure.what(), "model.e: can't be written by the Exodus library: not enough memory");
    }
}
