#include "CgnsElementTables.h"

#include "../../common/Failure.h"
#include "../../common/visibleText.h"
#include "../../mesh/ElementType.h"
#include "../../mesh/NodeOrder.h"

#include <fmt/core.h>

namespace MoxTool {

namespace {

// CGNS names each type by its shape, an underscore and the number of its nodes.
int dimensionOf(CGNS_ENUMT(ElementType_t) type) {
    if (type == CGNS_ENUMV(NGON_n)) {
        return 2;
    }
    const auto name = cgnsTypeName(type);
    return ElementType(name.substr(0, name.find('_'))).dimension(0, 3).value_or(0);
}

int nodesOf(CGNS_ENUMT(ElementType_t) type) {
    int count = 0;
    return cg_npe(type, &count) == CG_OK ? count : 0;
}

} // namespace

std::string cgnsTypeName(CGNS_ENUMT(ElementType_t) type) {
    return cg_ElementTypeName(type);
}

bool CgnsElementTables::canTake(CGNS_ENUMT(ElementType_t) type) {
    return type == CGNS_ENUMV(MIXED) || type == CGNS_ENUMV(NGON_n) || nodesOf(type) > 0;
}

std::map<CGNS_ENUMT(ElementType_t), ElementTable> CgnsElementTables::sort(const CgnsElements& elements) {
    tables_.clear();
    if (section_.type == CGNS_ENUMV(MIXED)) {
        addMixed(elements);
    } else if (section_.type == CGNS_ENUMV(NGON_n)) {
        addPolygons(elements);
    } else {
        addUniform(elements);
    }
    for (auto& [type, table] : tables_) {
        table.dimension = dimensionOf(type);
        if (table.dimension == 3) {
            reorderNodes(table.connectivity, cgnsSolidNodeOrder(nodesOf(type)));
        }
    }
    return std::move(tables_);
}

void CgnsElementTables::addUniform(const CgnsElements& elements) {
    const auto width = static_cast<std::size_t>(nodesOf(section_.type));
    if (elements.data.size() != section_.count * width) {
        refuse(fmt::format("{} numbers for {} elements of {} nodes", elements.data.size(), section_.count,
                           width));
    }
    for (std::size_t place = 0; place < section_.count; ++place) {
        addElement(section_.type, place, &elements.data[place * width], width);
    }
}

void CgnsElementTables::addPolygons(const CgnsElements& elements) {
    checkOffsets(elements);
    for (std::size_t place = 0; place < section_.count; ++place) {
        const auto begin = static_cast<std::size_t>(elements.offsets[place]);
        const auto end = static_cast<std::size_t>(elements.offsets[place + 1]);
        addElement(section_.type, place, elements.data.data() + begin, end - begin);
    }
}

void CgnsElementTables::addMixed(const CgnsElements& elements) {
    checkOffsets(elements);
    for (std::size_t place = 0; place < section_.count; ++place) {
        const auto begin = static_cast<std::size_t>(elements.offsets[place]);
        const auto end = static_cast<std::size_t>(elements.offsets[place + 1]);
        const auto type = static_cast<CGNS_ENUMT(ElementType_t)>(begin < end ? elements.data[begin] : 0);
        const auto width = static_cast<std::size_t>(nodesOf(type));
        if (width == 0 || end - begin != width + 1) {
            refuse(fmt::format("element {} has an unknown type", place + 1));
        }
        addElement(type, place, &elements.data[begin + 1], width);
    }
}

void CgnsElementTables::addElement(CGNS_ENUMT(ElementType_t) type, std::size_t place, const cgsize_t* nodes,
                                   std::size_t count) {
    auto& table = tables_[type];
    for (std::size_t i = 0; i < count; ++i) {
        if (nodes[i] < 1 || static_cast<std::size_t>(nodes[i]) > vertices_) {
            refuse(fmt::format("it refers to vertex {} of {}", nodes[i], vertices_));
        }
        table.connectivity.push_back(static_cast<unsigned int>(nodes[i] - 1));
    }
    table.polylength.push_back(static_cast<unsigned int>(count));
    table.ids.push_back(static_cast<unsigned int>(static_cast<std::size_t>(section_.first) + place));
}

void CgnsElementTables::checkOffsets(const CgnsElements& elements) const {
    bool isAscending = elements.offsets.front() == 0;
    for (std::size_t place = 0; place < section_.count; ++place) {
        isAscending = isAscending && elements.offsets[place] <= elements.offsets[place + 1];
    }
    if (!isAscending || static_cast<std::size_t>(elements.offsets.back()) != elements.data.size()) {
        refuse("its offsets do not fit to its elements");
    }
}

void CgnsElementTables::refuse(const std::string& damage) const {
    throw Failure(path_, fmt::format("damaged: section {}: {}", visibleText(section_.name), damage));
}

} // namespace MoxTool
