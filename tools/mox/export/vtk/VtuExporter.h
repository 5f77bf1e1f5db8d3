#pragma once

#include "../ExportModel.h"
#include "VtuFile.h"

#include <filesystem>
#include <iosfwd>
#include <set>

namespace MoxTool {

/// Writes VTU files of a model: one mesh of all its parts, with the results of one step.
class VtuExporter {
public:
    /// @param source Must outlive the exporter.
    explicit VtuExporter(ExportModel& source);

    /// @param step      Place of the step; ResultField::NoStep for the results without one.
    /// @param value     The step's time or frequency.
    /// @param path      Where the file is written.
    /// @param shownPath Its path in failures.
    /// @throws Failure if it can't be written; MoxReader::Error.
    void write(std::size_t step, double value, const std::filesystem::path& path,
               const std::string& shownPath);
    /// The same onto a stream, whose state shows failures.
    void write(std::size_t step, double value, std::ostream& stream);

private:
    // Columns of a result that form an array.
    struct Slice {
        std::string name;
        std::size_t firstColumn;
        std::size_t columns;
    };

    void addMesh(VtuFile& file) const;
    void addLabels(VtuFile& file, std::size_t step, double value) const;
    void addFields(VtuFile& file, std::size_t step);
    void addField(VtuFile& file, const ResultField& field, std::size_t step, std::set<std::string>& names);
    VtuArray fieldArray(const ResultField& field, std::size_t step, const Slice& slice);
    template <typename T>
    VtuArray typedArray(const char* type, const ResultField& field, std::size_t step, const Slice& slice);

    ExportModel& source_;
    FieldReader reader_;
};

} // namespace MoxTool
