#pragma once

#include <Qel/Mox2/Database.h>

#include <memory>

namespace Qel::Mox2 {

/// Reaches the fields of a database, to bring about and to see what no operation does.
struct DatabasePeer {
    static void setOpenedForWriting(Database& database, bool value) { database.openedForWriting = value; }
    static bool isOpenedForWriting(const Database& database) { return database.openedForWriting; }
    static bool isOpenedForReading(const Database& database) { return database.openedForReading; }
    static unsigned int modeWord(const Database& database) { return database.modeWord; }
    static std::shared_ptr<QelMox::Tree> tree(const Database& database) { return database.tree; }
};

} // namespace Qel::Mox2
