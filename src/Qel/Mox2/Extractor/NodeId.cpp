#include <Qel/Mox2/Extractor/NodeId.h>

namespace Qel::Mox2::Extractor {

unsigned int NodeId::extract(Database& database) {
    database.assertNotEmpty();
    return path.empty() ? 0 : database.getTree().FindNodeByPath(path, separator);
}

} // namespace Qel::Mox2::Extractor
