#include <Qel/Mox2/Modifier/CurrentNodeId.h>

#include <Qel/Exception/Throw.h>

namespace Qel::Mox2::Modifier {

void CurrentNodeId::update(Database& database) {
    database.assertNotEmpty();
    QelMox::Tree& tree = database.getTree();
    if (id == 0 || id > tree.GetNodes().size()) {
        QEL_THROW(Exception::OutOfBounds());
    }
    tree.SetCurrentId(id);
}

} // namespace Qel::Mox2::Modifier
