#include "listSkippedExodusContent.h"

#include "../../common/lowerCase.h"
#include "../../exodus/NetcdfVariables.h"
#include "../model/ModeVariables.h"
#include "blockName.h"
#include "nameOrId.h"

#include <fmt/core.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

namespace MoxTool {

namespace {

using Names = std::vector<std::string>;

// Things with ids and names.
struct Entities {
    ex_entity_type type;
    std::int64_t ex_init_params::*count;
    const char* kind; // in the plural
};

constexpr Entities SkippedEntities[] = {
    {EX_NODE_SET, &ex_init_params::num_node_sets, "node sets"},
    {EX_SIDE_SET, &ex_init_params::num_side_sets, "side sets"},
    {EX_EDGE_SET, &ex_init_params::num_edge_sets, "edge sets"},
    {EX_FACE_SET, &ex_init_params::num_face_sets, "face sets"},
    {EX_ELEM_SET, &ex_init_params::num_elem_sets, "element sets"},
    {EX_EDGE_BLOCK, &ex_init_params::num_edge_blk, "edge blocks"},
    {EX_FACE_BLOCK, &ex_init_params::num_face_blk, "face blocks"},
    {EX_NODE_MAP, &ex_init_params::num_node_maps, "further node maps"},
    {EX_ELEM_MAP, &ex_init_params::num_elem_maps, "further element maps"},
    {EX_EDGE_MAP, &ex_init_params::num_edge_maps, "edge maps"},
    {EX_FACE_MAP, &ex_init_params::num_face_maps, "face maps"},
};

struct Variables {
    ex_entity_type type;
    const char* kind;
};

constexpr Variables SkippedVariables[] = {
    {EX_NODE_SET, "node set variables"},     {EX_SIDE_SET, "side set variables"},
    {EX_EDGE_SET, "edge set variables"},     {EX_FACE_SET, "face set variables"},
    {EX_ELEM_SET, "element set variables"},  {EX_EDGE_BLOCK, "edge block variables"},
    {EX_FACE_BLOCK, "face block variables"},
};

struct Records {
    ex_inquiry count;
    const char* kind;
};

constexpr Records SkippedRecords[] = {
    {EX_INQ_INFO, "information records"},
    {EX_INQ_COORD_FRAMES, "coordinate frames"},
};

void listEntities(const ExodusFile& file, ConversionSummary& summary, const std::string& takenMap) {
    for (const auto& entities : SkippedEntities) {
        const auto count = file.counts().*entities.count;
        const auto ids = file.ids(entities.type, count);
        auto names = file.names(entities.type, count);
        for (std::size_t i = 0; i < names.size(); ++i) {
            names[i] = nameOrId(names[i], "id", ids[i]);
        }
        std::erase(names, takenMap);
        summary.addSkipped(entities.kind, names);
    }
}

// Leaves out those that became attributes of the steps.
void listGlobalVariables(const ExodusFile& file, ConversionSummary& summary) {
    const auto names = file.variableNames(EX_GLOBAL);
    const auto mode = findModeVariables(names);
    Names skipped;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!mode || (i != mode->number && i != mode->frequency)) {
            skipped.push_back(names[i]);
        }
    }
    summary.addSkipped("global variables", skipped);
}

void listVariables(const ExodusFile& file, ConversionSummary& summary) {
    listGlobalVariables(file, summary);
    for (const auto& variables : SkippedVariables) {
        summary.addSkipped(variables.kind, file.variableNames(variables.type));
    }
}

void listElementAttributes(const ExodusFile& file, ConversionSummary& summary) {
    Names skipped;
    for (const auto& block : file.blocks()) {
        for (const auto& attribute : file.attributeNames(block)) {
            skipped.push_back(fmt::format("{} of {}", attribute, blockName(block)));
        }
    }
    summary.addSkipped("element attributes", skipped);
}

void listCoordinateNames(const ExodusFile& file, ConversionSummary& summary) {
    const Names usual = {"x", "y", "z"};
    const auto names = file.coordinateNames();
    const bool areUsual =
        std::equal(names.begin(), names.end(), usual.begin(), [](const auto& name, const auto& axis) {
            return name.empty() || lowerCase(name) == axis;
        });
    if (!areUsual) {
        summary.addSkipped("names of coordinates", names);
    }
}

// Names in a netCDF file.
struct Patterns {
    // Variables that are read through the Exodus library, reported by the functions above, or mere
    // bookkeeping.
    const std::regex knownVariables{
        "time_whole|qa_records|info_records|coord[xyz]?|coor_names|connect[0-9]+|ebepecnt[0-9]+|"
        "(eb|ed|fa|ns|ss|es|fs|els|econn|fconn)_(status|names|prop1)|(em|nm|edm|fam)_prop1|"
        "(ebconn|fbconn|edgconn|facconn|fbepecnt)[0-9]+|attrib(_name)?[0-9]+|[ef]attrib_name[0-9]+|"
        "(node|elem|edge|face)_num_map|(node|elem|edge|face)_map[0-9]+|(n|e|ed|fa)map_names|"
        "node_ns[0-9]+|(elem|side)_ss[0-9]+|(edge|ornt)_es[0-9]+|(face|ornt)_fs[0-9]+|elem_els[0-9]+|"
        "dist_fact_[a-z]+[0-9]+|frame_(coordinates|ids|tags)|[a-z]+_var_tab|name_[a-z]+_var|"
        "vals_[a-z]+_var([0-9].*)?|vals_red_var.*|vals_[a-z]+_red_var.*"};
    // How a piece of a decomposed model fits to the others; a note says that it is one.
    const std::regex decomposition{
        "nem_ftype|(el_blk|ns|ss)_[a-z_]*global|(int|bor|ext)_[ne]_stat|[ne]_comm_[a-z_]+|"
        "(elem_map|node_map)[ibe]"};
    const std::regex reducedVariableNames{"name_[a-z]+_red_var"};
    const std::regex propertyVariables{"[a-z]+_prop[0-9]+"};
    const std::regex assembliesAndBlobs{"(assembly|blob)_entity[0-9]+"};
    const std::regex blockConnectivity{"connect([0-9]{1,9})"};
    const std::regex knownAttributes{"name|elem_type|entity_type[0-9]?|_FillValue|_id|_type|_name|_typename"};
    const std::regex knownFileAttributes{"api[_ ]version|version|floating[_ ]point[_ ]word[_ ]size|file_size|"
                                         "maximum_name_length|int64_status|title|last_written_time|type|"
                                         "nemesis_(api|file)_version"};
};

// Finds what the Exodus library has no functions for, by the names of netCDF variables and attributes.
class SkippedNetcdfContent {
public:
    explicit SkippedNetcdfContent(const ExodusFile& file)
        : file_(file), netcdf_(file.path(), file.handle()) {}

    void addTo(ConversionSummary& summary) {
        for (const auto& variable : netcdf_.all()) {
            sort(variable);
        }
        for (const auto& attribute : netcdf_.fileAttributes()) {
            if (!std::regex_match(attribute, patterns_.knownFileAttributes)) {
                fileAttributes_.push_back(attribute);
            }
        }
        summary.addSkipped("assemblies", assemblies_);
        summary.addSkipped("blobs", blobs_);
        summary.addSkipped("properties", properties_);
        summary.addSkipped("variables with one value for a whole assembly, block or set", reduced_);
        summary.addSkipped("attributes of assemblies, blocks or sets", attributes_);
        summary.addSkipped("attributes of the file", fileAttributes_);
        summary.addSkipped("other netCDF variables", others_);
    }

private:
    void sort(const NetcdfVariable& variable) {
        sortAttributes(variable);
        if (std::regex_match(variable.name, patterns_.knownVariables) ||
            std::regex_match(variable.name, patterns_.decomposition)) {
            return;
        }
        if (variable.name.starts_with("assembly_entity")) {
            assemblies_.push_back(ownerName(variable));
        } else if (variable.name.starts_with("blob_entity")) {
            blobs_.push_back(ownerName(variable));
        } else if (std::regex_match(variable.name, patterns_.reducedVariableNames)) {
            append(reduced_, netcdf_.rows(variable));
        } else if (std::regex_match(variable.name, patterns_.propertyVariables)) {
            properties_.push_back(fmt::format("{} ({})", netcdf_.text(variable, "name"), variable.name));
        } else {
            others_.push_back(variable.name);
        }
    }

    void sortAttributes(const NetcdfVariable& variable) {
        for (const auto& attribute : variable.attributes) {
            if (!std::regex_match(attribute, patterns_.knownAttributes)) {
                attributes_.push_back(fmt::format("{} of {}", attribute, ownerName(variable)));
            }
        }
    }

    std::string ownerName(const NetcdfVariable& variable) const {
        if (std::regex_match(variable.name, patterns_.assembliesAndBlobs)) {
            return nameOrId(netcdf_.text(variable, "_name"), "id", netcdf_.number(variable, "_id"));
        }
        std::smatch match;
        if (!std::regex_match(variable.name, match, patterns_.blockConnectivity)) {
            return variable.name;
        }
        const auto number = std::stoul(match[1]);
        return number >= 1 && number <= file_.blocks().size() ? blockName(file_.blocks()[number - 1])
                                                              : variable.name;
    }

    static void append(Names& names, const Names& more) {
        names.insert(names.end(), more.begin(), more.end());
    }

    const ExodusFile& file_;
    NetcdfVariables netcdf_;
    Patterns patterns_;
    Names assemblies_;
    Names blobs_;
    Names properties_;
    Names reduced_;
    Names attributes_;
    Names fileAttributes_;
    Names others_;
};

} // namespace

void listSkippedExodusContent(const ExodusFile& file, ConversionSummary& summary,
                              const std::string& takenMap) {
    listEntities(file, summary, takenMap);
    listVariables(file, summary);
    listElementAttributes(file, summary);
    listCoordinateNames(file, summary);
    for (const auto& records : SkippedRecords) {
        summary.addSkipped(records.kind, file.inquire(records.count));
    }
    SkippedNetcdfContent(file).addTo(summary);
}

} // namespace MoxTool
