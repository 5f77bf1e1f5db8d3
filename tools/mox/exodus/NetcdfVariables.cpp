#include "NetcdfVariables.h"

#include "../common/Failure.h"

#include <netcdf.h>

#include <fmt/core.h>

#include <array>
#include <cstddef>

namespace MoxTool {

std::vector<NetcdfVariable> NetcdfVariables::all() const {
    int count = 0;
    check(nc_inq_nvars(file_, &count));
    std::vector<NetcdfVariable> variables;
    for (int id = 0; id < count; ++id) {
        std::array<char, NC_MAX_NAME + 1> name{};
        check(nc_inq_varname(file_, id, name.data()));
        variables.push_back({id, name.data(), attributesOf(id)});
    }
    return variables;
}

std::vector<std::string> NetcdfVariables::fileAttributes() const {
    return attributesOf(NC_GLOBAL);
}

std::vector<std::string> NetcdfVariables::attributesOf(int variable) const {
    int count = 0;
    check(nc_inq_varnatts(file_, variable, &count));
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        std::array<char, NC_MAX_NAME + 1> name{};
        check(nc_inq_attname(file_, variable, i, name.data()));
        names.emplace_back(name.data());
    }
    return names;
}

std::string NetcdfVariables::text(const NetcdfVariable& variable, const std::string& attribute) const {
    std::size_t length = 0;
    nc_type type = NC_NAT;
    if (nc_inq_att(file_, variable.id, attribute.c_str(), &type, &length) != NC_NOERR || type != NC_CHAR) {
        return {};
    }
    std::string result(length, '\0');
    check(nc_get_att_text(file_, variable.id, attribute.c_str(), result.data()));
    return result.substr(0, result.find('\0'));
}

long long NetcdfVariables::number(const NetcdfVariable& variable, const std::string& attribute) const {
    std::size_t length = 0;
    nc_type type = NC_NAT;
    long long result = 0;
    if (nc_inq_att(file_, variable.id, attribute.c_str(), &type, &length) == NC_NOERR && length == 1 &&
        type != NC_CHAR && type <= NC_UINT64) {
        check(nc_get_att_longlong(file_, variable.id, attribute.c_str(), &result));
    }
    return result;
}

std::vector<std::string> NetcdfVariables::rows(const NetcdfVariable& variable) const {
    int dimensionCount = 0;
    nc_type type = NC_NAT;
    check(nc_inq_var(file_, variable.id, nullptr, &type, &dimensionCount, nullptr, nullptr));
    if (dimensionCount != 2 || type != NC_CHAR) {
        return {};
    }
    std::array<int, 2> dimensions{};
    check(nc_inq_vardimid(file_, variable.id, dimensions.data()));
    std::array<std::size_t, 2> lengths{};
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        check(nc_inq_dimlen(file_, dimensions[i], &lengths[i]));
    }
    std::string text(lengths[0] * lengths[1], '\0');
    check(nc_get_var_text(file_, variable.id, text.data()));
    std::vector<std::string> result;
    for (std::size_t row = 0; row < lengths[0]; ++row) {
        result.emplace_back(text.substr(row * lengths[1], lengths[1]).c_str());
    }
    return result;
}

void NetcdfVariables::check(int status) const {
    if (status != NC_NOERR) {
        throw Failure(path_,
                      fmt::format("damaged: what else it holds can't be read ({})", nc_strerror(status)));
    }
}

} // namespace MoxTool
