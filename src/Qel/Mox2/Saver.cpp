#include <Qel/Mox2/Saver.h>

namespace Qel::Mox2 {

void Saver::open(Database& database) {
    constexpr int writeMode = 0;
    database.assertEmpty();
    QelMox::Tree& tree = database.open();
    tree.SetStreamFile(target.path, options.overwrite ? 1 : 0, &writeMode);
    if (!options.sourceName.empty()) {
        tree.CurrentModifier.SourceName = options.sourceName;
        tree.CurrentModifier.SourceVersion = options.sourceVersion;
    }
}

} // namespace Qel::Mox2
