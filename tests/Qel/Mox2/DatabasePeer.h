#pragma once

#include <Qel/Mox2/Database.h>

#include <memory>

namespace Qel::Mox2 {

/// Accesses the fields of a database, to set and to see what no operation does.
struct DatabasePeer {
    static void setOpenedForWriting(Database& database, bool value) { database.openedForWriting_ = value; }
    static void setOpenedForReading(Database& database, bool value) { database.openedForReading_ = value; }
    static void setModeWord(Database& database, unsigned int value) { database.modeWord_ = value; }
    static bool isOpenedForWriting(const Database& database) { return database.openedForWriting_; }
    static bool isOpenedForReading(const Database& database) { return database.openedForReading_; }
    static unsigned int modeWord(const Database& database) { return database.modeWord_; }
    static std::shared_ptr<QelMox::Tree> tree(const Database& database) { return database.tree_; }
};

} // namespace Qel::Mox2
