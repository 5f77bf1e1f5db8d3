#pragma once

#include <Qel/Base/Saver.h>
#include <Qel/Mox2/Database.h>
#include <Qel/Mox2/SaverOptions.h>

namespace Qel::Mox2 {

/// Opens the file that a model is saved to.
class Saver final : public Base::Saver<Database, SaverOptions> {
public:
    using Base::Saver<Database, SaverOptions>::Saver;

    /// @throws Exception::InvalidObjectState "Not Empty" if the database is Open.
    /// @throws Exception::Exception what QelMox::Tree::SetStreamFile() throws; the database is then Open
    ///         without a file.
    virtual void open(Database& database);
};

} // namespace Qel::Mox2
