// Reads all numbers of a file through the reader and prints the seconds of CPU time that this took, for comparison with
// the same in Python (python_read.py).

#include <MoxReader/HeavyData.h>
#include <MoxReader/Model.h>

#include <ctime>
#include <iostream>

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::cerr << "usage: read_file FILE\n";
        return 2;
    }
    const std::clock_t begin = std::clock();
    const MoxReader::File file(argv[1]);
    const MoxReader::Model model = MoxReader::readModel(file);
    MoxReader::HeavyData heavy(file, model);
    std::size_t numbers = 0;
    for (const MoxReader::Node& node : model.nodes()) {
        if (const auto* const geometry = node.geometry()) {
            for (const MoxReader::Dataset& dataset : geometry->datasets) {
                numbers += heavy.readFloats(dataset).size();
            }
        }
    }
    std::cout << static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC << ' ' << numbers << '\n';
    return 0;
} catch (const std::exception& error) {
    std::cerr << "read_file: " << error.what() << '\n';
    return 1;
}
