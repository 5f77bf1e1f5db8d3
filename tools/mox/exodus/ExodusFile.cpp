#include "ExodusFile.h"

#include "../common/Failure.h"
#include "../common/Platform.h"
#include "../common/checkIsFile.h"
#include "../common/utf8Path.h"
#include "../common/visibleText.h"
#include "../mesh/ElementType.h"
#include "CharRows.h"
#include "requiredNetcdfLength.h"

#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

namespace MoxTool {

namespace {

namespace fs = std::filesystem;

constexpr const char* NotExodus = "not an Exodus II file";

enum class Container { Classic, Hdf5, Other };

Container containerOf(std::istream& file) {
    std::array<char, 4> magic{};
    file.read(magic.data(), magic.size());
    const std::string start(magic.data(), magic.size());
    if (start.starts_with("CDF")) {
        return Container::Classic;
    }
    return start == "\x89HDF" ? Container::Hdf5 : Container::Other;
}

void checkLength(const std::string& path, std::istream& file) {
    file.clear();
    file.seekg(0);
    std::uint64_t required = 0;
    try {
        required = requiredNetcdfLength(file);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& damage) {
        throw Failure(path, fmt::format("damaged: {}", damage.what()));
    }
    const std::uint64_t present = fs::file_size(pathOf(path));
    if (present < required) {
        throw Failure(path, fmt::format("damaged: cut off after {} of {} bytes", present, required));
    }
}

// The Exodus library writes to stderr if netCDF can't open a file, so that is tried first.
void checkOpens(const std::string& path) {
    int opened = -1;
    if (const int status = nc_open(path.c_str(), NC_NOWRITE, &opened); status != NC_NOERR) {
        throw Failure(path, fmt::format("{}, or damaged ({})", NotExodus, nc_strerror(status)));
    }
    nc_close(opened);
}

// Catches early what the library reports unclearly or not at all.
void checkContainer(const std::string& path) {
    checkIsFile(path);
    std::ifstream file(pathOf(path), std::ios::binary);
    if (!file) {
        throw Failure(path, "can't be opened");
    }
    const auto container = containerOf(file);
    if (container == Container::Other) {
        throw Failure(path, NotExodus);
    }
    if (container == Container::Classic) {
        checkLength(path, file);
    }
    checkOpens(path);
}

// A block by its place in the file, counted from 1, and its name if it has one.
std::string blockAt(std::size_t place, const std::vector<std::string>& names) {
    return names[place].empty()
               ? fmt::format("element block {}", place + 1)
               : fmt::format("element block {} \"{}\"", place + 1, visibleText(names[place]));
}

} // namespace

ExodusFile::Handle::~Handle() {
    if (id >= 0) {
        ex_close(id);
    }
}

ExodusFile::ExodusFile(const std::string& filePath) : filePath_(filePath) {
    Platform::forgetMissedMemory();
    checkContainer(filePath);
    open();
    readParameters();
    readBlocks();
    readTimes();
}

void ExodusFile::open() {
    ex_opts(EX_DEFAULT);
    int memoryWordSize = sizeof(double);
    file_.id = ex_open(filePath_.c_str(), EX_READ | EX_ALL_INT64_API, &memoryWordSize, &wordSize_, &version_);
    if (file_.id < 0) {
        throw Failure(filePath_, fmt::format("{}, or damaged", NotExodus));
    }
    nameLength_ = static_cast<std::size_t>(
        std::max<std::int64_t>(MAX_NAME_LENGTH, inquire(EX_INQ_DB_MAX_ALLOWED_NAME_LENGTH)));
    check(ex_set_max_name_length(file_.id, static_cast<int>(nameLength_)), "its names");
}

void ExodusFile::readParameters() {
    check(ex_get_init_ext(file_.id, &parameters_), "its counts");
    if (parameters_.num_dim < 1 || parameters_.num_dim > 3) {
        throw Failure(filePath_, fmt::format("damaged: {} dimensions", parameters_.num_dim));
    }
}

void ExodusFile::readBlocks() {
    const auto blockIds = ids(EX_ELEM_BLOCK, parameters_.num_elem_blk);
    const auto blockNames = names(EX_ELEM_BLOCK, parameters_.num_elem_blk);
    refuseRepeatedIds(blockIds, blockNames);
    std::int64_t firstElement = 0;
    for (std::size_t place = 0; place < blockIds.size(); ++place) {
        checkElementType(place);
        ex_block block{};
        block.id = blockIds[place];
        block.type = EX_ELEM_BLOCK;
        check(ex_get_block_param(file_.id, &block), "an element block");
        elementBlocks_.push_back({block.id, blockNames[place], block.topology, block.num_entry,
                                  block.num_nodes_per_entry, block.num_attribute, firstElement});
        firstElement += block.num_entry;
    }
    if (firstElement != parameters_.num_elem) {
        throw Failure(filePath_, fmt::format("damaged: its blocks have {} elements instead of {}",
                                             firstElement, parameters_.num_elem));
    }
}

void ExodusFile::readTimes() {
    stepTimes_.resize(static_cast<std::size_t>(inquire(EX_INQ_TIME)));
    if (!stepTimes_.empty()) {
        check(ex_get_all_times(file_.id, stepTimes_.data()), "the times");
    }
}

// The library finds a block by its id alone: it would read the first of two twice and the other not at all.
void ExodusFile::refuseRepeatedIds(const std::vector<std::int64_t>& blockIds,
                                   const std::vector<std::string>& blockNames) const {
    std::map<std::int64_t, std::size_t> places;
    for (std::size_t place = 0; place < blockIds.size(); ++place) {
        const auto [first, isNew] = places.emplace(blockIds[place], place);
        if (!isNew) {
            throw Failure(filePath_, fmt::format("damaged: {} and {} have the same id, {}",
                                                 blockAt(first->second, blockNames),
                                                 blockAt(place, blockNames), blockIds[place]));
        }
    }
}

// The library copies the type to a buffer of this size whatever the length.
void ExodusFile::checkElementType(std::size_t place) const {
    int variable = 0;
    std::size_t length = 0;
    const auto name = fmt::format("connect{}", place + 1);
    if (nc_inq_varid(file_.id, name.c_str(), &variable) == NC_NOERR &&
        nc_inq_attlen(file_.id, variable, "elem_type", &length) == NC_NOERR && length > MAX_STR_LENGTH + 1) {
        throw Failure(filePath_, fmt::format("damaged: element block {} has an element type of {} letters, "
                                             "but Exodus II allows {}",
                                             place + 1, length, MAX_STR_LENGTH));
    }
}

// The library refuses every inquiry without room for an integer.
float ExodusFile::apiVersion() const {
    std::int64_t unused = 0;
    float result = 0;
    check(ex_inquire(file_.id, EX_INQ_API_VERS, &unused, &result, nullptr), "the version of its library");
    return result;
}

std::vector<QaRecord> ExodusFile::qaRecords() const {
    constexpr std::size_t Fields = 4;
    const auto count = static_cast<std::size_t>(inquire(EX_INQ_QA));
    if (count == 0) {
        return {};
    }
    CharRows texts(count * Fields, MAX_STR_LENGTH);
    check(ex_get_qa(file_.id, reinterpret_cast<char*(*)[Fields]>(texts.data())), "the QA records");
    std::vector<QaRecord> records;
    for (std::size_t i = 0; i < texts.size(); i += Fields) {
        records.push_back({texts[i], texts[i + 1], texts[i + 2], texts[i + 3]});
    }
    return records;
}

std::int64_t ExodusFile::inquire(ex_inquiry what) const {
    const auto count = ex_inquire_int(file_.id, what);
    check(count < 0 ? NC_EINVAL : NC_NOERR, "a count");
    return count;
}

std::optional<std::int64_t> ExodusFile::dimensionLength(const char* name) const {
    int dimension = 0;
    std::size_t length = 0;
    if (nc_inq_dimid(file_.id, name, &dimension) != NC_NOERR ||
        nc_inq_dimlen(file_.id, dimension, &length) != NC_NOERR) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(length);
}

std::vector<double> ExodusFile::coordinates(int axis) const {
    std::vector<double> result(static_cast<std::size_t>(parameters_.num_nodes));
    std::array<double*, 3> targets{};
    targets.at(static_cast<std::size_t>(axis)) = result.data();
    check(ex_get_coord(file_.id, targets[0], targets[1], targets[2]), "the coordinates");
    return result;
}

std::vector<std::int64_t> ExodusFile::idMap(ex_entity_type type, std::int64_t count) const {
    std::vector<std::int64_t> result(static_cast<std::size_t>(count));
    if (ex_get_id_map(file_.id, type, result.data()) < 0) {
        throw Failure(filePath_, "damaged: an id map can't be read");
    }
    return result;
}

std::optional<std::vector<std::int64_t>> ExodusFile::numberMap(ex_entity_type type,
                                                               const std::string& name) const {
    const bool isOfNodes = type == EX_NODE_MAP;
    const auto count = isOfNodes ? parameters_.num_node_maps : parameters_.num_elem_maps;
    const auto mapNames = names(type, count);
    const auto found = std::ranges::find(mapNames, name);
    if (found == mapNames.end()) {
        return std::nullopt;
    }
    const auto mapIds = ids(type, count);
    std::vector<std::int64_t> result(
        static_cast<std::size_t>(isOfNodes ? parameters_.num_nodes : parameters_.num_elem));
    if (!result.empty()) {
        check(ex_get_num_map(file_.id, type, mapIds[static_cast<std::size_t>(found - mapNames.begin())],
                             result.data()),
              "a further map");
    }
    return result;
}

std::vector<std::int64_t> ExodusFile::connectivity(const ExodusBlock& block) const {
    const auto count = ElementType(block.elementType).isNsided() ? block.nodesPerElement
                                                                 : block.elementCount * block.nodesPerElement;
    std::vector<std::int64_t> result(static_cast<std::size_t>(count));
    check(ex_get_conn(file_.id, EX_ELEM_BLOCK, block.id, result.data(), nullptr, nullptr),
          "the nodes of the elements");
    return result;
}

std::vector<int> ExodusFile::nodesOfEachElement(const ExodusBlock& block) const {
    std::vector<int> result(static_cast<std::size_t>(block.elementCount));
    check(ex_get_entity_count_per_polyhedra(file_.id, EX_ELEM_BLOCK, block.id, result.data()),
          "the sizes of the elements");
    return result;
}

std::vector<std::string> ExodusFile::attributeNames(const ExodusBlock& block) const {
    if (block.attributeCount == 0) {
        return {};
    }
    CharRows texts(static_cast<std::size_t>(block.attributeCount), nameLength_);
    check(ex_get_attr_names(file_.id, EX_ELEM_BLOCK, block.id, texts.data()),
          "the names of element attributes");
    return texts.strings();
}

std::vector<std::string> ExodusFile::coordinateNames() const {
    CharRows texts(static_cast<std::size_t>(parameters_.num_dim), nameLength_);
    check(ex_get_coord_names(file_.id, texts.data()), "the names of the coordinates");
    return texts.strings();
}

std::vector<std::int64_t> ExodusFile::ids(ex_entity_type type, std::int64_t count) const {
    std::vector<std::int64_t> result(static_cast<std::size_t>(count));
    if (count > 0) {
        check(ex_get_ids(file_.id, type, result.data()), "the ids of blocks or sets");
    }
    return result;
}

std::vector<std::string> ExodusFile::names(ex_entity_type type, std::int64_t count) const {
    if (count == 0) {
        return {};
    }
    CharRows texts(static_cast<std::size_t>(count), nameLength_);
    check(ex_get_names(file_.id, type, texts.data()), "the names of blocks or sets");
    return texts.strings();
}

std::vector<std::string> ExodusFile::variableNames(ex_entity_type type) const {
    int count = 0;
    check(ex_get_variable_param(file_.id, type, &count), "the number of variables");
    if (count == 0) {
        return {};
    }
    CharRows texts(static_cast<std::size_t>(count), nameLength_);
    check(ex_get_variable_names(file_.id, type, count, texts.data()), "the names of variables");
    return texts.strings();
}

std::vector<int> ExodusFile::elementTruthTable(std::size_t variableCount) const {
    std::vector<int> table(elementBlocks_.size() * variableCount);
    if (!table.empty()) {
        check(ex_get_truth_table(file_.id, EX_ELEM_BLOCK, static_cast<int>(elementBlocks_.size()),
                                 static_cast<int>(variableCount), table.data()),
              "the table of element variables");
    }
    return table;
}

std::vector<double> ExodusFile::values(ex_entity_type type, std::size_t variable, std::int64_t entity,
                                       std::size_t step, std::int64_t count) const {
    std::vector<double> result(static_cast<std::size_t>(count));
    const auto number = static_cast<int>(variable) + 1;
    check(ex_get_var(file_.id, static_cast<int>(step) + 1, type, number, entity, count, result.data()),
          "a variable");
    return result;
}

std::vector<double> ExodusFile::globalValues(std::size_t step, std::size_t variableCount) const {
    std::vector<double> result(variableCount);
    check(ex_get_glob_vars(file_.id, static_cast<int>(step) + 1, static_cast<int>(variableCount),
                           result.data()),
          "the global variables");
    return result;
}

// The library warns, with a positive status, about things that are absent; here everything requested must
// exist. Where an allocation failed, some functions report success with nothing read.
void ExodusFile::check(int status, const char* what) const {
    if (status != NC_NOERR || Platform::hasMissedMemory()) {
        throw Failure(filePath_, fmt::format("damaged: {} can't be read", what));
    }
}

} // namespace MoxTool
