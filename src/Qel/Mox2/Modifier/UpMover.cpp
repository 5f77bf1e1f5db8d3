#include <Qel/Mox2/Modifier/UpMover.h>

namespace Qel::Mox2::Modifier {

void UpMover::update(Database& database) {
    database.assertNotEmpty();
    QelMox::Tree& tree = database.tree();
    if (const unsigned int parent = tree.GetCurrentNode().parent; parent != 0) {
        tree.PutCurrentId(parent);
    }
}

} // namespace Qel::Mox2::Modifier
