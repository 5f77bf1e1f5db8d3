#include "requiredNetcdfLength.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <vector>

namespace MoxTool {

namespace {

constexpr std::uint64_t Alignment = 4;
constexpr std::uint64_t ManyBytes = std::numeric_limits<std::uint64_t>::max() / 4; // more than any file has

// Bytes of a value of each external type, by the type's number.
constexpr std::array<std::uint64_t, 12> TypeSizes = {0, 1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};

std::uint64_t aligned(std::uint64_t size) {
    return (size + Alignment - 1) / Alignment * Alignment;
}

std::uint64_t product(std::uint64_t left, std::uint64_t right) {
    return left != 0 && right > ManyBytes / left ? ManyBytes : left * right;
}

struct Variable {
    std::uint64_t size;  // without padding; of one record if it is a record variable
    std::uint64_t begin; // offset in the file
    bool isRecord;
};

// Reads the header in the order of its layout: magic, number of records, dimensions, attributes, variables.
class HeaderReader {
public:
    explicit HeaderReader(std::istream& file) : file_(file) {}

    std::uint64_t requiredLength() {
        readVersion();
        const auto records = readRecordCount();
        readDimensions();
        skipAttributes();
        readVariables();
        return std::max(endOfFixed(), endOfRecords(records));
    }

private:
    std::uint64_t readInteger(int bytes) {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            const auto byte = file_.get();
            if (byte == std::istream::traits_type::eof()) {
                throw std::runtime_error("the header is cut off");
            }
            value = value << 8U | static_cast<std::uint64_t>(byte);
        }
        return value;
    }

    void skip(std::uint64_t bytes) {
        if (bytes > static_cast<std::uint64_t>(std::numeric_limits<std::streamoff>::max()) / 2) {
            throw std::runtime_error("the header makes no sense");
        }
        file_.seekg(static_cast<std::streamoff>(bytes), std::ios::cur);
    }

    void readVersion() {
        const auto magic = readInteger(4);
        const auto version = magic & 0xFFU;
        if (magic >> 8U != 0x434446 || (version != 1 && version != 2 && version != 5)) {
            throw std::runtime_error("not a classic netCDF file");
        }
        countBytes_ = version == 5 ? 8 : 4;
        offsetBytes_ = version == 1 ? 4 : 8;
    }

    std::uint64_t readCount() { return readInteger(countBytes_); }

    // The highest number stands for a file that was being written as a stream; its records are not counted.
    std::uint64_t readRecordCount() {
        const auto count = readCount();
        return count == (countBytes_ == 4 ? 0xFFFFFFFFU : ~std::uint64_t{0}) ? 0 : count;
    }

    std::uint64_t readListLength() {
        readInteger(4); // the kind of list, or 0 for an absent one
        return readCount();
    }

    void skipName() { skip(aligned(readCount())); }

    std::uint64_t readTypeSize() {
        const auto type = readInteger(4);
        if (type == 0 || type >= TypeSizes.size()) {
            throw std::runtime_error("the header makes no sense");
        }
        return TypeSizes[type];
    }

    void readDimensions() {
        for (auto count = readListLength(); count > 0; --count) {
            skipName();
            dimensions_.push_back(readCount());
        }
    }

    void skipAttributes() {
        for (auto count = readListLength(); count > 0; --count) {
            skipName();
            const auto size = readTypeSize();
            skip(aligned(product(size, readCount())));
        }
    }

    void readVariables() {
        for (auto count = readListLength(); count > 0; --count) {
            variables_.push_back(readVariable());
        }
    }

    Variable readVariable() {
        skipName();
        Variable variable{1, 0, false};
        for (auto count = readCount(); count > 0; --count) {
            addDimension(variable, readCount());
        }
        skipAttributes();
        variable.size = product(variable.size, readTypeSize());
        readCount(); // the size with padding, which does not hold for large variables
        variable.begin = readInteger(offsetBytes_);
        return variable;
    }

    // A dimension of length 0 is the one of the records.
    void addDimension(Variable& variable, std::uint64_t dimension) const {
        if (dimension >= dimensions_.size()) {
            throw std::runtime_error("the header makes no sense");
        }
        if (dimensions_[dimension] == 0) {
            variable.isRecord = true;
        } else {
            variable.size = product(variable.size, dimensions_[dimension]);
        }
    }

    std::uint64_t endOfFixed() const {
        std::uint64_t end = 0;
        for (const auto& variable : variables_) {
            if (!variable.isRecord) {
                end = std::max(end, variable.begin + variable.size);
            }
        }
        return end;
    }

    std::uint64_t endOfRecords(std::uint64_t records) const {
        if (records == 0) {
            return 0;
        }
        const auto lastRecord = product(records - 1, recordSize());
        std::uint64_t end = 0;
        for (const auto& variable : variables_) {
            if (variable.isRecord) {
                end = std::max(end, variable.begin + lastRecord + variable.size);
            }
        }
        return end;
    }

    // The record of a single variable has no padding.
    std::uint64_t recordSize() const {
        std::uint64_t sum = 0;
        std::uint64_t last = 0;
        std::size_t count = 0;
        for (const auto& variable : variables_) {
            if (!variable.isRecord) {
                continue;
            }
            last = variable.size;
            sum = std::min(ManyBytes, sum + aligned(last));
            ++count;
        }
        return count == 1 ? last : sum;
    }

    std::istream& file_;
    int countBytes_ = 4;
    int offsetBytes_ = 4;
    std::vector<std::uint64_t> dimensions_;
    std::vector<Variable> variables_;
};

} // namespace

std::uint64_t requiredNetcdfLength(std::istream& file) {
    return HeaderReader(file).requiredLength();
}

} // namespace MoxTool
