#include <Qel/Mox2/Modifier/CurrentNodeId.h>

#include <Qel/Exception/Throw.h>

namespace Qel::Mox2::Modifier {

void CurrentNodeId::update(Database& database) {
    database.assertNotEmpty();
    QelMox::Tree& tree = database.tree();
    if (id_ == 0 || id_ > tree.GetNodes().size()) {
        QEL_THROW(Exception::OutOfBounds());
    }
    tree.SetCurrentId(id_);
}

} // namespace Qel::Mox2::Modifier
