#pragma once

#include "Qel/Mox2/DatabasePeer.h"
#include "Support/Thrown.h"

#include <Qel/Mox2/Database.h>

#include <gtest/gtest.h>

namespace Support {

/// Whether an operation refuses a database without a tree because no file is open, and one that is not to be
/// written because it is not in write mode.
/// @param apply Takes a database.
template <typename Apply>
void expectThatItNeedsWriteMode(Apply apply) {
    using Qel::Exception::InvalidObjectState;
    constexpr const char* place = "Qel/Mox2/Database";
    constexpr const char* function = "Qel::Mox2::Database::assertOpenedForWriting";
    Qel::Mox2::Database database;
    EXPECT_TRUE(
        throws<InvalidObjectState>({17, "File not open.", place, function}, [&] { apply(database); }));
    database.open();
    Qel::Mox2::DatabasePeer::setOpenedForWriting(database, false);
    EXPECT_TRUE(throws<InvalidObjectState>({17, "File not opened in write mode", place, function},
                                           [&] { apply(database); }));
}

/// Whether an operation refuses a database without a tree, and only that.
template <typename Apply>
void expectThatItNeedsATree(Apply apply) {
    Qel::Mox2::Database database;
    EXPECT_TRUE(throws<Qel::Exception::InvalidObjectState>(
        {17, "Not initialized", "Qel/Mox2/Database", "Qel::Mox2::Database::assertNotEmpty"},
        [&] { apply(database); }));
    database.open();
    Qel::Mox2::DatabasePeer::setOpenedForWriting(database, false);
    EXPECT_NO_THROW(apply(database));
}

} // namespace Support
