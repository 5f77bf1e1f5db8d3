#pragma once

#include "Support/TemporaryFolder.h"

#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// One array of a mesh that another program has read.
struct VtkArrayRead {
    std::string type;
    std::size_t columns = 0;
    std::vector<std::string> columnNames;
    std::vector<double> numbers;
};

/// A mesh that another program has read.
struct VtkMeshRead {
    std::size_t points = 0;
    std::size_t cells = 0;
    std::map<std::string, VtkArrayRead> arrays; ///< By section and name, such as "PointData/Temperature".

    const std::vector<double>& numbers(const std::string& name) const { return arrays.at(name).numbers; }
    std::vector<std::string> texts(const std::string& name) const {
        std::vector<std::string> found(1);
        for (const auto byte : numbers(name)) {
            if (byte == 0) {
                found.emplace_back();
            } else {
                found.back() += static_cast<char>(static_cast<unsigned char>(byte));
            }
        }
        found.pop_back();
        return found;
    }
};

/// Reads VTK files by the Python script beside this file.
class VtkReading {
public:
    static bool hasPython() { return !std::string(MOX_TEST_PYTHON).empty(); }

    /// @param way "xml" or "vtk".
    /// @return a mesh for each file; nothing if what the way needs is not installed.
    /// @throws std::runtime_error if a file can't be read.
    std::optional<std::vector<VtkMeshRead>> read(const std::string& way,
                                                 const std::vector<std::string>& paths) const {
        if (!run(way, paths)) {
            return std::nullopt;
        }
        std::vector<VtkMeshRead> meshes;
        std::istringstream lines(folder_.read("shown"));
        for (std::string head; std::getline(lines, head);) {
            if (head.starts_with("size\t")) {
                auto& mesh = meshes.emplace_back();
                std::istringstream(head.substr(5)) >> mesh.points >> mesh.cells;
                continue;
            }
            std::string numbers;
            std::getline(lines, numbers);
            addArray(split(head), numbers, meshes.at(meshes.size() - 1));
        }
        return meshes;
    }

    /// Value and path of each file of a series.
    std::vector<std::pair<double, std::string>> series(const std::string& path) const {
        run("series", {path});
        std::vector<std::pair<double, std::string>> files;
        std::istringstream lines(folder_.read("shown"));
        for (std::string line; std::getline(lines, line);) {
            const auto cells = split(line);
            files.emplace_back(std::stod(cells.at(0)), cells.at(1));
        }
        return files;
    }

private:
    static constexpr int NotInstalled = 77;

    bool run(const std::string& way, const std::vector<std::string>& paths) const {
        auto command = std::string("\"") + MOX_TEST_PYTHON + "\" \"" + MOX_TEST_READ_VTK + "\" " + way;
        for (const auto& path : paths) {
            command += " \"" + path + "\"";
        }
        command += " > \"" + folder_.path("shown") + "\"";
        const int status = std::system(command.c_str());
        if (status == 0) {
            return true;
        }
        if (status == NotInstalled || status == NotInstalled << 8) {
            return false;
        }
        throw std::runtime_error("this command failed: " + command);
    }

    static std::vector<std::string> split(const std::string& line) {
        std::vector<std::string> cells;
        std::istringstream stream(line);
        for (std::string cell; std::getline(stream, cell, '\t');) {
            cells.push_back(cell);
        }
        return cells;
    }

    static void addArray(const std::vector<std::string>& head, const std::string& numbers,
                         VtkMeshRead& mesh) {
        VtkArrayRead array{head.at(2), std::stoul(head.at(3)), {head.begin() + 4, head.end()}, {}};
        const char* rest = numbers.c_str();
        for (char* end = nullptr;; rest = end) {
            const double number = std::strtod(rest, &end);
            if (end == rest) {
                break;
            }
            array.numbers.push_back(number);
        }
        mesh.arrays[head.at(0) + "/" + head.at(1)] = array;
    }

    Support::TemporaryFolder folder_;
};
