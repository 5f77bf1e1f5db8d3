#pragma once

#include <string>
#include <vector>

namespace MoxTool {

/// A variable of a netCDF file without its values.
struct NetcdfVariable {
    int id;
    std::string name;
    std::vector<std::string> attributes; ///< Names.
};

/// What a netCDF file holds beyond the reach of the Exodus library: names of variables and attributes.
///
/// What can't be read is returned empty; nothing is thrown.
class NetcdfVariables {
public:
    /// @param handle The handle of an open file, which must outlive this object.
    explicit NetcdfVariables(int file) : file_(file) {}

    std::vector<NetcdfVariable> all() const;
    /// Names of the attributes of the file itself.
    std::vector<std::string> fileAttributes() const;
    std::string text(const NetcdfVariable& variable, const std::string& attribute) const;
    long long number(const NetcdfVariable& variable, const std::string& attribute) const;
    /// The rows of a table of characters.
    std::vector<std::string> rows(const NetcdfVariable& variable) const;

private:
    std::vector<std::string> attributesOf(int variable) const;

    int file_;
};

} // namespace MoxTool
