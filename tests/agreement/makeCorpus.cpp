// Saves the models on which the readers are compared: makeCorpus FOLDER. The environment sets their block
// size.

#include "../docs/saveExample.h"
#include "../golden/Support/GoldenModel.h"
#include "../roundtrip/Support/RandomModel.h"
#include "Support/NumberedArrays.h"

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
    for (unsigned seed = 1; seed <= 4; ++seed) {
        Roundtrip::RandomModel(seed, 18, 60)
            .save((folder / ("few" + std::to_string(seed) + ".mox")).string());
    }
    // With small blocks there is an Index Block among them, and the blocks after it lie too low.
    Roundtrip::RandomModel(5, 60, 20).save((folder / "many.mox").string());

    // Arrays that fill the blocks before the first Index Block, the second, or both.
    const auto saveArrays = [&](const char* name, const char* blockSize, unsigned count,
                                const auto& lengthOf) {
        Support::saveNumberedArrays((folder / name).string(), blockSize, count, lengthOf);
    };
    saveArrays("low.mox", "512", 105, [](unsigned) { return 150u; });
    saveArrays("lowBytes.mox", "1", 21, [](unsigned i) { return 2000u + 100u * i; });
    saveArrays("lowMixed.mox", "1000", 200, [](unsigned i) { return i < 25 ? 300u : 20u + i * 37 % 230; });
    saveArrays("lowSecond.mox", "600", 500, [](unsigned i) { return i < 400 ? 75u : 150u; });
    saveArrays("lowBoth.mox", "600", 300, [](unsigned i) { return i < 219 ? 150u : 600u; });

    Qel::Mox2::Model empty;
    empty.saveTo((folder / "empty.mox").string(), {.overwrite = true});
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
