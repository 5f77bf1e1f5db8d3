#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <type_traits>
#include <vector>

namespace MoxTool {

/// Numbers for a VTU file. They are produced when they are written, one array at a time.
struct VtuArray {
    std::string name;
    std::string type;     ///< The type of a number: "Float32", "UInt32" and so on.
    std::size_t wordSize; ///< Bytes per number.
    std::size_t columns;  ///< Numbers per tuple.
    std::size_t tuples;
    std::vector<std::string> columnNames;     ///< Empty, or some from the first column on.
    std::function<void(std::ostream&)> write; ///< Writes them in the machine's byte order.
};

/// One unstructured mesh in VTK's XML format: a piece with all numbers appended as raw bytes after the
/// markup.
class VtuFile {
public:
    VtuFile(std::size_t pointCount, std::size_t cellCount) : pointCount_(pointCount), cellCount_(cellCount) {}

    /// Texts that belong to the whole mesh. In them a NUL becomes "\x00".
    void addTexts(const std::string& name, const std::vector<std::string>& texts);
    /// The time that the mesh represents.
    void setTime(double time);
    void setPoints(VtuArray array) { points_.push_back(std::move(array)); }
    /// Connectivity, offsets and types.
    void addCells(VtuArray array) { cells_.push_back(std::move(array)); }
    void addPointData(VtuArray array) { pointData_.push_back(std::move(array)); }
    void addCellData(VtuArray array) { cellData_.push_back(std::move(array)); }

    /// Writes the whole file. Failures show in the stream's state.
    void write(std::ostream& stream) const;

private:
    using Arrays = std::vector<VtuArray>;

    void writeSection(std::ostream& stream, const char* name, const Arrays& arrays,
                      std::uint64_t& offset) const;

    std::size_t pointCount_;
    std::size_t cellCount_;
    std::string fieldData_;
    Arrays points_;
    Arrays cells_;
    Arrays pointData_;
    Arrays cellData_;
};

/// The beginning of a VTK XML file of a type, up to the line that opens the file's content.
std::string vtkFileStart(const std::string& type);

} // namespace MoxTool
