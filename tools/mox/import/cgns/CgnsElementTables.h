#pragma once

#include "../model/ElementTable.h"
#include "CgnsFile.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace MoxTool {

/// The name of an element type in CGNS, such as "HEXA_8".
std::string cgnsTypeName(CGNS_ENUMT(ElementType_t) type);

/// Sorts the elements of a section by type.
class CgnsElementTables {
public:
    /// @param path For messages.
    /// @param vertices The number of vertices of the zone.
    /// @param section Must outlive this object.
    CgnsElementTables(std::string path, std::size_t vertices, const CgnsSection& section)
        : path_(std::move(path)), vertices_(vertices), section_(section) {}

    /// Whether a model can take the elements of a type: all except NFACE_n and user-defined types.
    static bool canTake(CGNS_ENUMT(ElementType_t) type);

    /// One table for each type, without attributes; ids are the numbers of the elements in the zone.
    /// @throws Failure if the data is damaged.
    std::map<CGNS_ENUMT(ElementType_t), ElementTable> sort(const CgnsElements& elements);

private:
    void addUniform(const CgnsElements& elements);
    void addPolygons(const CgnsElements& elements);
    void addMixed(const CgnsElements& elements);
    void addElement(CGNS_ENUMT(ElementType_t) type, std::size_t place, const cgsize_t* nodes,
                    std::size_t count);
    void checkOffsets(const CgnsElements& elements) const;

    [[noreturn]] void refuse(const std::string& damage) const;

    std::string path_;
    std::size_t vertices_;
    const CgnsSection& section_;
    std::map<CGNS_ENUMT(ElementType_t), ElementTable> tables_;
};

} // namespace MoxTool
