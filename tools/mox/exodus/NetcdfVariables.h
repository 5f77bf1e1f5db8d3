#pragma once

#include <string>
#include <utility>
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
/// An attribute that is missing, or of another kind, is returned empty. Every function throws Failure, with the
/// file's path, if netCDF can't read what is there.
class NetcdfVariables {
public:
    /// @param path For failures.
    /// @param file The handle of an open file, which must outlive this object.
    NetcdfVariables(std::string path, int file) : path_(std::move(path)), file_(file) {}

    std::vector<NetcdfVariable> all() const;
    /// Names of the attributes of the file itself.
    std::vector<std::string> fileAttributes() const;
    std::string text(const NetcdfVariable& variable, const std::string& attribute) const;
    long long number(const NetcdfVariable& variable, const std::string& attribute) const;
    /// The rows of a table of characters.
    std::vector<std::string> rows(const NetcdfVariable& variable) const;

private:
    std::vector<std::string> attributesOf(int variable) const;
    void check(int status) const;

    std::string path_;
    int file_;
};

} // namespace MoxTool
