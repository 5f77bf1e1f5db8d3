#include "ExodusOutput.h"

#include "../common/Failure.h"
#include "../common/Platform.h"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

namespace MoxTool {

namespace {

// The library takes the texts to write as pointers to char that is not const.
class Pointers {
public:
    explicit Pointers(std::vector<std::string> kept) : kept_(std::move(kept)) {
        for (auto& text : kept_) {
            pointers_.push_back(text.data());
        }
    }
    char** data() { return pointers_.data(); }

private:
    std::vector<std::string> kept_;
    std::vector<char*> pointers_;
};

ex_init_params parametersOf(const ExodusOutput::Layout& layout) {
    ex_init_params parameters{};
    layout.title.copy(parameters.title, MAX_LINE_LENGTH);
    parameters.num_dim = layout.dimension;
    parameters.num_nodes = static_cast<std::int64_t>(layout.nodes);
    parameters.num_elem = static_cast<std::int64_t>(layout.elements);
    parameters.num_elem_blk = static_cast<std::int64_t>(layout.blocks);
    return parameters;
}

} // namespace

ExodusOutput::ExodusOutput(const std::string& path, std::string shown, const Layout& layout)
    : shown_(std::move(shown)) {
    Platform::forgetMissedMemory();
    create(path, layout.largeIds);
    const auto length = std::clamp<std::size_t>(layout.nameLength, MAX_NAME_LENGTH, LongestName);
    check(ex_set_max_name_length(file_, static_cast<int>(length)));
    const auto parameters = parametersOf(layout);
    check(ex_put_init_ext(file_, &parameters));
}

ExodusOutput::~ExodusOutput() {
    if (file_ >= 0) {
        ex_close(file_);
    }
}

// The library writes to stderr if a file can't be created, so that is tried first. Files of the classic
// format have no 64-bit integers.
void ExodusOutput::create(const std::string& path, bool largeIds) {
    ex_opts(EX_DEFAULT);
    if (!std::ofstream(path, std::ios::binary)) {
        throw Failure(shown_, "can't be written");
    }
    int memoryWordSize = sizeof(double);
    int diskWordSize = sizeof(double);
    const int format = largeIds ? EX_NETCDF4 | EX_MAPS_INT64_DB | EX_IDS_INT64_DB : EX_LARGE_MODEL;
    file_ = ex_create(path.c_str(), EX_CLOBBER | EX_ALL_INT64_API | format, &memoryWordSize, &diskWordSize);
    if (file_ < 0) {
        throw Failure(shown_, "can't be written");
    }
}

void ExodusOutput::qaRecords(const std::vector<QaRecord>& records) {
    constexpr std::size_t Fields = 4;
    if (records.empty()) {
        return;
    }
    std::vector<std::string> texts;
    for (const auto& record : records) {
        texts.insert(texts.end(), {record.program, record.version, record.date, record.time});
    }
    Pointers pointers(std::move(texts));
    check(ex_put_qa(file_, static_cast<int>(records.size()),
                    reinterpret_cast<char*(*)[Fields]>(pointers.data())));
}

void ExodusOutput::coordinates(int axis, const std::vector<double>& values) {
    std::array<const double*, 3> sources{};
    sources.at(static_cast<std::size_t>(axis)) = values.data();
    check(ex_put_coord(file_, sources[0], sources[1], sources[2]));
}

void ExodusOutput::block(const ExodusBlock& block, const std::vector<std::uint32_t>& nodes,
                         const std::vector<std::uint32_t>& lengths) {
    check(ex_put_block(file_, EX_ELEM_BLOCK, block.id, block.elementType.c_str(), block.elementCount,
                       block.nodesPerElement, 0, 0, 0));
    std::vector<std::int64_t> connectivity;
    connectivity.reserve(nodes.size());
    for (const auto node : nodes) {
        connectivity.push_back(std::int64_t{node} + 1);
    }
    check(ex_put_conn(file_, EX_ELEM_BLOCK, block.id, connectivity.data(), nullptr, nullptr));
    if (!lengths.empty()) {
        const std::vector<int> counts(lengths.begin(), lengths.end());
        check(ex_put_entity_count_per_polyhedra(file_, EX_ELEM_BLOCK, block.id, counts.data()));
    }
    check(ex_put_name(file_, EX_ELEM_BLOCK, block.id, block.name.c_str()));
}

void ExodusOutput::idMap(ex_entity_type type, const std::vector<std::int64_t>& ids) {
    check(ex_put_id_map(file_, type, ids.data()));
}

void ExodusOutput::variables(ex_entity_type type, const std::vector<std::string>& names) {
    if (names.empty()) {
        return;
    }
    const auto count = static_cast<int>(names.size());
    check(ex_put_variable_param(file_, type, count));
    check(ex_put_variable_names(file_, type, count, Pointers(names).data()));
}

void ExodusOutput::truthTable(std::size_t blocks, std::size_t variables, std::vector<int> table) {
    if (!table.empty()) {
        check(ex_put_truth_table(file_, EX_ELEM_BLOCK, static_cast<int>(blocks), static_cast<int>(variables),
                                 table.data()));
    }
}

void ExodusOutput::time(std::size_t step, double time) {
    check(ex_put_time(file_, static_cast<int>(step) + 1, &time));
}

void ExodusOutput::globals(std::size_t step, const std::vector<double>& values) {
    if (!values.empty()) {
        check(ex_put_var(file_, static_cast<int>(step) + 1, EX_GLOBAL, 1, 1,
                         static_cast<std::int64_t>(values.size()), values.data()));
    }
}

void ExodusOutput::nodal(std::size_t step, std::size_t variable, std::size_t first,
                         const std::vector<double>& values) {
    check(ex_put_n_var(file_, static_cast<int>(step) + 1, EX_NODAL, static_cast<int>(variable) + 1, 1,
                       static_cast<std::int64_t>(first) + 1, static_cast<std::int64_t>(values.size()),
                       values.data()));
}

void ExodusOutput::elemental(std::size_t step, std::size_t variable, std::int64_t block,
                             const std::vector<double>& values) {
    check(ex_put_var(file_, static_cast<int>(step) + 1, EX_ELEM_BLOCK, static_cast<int>(variable) + 1, block,
                     static_cast<std::int64_t>(values.size()), values.data()));
}

void ExodusOutput::close() {
    check(ex_close(std::exchange(file_, -1)));
}

// Positive numbers are only warnings. Some functions take an allocation that failed for something that the file does not
// have, do nothing, and report success.
void ExodusOutput::check(int status) const {
    if (Platform::hasMissedMemory()) {
        throw Failure(shown_, "can't be written by the Exodus library: not enough memory");
    }
    if (status >= 0) {
        return;
    }
    const std::string reason =
        exerrval < EX_MEMFAIL ? nc_strerror(exerrval) : "out of memory or a wrong argument";
    throw Failure(shown_, "can't be written by the Exodus library: " + reason);
}

} // namespace MoxTool
