#pragma once

#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/Shape.h>
#include <Qel/Mox2/Database.h>

#include <gtest/gtest.h>

#include <string>

namespace Support {

/// A test of an operation on a database that is open without a file.
class OpenDatabase : public testing::Test {
protected:
    OpenDatabase() { database.open(); }

    QelMox::Tree& tree() { return database.tree(); }

    /// The node's data, which must be of this class.
    template <typename NodeClass>
    NodeClass& dataOf(unsigned int id) {
        return dynamic_cast<NodeClass&>(*tree().GetReqNode(id).data);
    }

    /// A group as root (1), a shape (2), and its geometry (3), which is current.
    void addRootAndShape() {
        tree().SetRootGroup("root", {});
        tree().AddShapeNode("part");
    }

    Qel::Mox2::Database database;
};

} // namespace Support
