#pragma once

#include "../common/jsonValue.h"
#include "../mesh/SelectedModel.h"
#include "Surface.h"
#include "ViewField.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace MoxTool {

/// A model as the page of `mox view` shows it: a description as JSON, and blocks of numbers, which are
/// little-endian and have 4 bytes each. README.md describes both.
class ViewModel {
public:
    /// Numbers of the mesh, by the name under which the page finds them.
    struct Array {
        const char* name;
        std::string bytes;
    };
    /// A result in one step.
    struct ResultBlock {
        std::string bytes;
        /// Least and greatest number of each column and of the derived number; NaN if there is none.
        std::vector<std::pair<double, double>> ranges;
    };

    /// @throws Failure as SelectedModel does.
    explicit ViewModel(const ModelSelection& selection);

    std::vector<Array> meshArrays() const;
    const std::vector<ViewField>& fields() const { return fields_; }
    /// For each column and for the derived number 24 bytes: the range over the whole model, and where it has
    /// its ends; then the numbers of what is on the surface, row by row.
    /// @throws MoxReader::Error
    ResultBlock resultBlock(const ViewField& field, std::size_t step);
    static std::string resultBlockName(std::size_t field, std::size_t step);
    /// Everything else.
    Json description() const;
    const Surface& surface() const { return surface_; }

private:
    struct Numbers {
        std::vector<std::uint32_t> rows; ///< For each node or element of the mesh its row, from 0.
        std::vector<std::uint32_t> ids;  ///< The application's own; the row from 1 where there is none.
    };
    struct Extreme {
        double number = std::numeric_limits<double>::quiet_NaN();
        std::size_t row = 0;
    };

    void findCentre();
    void numberNodes();
    void numberElements();
    void readIds(const char* name, ResultPlace place, Numbers& numbers);
    void chooseFields();
    std::string positionBytes() const;
    void addRange(ResultBlock& block, const std::vector<double>& table, const ViewField& field,
                  std::size_t column) const;
    Json describeTree() const;
    Json describeParts() const;
    Json describeSteps() const;
    Json describeFields() const;

    std::string name_;
    SelectedModel source_;
    Surface surface_;
    std::array<double, 3> centre_{};
    std::array<double, 3> extent_{};
    std::size_t lostNodes_ = 0; ///< Those without a place.
    Numbers nodes_;
    Numbers elements_;
    std::vector<ViewField> fields_;
};

} // namespace MoxTool
