#pragma once

#include "Support/TemporaryFolder.h"
#include "api/Support/PublicNames.h"
#include "api/Support/SavedModel.h"

#include <gtest/gtest.h>

#include <string>

namespace Api {

using Support::TemporaryFolder;

/// A test with a model that is open to its own file.
class OpenModel : public testing::Test {
protected:
    OpenModel() { model.saveTo(path, SaverOptions()); }

    /// Finishes the file and reads it.
    SavedModel saved() {
        model.close();
        return SavedModel(path);
    }

    /// A group as root (1) with a shape (2), whose geometry is 3 and current.
    void addRootAndShape() {
        model.addNode(Group, "root");
        model.addNode(Shape, "part");
    }

    TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    Model model;
};

} // namespace Api
