#pragma once

#include <Qel/Base/Modifier.h>
#include <Qel/Mox2/Database.h>

namespace Qel::Mox2::Modifier {

/// Makes the parent of the current node current; see Model::moveToParentNode().
class UpMover final : public Base::Modifier<Database> {
public:
    void update(Database& database) override;
};

} // namespace Qel::Mox2::Modifier
