#include <Qel/Mox2/Database.h>

#include "Qel/Mox2/DatabasePeer.h"
#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Thrown.h"

#include <Qel/Mox/Geometry.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using Qel::Exception::InvalidObjectState;
using Qel::Mox2::DatabasePeer;
using Support::Thrown;
using Support::throws;

Thrown wrongState(std::string_view text, std::string_view function) {
    return {17, text, "Qel/Mox2/Database", function};
}

const Thrown NotEmpty = wrongState("Not Empty", "Qel::Mox2::Database::assertEmpty");
const Thrown NotInitialized = wrongState("Not initialized", "Qel::Mox2::Database::assertNotEmpty");
const Thrown NotOpen = wrongState("File not open.", "Qel::Mox2::Database::assertOpenedForWriting");
const Thrown NotInWriteMode =
    wrongState("File not opened in write mode", "Qel::Mox2::Database::assertOpenedForWriting");

class MoxDatabase : public testing::Test {
protected:
    void openFile() {
        const int mode = 0;
        database.open().SetStreamFile(path, 0, &mode);
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    Qel::Mox2::Database database;
};

TEST_F(MoxDatabase, NewDatabaseIsEmpty) {
    EXPECT_NO_THROW(database.assertEmpty());
    EXPECT_TRUE(throws<InvalidObjectState>(NotInitialized, [&] { database.assertNotEmpty(); }));
    EXPECT_TRUE(throws<InvalidObjectState>(NotOpen, [&] { database.assertOpenedForWriting(); }));
    EXPECT_FALSE(DatabasePeer::isOpenedForWriting(database));
    EXPECT_FALSE(DatabasePeer::isOpenedForReading(database));
    EXPECT_EQ(DatabasePeer::modeWord(database), 1U);
}

TEST_F(MoxDatabase, OpenDatabaseHasATreeWithoutFile) {
    QelMox::Tree& tree = database.open();
    EXPECT_EQ(&tree, &database.tree());
    EXPECT_EQ(tree.File.GetStream(), nullptr);
    EXPECT_NO_THROW(database.assertNotEmpty());
    EXPECT_NO_THROW(database.assertOpenedForWriting());
    EXPECT_TRUE(throws<InvalidObjectState>(NotEmpty, [&] { database.assertEmpty(); }));
    EXPECT_FALSE(DatabasePeer::isOpenedForReading(database));
}

TEST_F(MoxDatabase, TreeThatIsNotToBeWrittenIsRefused) {
    database.open();
    DatabasePeer::setOpenedForWriting(database, false);
    EXPECT_TRUE(throws<InvalidObjectState>(NotInWriteMode, [&] { database.assertOpenedForWriting(); }));
    EXPECT_NO_THROW(database.assertNotEmpty());
}

TEST_F(MoxDatabase, CloseOfAnEmptyDatabaseDoesNothing) {
    EXPECT_NO_THROW(database.close());
    EXPECT_NO_THROW(database.assertEmpty());
}

TEST_F(MoxDatabase, CloseMakesTheDatabaseEmptyAgain) {
    openFile();
    database.close();
    EXPECT_NO_THROW(database.assertEmpty());
    EXPECT_TRUE(throws<InvalidObjectState>(NotOpen, [&] { database.assertOpenedForWriting(); }));
    EXPECT_FALSE(DatabasePeer::isOpenedForWriting(database));
    EXPECT_EQ(DatabasePeer::modeWord(database), 1U);
}

TEST_F(MoxDatabase, OpenEndsReading) {
    DatabasePeer::setOpenedForReading(database, true);
    database.open();
    EXPECT_FALSE(DatabasePeer::isOpenedForReading(database));
}

TEST_F(MoxDatabase, CloseEndsReadingAndTakesTheModeBack) {
    database.open();
    DatabasePeer::setOpenedForReading(database, true);
    DatabasePeer::setModeWord(database, 7);
    database.close();
    EXPECT_FALSE(DatabasePeer::isOpenedForReading(database));
    EXPECT_EQ(DatabasePeer::modeWord(database), 1U);
}

TEST_F(MoxDatabase, CloseSavesTheTreeWithAnEmptyComment) {
    openFile();
    const std::shared_ptr<QelMox::Tree> tree = DatabasePeer::tree(database);
    database.close();
    ASSERT_EQ(tree->ModifierInfos.size(), 1U);
    EXPECT_EQ(tree->ModifierInfos[0].Comment, "");
    EXPECT_EQ(tree->File.GetStream(), nullptr);
    EXPECT_GT(Support::bytesOf(path).size(), 2800U);
}

TEST_F(MoxDatabase, CloseEmptiesThePositionsOfEveryGeometry) {
    QelMox::Tree& tree = database.open();
    tree.SetRootGroup("root", {});
    tree.AddShapeNode("part");
    auto& geometry = dynamic_cast<QelMox::Geometry&>(*tree.GetCurrentNode().data);
    QelMox::DatasetEntry& entry = geometry.GetDataset(geometry.FindOrAddDataset("key"));
    entry.position = 7;
    const std::shared_ptr<QelMox::Tree> kept = DatabasePeer::tree(database);
    database.close();
    EXPECT_FALSE(entry.position.has_value());
    EXPECT_EQ(geometry.GetDatasetCount(), 1U);
}

TEST_F(MoxDatabase, CloseWithoutWriteModeClosesTheFileAndSavesNothing) {
    openFile();
    const std::shared_ptr<QelMox::Tree> tree = DatabasePeer::tree(database);
    DatabasePeer::setOpenedForWriting(database, false);
    database.close();
    EXPECT_NO_THROW(database.assertEmpty());
    EXPECT_EQ(tree->File.GetStream(), nullptr);
    EXPECT_EQ(Support::bytesOf(path).size(), 12U);
}

TEST_F(MoxDatabase, FailedSaveLeavesTheDatabaseOpenAndCloseCanBeCalledAgain) {
    openFile();
    QelMox::Tree& tree = database.tree();
    tree.SetRootGroup("root", {});
    tree.AddShapeNode("part");
    auto& geometry = dynamic_cast<QelMox::Geometry&>(*tree.GetCurrentNode().data);
    geometry.FindOrAddDataset("key without position");
    EXPECT_THROW(database.close(), Qel::Exception::KeyNotFound);
    EXPECT_NO_THROW(database.assertOpenedForWriting());
    EXPECT_NE(tree.File.GetStream(), nullptr);
    geometry.GetDataset(0).position = 0;
    EXPECT_NO_THROW(database.close());
    EXPECT_NO_THROW(database.assertEmpty());
}

TEST_F(MoxDatabase, DestructorSavesAnOpenDatabase) {
    std::shared_ptr<QelMox::Tree> tree;
    {
        Qel::Mox2::Database other;
        const int mode = 0;
        other.open().SetStreamFile(path, 0, &mode);
        tree = DatabasePeer::tree(other);
    }
    EXPECT_EQ(tree->ModifierInfos.size(), 1U);
    EXPECT_EQ(tree->File.GetStream(), nullptr);
}

} // namespace
