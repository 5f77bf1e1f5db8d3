#include "ElementType.h"

#include "../common/lowerCase.h"

#include <map>

namespace MoxTool {

namespace {

const std::map<std::string, int> DimensionsByName = {
    {"sphere", 1},   {"circle", 1}, {"point", 1},       {"particle", 1},      {"node", 1},      {"bar", 1},
    {"beam", 1},     {"truss", 1},  {"rod", 1},         {"edge", 1},          {"line", 1},      {"spring", 1},
    {"tri", 2},      {"quad", 2},   {"triangle", 2},    {"trishell", 2},      {"quadshell", 2}, {"shell", 2},
    {"membrane", 2}, {"nsided", 2}, {"polygon", 2},     {"quadrilateral", 2}, {"tet", 3},       {"tetra", 3},
    {"hex", 3},      {"hexa", 3},   {"hexshell", 3},    {"wedge", 3},         {"penta", 3},     {"prism", 3},
    {"pyramid", 3},  {"pyra", 3},   {"tetrahedron", 3}, {"hexahedron", 3},
};

std::string withoutNumber(const std::string& type) {
    const auto name = lowerCase(type);
    return name.substr(0, name.find_last_not_of("0123456789") + 1);
}

} // namespace

ElementType::ElementType(const std::string& typeName) : name_(withoutNumber(typeName)) {}

std::optional<int> ElementType::dimension(std::int64_t nodesPerElement, int modelDimension) const {
    if (isLineShell(nodesPerElement, modelDimension)) {
        return 1;
    }
    if (const auto known = DimensionsByName.find(name_); known != DimensionsByName.end()) {
        return known->second;
    }
    if (nodesPerElement == 1) {
        return 1;
    }
    return std::nullopt;
}

bool ElementType::isNsided() const {
    return name_ == "nsided";
}

bool ElementType::isLineShell(std::int64_t nodesPerElement, int modelDimension) const {
    return name_ == "shell" && (nodesPerElement == 2 || (nodesPerElement == 3 && modelDimension == 2));
}

} // namespace MoxTool
