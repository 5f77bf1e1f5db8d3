#include "VtuFile.h"

#include "xmlText.h"

#include <fmt/format.h>

#include <bit>
#include <ostream>
#include <string_view>

namespace MoxTool {

namespace {

using LengthWord = std::uint64_t; // precedes each array's bytes; "UInt64" in the file's head

std::uint64_t byteCount(const VtuArray& array) {
    return std::uint64_t{array.wordSize} * array.columns * array.tuples;
}

std::string columnAttributes(const VtuArray& array) {
    std::string text;
    for (std::size_t i = 0; i < array.columnNames.size(); ++i) {
        text += fmt::format(" ComponentName{}=\"{}\"", i, xmlText(array.columnNames[i]));
    }
    return text;
}

void appendNumbers(std::string& numbers, std::string_view text) {
    for (const char letter : text) {
        numbers += fmt::format("{} ", static_cast<unsigned char>(letter));
    }
}

// Texts are written as the numbers of their bytes, each text followed by a zero. A zero inside a text would end
// it, so it becomes "\x00".
std::string textNumbers(const std::vector<std::string>& texts) {
    std::string numbers;
    for (std::string_view text : texts) {
        for (auto end = text.find('\0'); end != text.npos; end = text.find('\0')) {
            appendNumbers(numbers, text.substr(0, end));
            appendNumbers(numbers, "\\x00");
            text.remove_prefix(end + 1);
        }
        appendNumbers(numbers, text);
        numbers += "0 ";
    }
    return numbers;
}

} // namespace

std::string vtkFileStart(const std::string& type) {
    const auto* order = std::endian::native == std::endian::little ? "LittleEndian" : "BigEndian";
    return fmt::format("<?xml version=\"1.0\"?>\n<VTKFile type=\"{}\" version=\"1.0\" byte_order=\"{}\" "
                       "header_type=\"UInt64\">\n",
                       type, order);
}

void VtuFile::addTexts(const std::string& name, const std::vector<std::string>& texts) {
    fieldData_ +=
        fmt::format("<DataArray type=\"String\" Name=\"{}\" NumberOfTuples=\"{}\" format=\"ascii\">{}"
                    "</DataArray>\n",
                    xmlText(name), texts.size(), textNumbers(texts));
}

void VtuFile::setTime(double time) {
    fieldData_ +=
        fmt::format("<DataArray type=\"Float64\" Name=\"TimeValue\" NumberOfTuples=\"1\" format=\"ascii\">{}"
                    "</DataArray>\n",
                    time);
}

void VtuFile::write(std::ostream& stream) const {
    std::uint64_t offset = 0;
    stream << vtkFileStart("UnstructuredGrid") << "<UnstructuredGrid>\n<FieldData>\n"
           << fieldData_ << "</FieldData>\n"
           << fmt::format("<Piece NumberOfPoints=\"{}\" NumberOfCells=\"{}\">\n", pointCount_, cellCount_);
    writeSection(stream, "Points", points_, offset);
    writeSection(stream, "Cells", cells_, offset);
    writeSection(stream, "PointData", pointData_, offset);
    writeSection(stream, "CellData", cellData_, offset);
    stream << "</Piece>\n</UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_";
    for (const auto* arrays : {&points_, &cells_, &pointData_, &cellData_}) {
        for (const auto& array : *arrays) {
            const LengthWord length = byteCount(array);
            stream.write(reinterpret_cast<const char*>(&length), sizeof length);
            array.write(stream);
        }
    }
    stream << "\n</AppendedData>\n</VTKFile>\n";
}

void VtuFile::writeSection(std::ostream& stream, const char* name, const Arrays& arrays,
                           std::uint64_t& offset) const {
    stream << '<' << name << ">\n";
    for (const auto& array : arrays) {
        stream << fmt::format(
            "<DataArray type=\"{}\" Name=\"{}\" NumberOfComponents=\"{}\"{} format=\"appended\" "
            "offset=\"{}\"/>\n",
            array.type, xmlText(array.name), array.columns, columnAttributes(array), offset);
        offset += sizeof(LengthWord) + byteCount(array);
    }
    stream << "</" << name << ">\n";
}

} // namespace MoxTool
