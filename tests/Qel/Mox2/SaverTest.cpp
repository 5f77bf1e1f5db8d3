#include <Qel/Mox2/Saver.h>

#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using Qel::Exception::FileOpenException;
using Qel::Exception::InvalidObjectState;
using Qel::Exception::MiscelleneousException;
using Qel::Mox2::SaverOptions;
using Support::throws;

class MoxSaver : public testing::Test {
protected:
    void open(const std::string& target, const SaverOptions& options = SaverOptions()) {
        Qel::Mox2::Saver({.path = target, .format = "qeli_mox"}, options).open(database);
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    Qel::Mox2::Database database;
};

TEST_F(MoxSaver, OpenMakesATreeAndItsFile) {
    open(path);
    EXPECT_NO_THROW(database.assertOpenedForWriting());
    EXPECT_NE(database.tree().File.GetStream(), nullptr);
    EXPECT_EQ(database.tree().FileVersion, "1.3");
    EXPECT_EQ(Support::bytesOf(path).size(), 12U);
}

TEST_F(MoxSaver, OpenDatabaseIsRefusedBeforeAnythingHappens) {
    open(path);
    QelMox::Tree* const tree = &database.tree();
    const std::string second = folder.path("second.mox");
    EXPECT_TRUE(throws<InvalidObjectState>(
        {17, "Not Empty", "Qel/Mox2/Database", "Qel::Mox2::Database::assertEmpty"}, [&] { open(second); }));
    EXPECT_EQ(&database.tree(), tree);
    EXPECT_FALSE(std::filesystem::exists(second));
}

TEST_F(MoxSaver, SourceNameAndVersionGoIntoTheCurrentModifier) {
    SaverOptions options;
    options.sourceName = "Solver";
    options.sourceVersion = "7.2";
    options.sourceComment = "not used";
    open(path, options);
    EXPECT_EQ(database.tree().CurrentModifier.SourceName, "Solver");
    EXPECT_EQ(database.tree().CurrentModifier.SourceVersion, "7.2");
    EXPECT_EQ(database.tree().CurrentModifier.Comment, "");
}

TEST_F(MoxSaver, SourceVersionWithoutSourceNameStaysEmpty) {
    SaverOptions options;
    options.sourceVersion = "7.2";
    open(path, options);
    EXPECT_EQ(database.tree().CurrentModifier.SourceName, "");
    EXPECT_EQ(database.tree().CurrentModifier.SourceVersion, "");
}

TEST_F(MoxSaver, ExistingFileLeavesADatabaseThatIsOpenWithoutFile) {
    std::ofstream(path) << "old";
    SaverOptions options;
    options.sourceName = "Solver";
    EXPECT_TRUE(
        throws<FileOpenException>({5, "File exists.", "Qel/Tnf/TnFile", "QelTnf::TnFile::OpenFileForWriting"},
                                  [&] { open(path, options); }));
    EXPECT_NO_THROW(database.assertOpenedForWriting());
    EXPECT_EQ(database.tree().File.GetStream(), nullptr);
    EXPECT_EQ(database.tree().CurrentModifier.SourceName, "");
    EXPECT_EQ(Support::bytesOf(path).size(), 3U);
}

TEST_F(MoxSaver, PathThatCantBeOpenedLeavesADatabaseThatIsOpenWithoutFile) {
    const std::string unopenable = folder.path("missing/model.mox");
    const std::string text = "Unable to open file \"" + unopenable + "\"";
    EXPECT_TRUE(throws<MiscelleneousException>({2, text, "Qel/Tnf/TnFile", "QelTnf::TnFile::OpenFile"},
                                               [&] { open(unopenable); }));
    EXPECT_NO_THROW(database.assertOpenedForWriting());
    EXPECT_EQ(database.tree().File.GetStream(), nullptr);
    EXPECT_NO_THROW(database.close());
    EXPECT_NO_THROW(database.assertEmpty());
}

TEST_F(MoxSaver, ExtractAndSaveDoNothing) {
    Qel::Mox2::Saver saver({.path = path, .format = "qeli_mox"}, SaverOptions());
    saver.extract(database);
    saver.save();
    EXPECT_NO_THROW(database.assertEmpty());
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
