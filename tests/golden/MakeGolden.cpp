// Rewrites the golden file. Run it and commit the result only when the format is meant to change.

#include "Support/GoldenModel.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_golden FILE\n");
        return 2;
    }
    Golden::saveGoldenModel(argv[1]);
    return 0;
}
