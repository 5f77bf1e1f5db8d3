#pragma once

#include <Qel/Base/Modifier.h>
#include <Qel/Mox2/Database.h>

namespace Qel::Mox2::Modifier {

/// Makes a node current; see Model::setCurrentNodeId().
class CurrentNodeId final : public Base::Modifier<Database> {
public:
    explicit CurrentNodeId(unsigned int id) : id_(id) {}

    void update(Database& database) override;

private:
    unsigned int id_;
};

} // namespace Qel::Mox2::Modifier
