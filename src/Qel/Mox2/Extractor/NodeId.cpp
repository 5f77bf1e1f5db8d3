#include <Qel/Mox2/Extractor/NodeId.h>

namespace Qel::Mox2::Extractor {

unsigned int NodeId::extract(Database& database) {
    database.assertNotEmpty();
    return path_.empty() ? 0 : database.tree().FindNodeByPath(path_, separator_);
}

} // namespace Qel::Mox2::Extractor
