// Saves the models that the readers are compared on: makeCorpus FOLDER. The size of their blocks is that of
// the environment.

#include "../docs/saveExample.h"
#include "../golden/Support/GoldenModel.h"
#include "../roundtrip/Support/RandomModel.h"

#include <exception>
#include <filesystem>
#include <iostream>

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::cerr << "usage: makeCorpus FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    saveExample((folder / "example.mox").string());
    Golden::saveGoldenModel((folder / "golden.mox").string());
    for (unsigned seed = 1; seed <= 4; ++seed)
        Roundtrip::RandomModel(seed, 18, 60)
            .save((folder / ("few" + std::to_string(seed) + ".mox")).string());
    // With small blocks an Index Block goes in between, and some of these files are damaged.
    Roundtrip::RandomModel(5, 60, 20).save((folder / "many.mox").string());

    Qel::Mox2::Model empty;
    empty.saveTo((folder / "empty.mox").string(), {.overwrite = true});
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
