#include "splitExodus.h"

#include "../../exodus/SmallExodusFile.h"
#include "exodus/ExodusFile.h"

#include <algorithm>
#include <map>
#include <vector>

namespace {

using Ints = std::vector<std::int64_t>;
using MoxTool::ExodusFile;
constexpr const char* OriginalIds = "original_global_id_map";

template <typename T>
std::vector<T> chosen(const std::vector<T>& all, const std::vector<std::size_t>& places) {
    std::vector<T> result;
    for (const auto place : places) {
        result.push_back(all[place]);
    }
    return result;
}

class Piece {
public:
    Piece(const ExodusFile& whole, const std::string& target, const ExodusCut& cut, std::size_t rank)
        : whole_(whole), cut_(cut), rank_(rank) {
        chooseElements();
        int words = 8;
        int diskWords = 8;
        const auto path = target + "." + std::to_string(cut.pieces) + "." + std::to_string(rank);
        id_ = ex_create(path.c_str(), EX_CLOBBER | EX_ALL_INT64_API, &words, &diskWords);
        SmallExodusFile::require(id_ < 0 ? -1 : 0);
        writeDecomposition();
        writeCounts();
        writeMaps();
        writeMesh();
        writeVariables();
        for (std::size_t step = 0; step < steps(); ++step) {
            writeStep(step);
        }
    }
    Piece(const Piece&) = delete;
    Piece& operator=(const Piece&) = delete;
    ~Piece() { ex_close(id_); }

private:
    static void require(int status) { SmallExodusFile::require(status); }

    void chooseElements() {
        std::vector<bool> isUsed(static_cast<std::size_t>(whole_.counts().num_nodes));
        for (const auto& block : whole_.blocks()) {
            const auto nodes = whole_.connectivity(block);
            const auto starts = startsOf(block);
            auto& own = elements_.emplace_back();
            for (std::size_t i = 0; i < static_cast<std::size_t>(block.elementCount); ++i) {
                const auto place = static_cast<std::size_t>(block.firstElement) + i;
                if (cut_.pieceOf(place) != rank_) {
                    continue;
                }
                own.push_back(i);
                allElements_.push_back(place);
                for (auto at = starts[i]; at < starts[i + 1]; ++at) {
                    isUsed[static_cast<std::size_t>(nodes[at] - 1)] = true;
                }
            }
        }
        for (std::size_t node = 0; node < isUsed.size(); ++node) {
            if (isUsed[node]) {
                nodes_.push_back(node);
                local_[node] = static_cast<std::int64_t>(nodes_.size());
            }
        }
    }

    // Where the nodes of each element of a block begin, and where the last ones end.
    std::vector<std::size_t> startsOf(const MoxTool::ExodusBlock& block) const {
        std::vector<int> counts(static_cast<std::size_t>(block.elementCount),
                                static_cast<int>(block.nodesPerElement));
        if (isNsided(block)) {
            counts = whole_.nodesOfEachElement(block);
        }
        std::vector<std::size_t> starts = {0};
        for (const auto count : counts) {
            starts.push_back(starts.back() + static_cast<std::size_t>(count));
        }
        return starts;
    }

    static bool isNsided(const MoxTool::ExodusBlock& block) { return block.elementType == "NSIDED"; }

    bool hasBlock(std::size_t place) const { return cut_.hasAllBlocks || !elements_[place].empty(); }

    void writeDecomposition() {
        std::string type = "p";
        require(ex_put_init_info(id_, static_cast<int>(cut_.pieces), 1, type.data()));
        const auto& counts = whole_.counts();
        require(ex_put_init_global(id_, counts.num_nodes, counts.num_elem, counts.num_elem_blk,
                                   counts.num_node_sets, 0));
    }

    void writeCounts() {
        ex_init_params counts{};
        const std::string title =
            cut_.hasOwnTitles ? "Piece " + std::to_string(rank_) : std::string(whole_.counts().title);
        std::copy(title.begin(), title.end(), counts.title);
        counts.num_dim = whole_.counts().num_dim;
        counts.num_nodes = std::ssize(nodes_);
        counts.num_elem = std::ssize(allElements_);
        for (std::size_t i = 0; i < elements_.size(); ++i) {
            counts.num_elem_blk += hasBlock(i) ? 1 : 0;
        }
        counts.num_node_sets = whole_.counts().num_node_sets;
        if (cut_.hasOriginalIds) {
            counts.num_node_maps = nodes_.empty() ? 0 : 1;
            counts.num_elem_maps = nodes_.empty() ? 0 : 1;
        }
        require(ex_put_init_ext(id_, &counts));
    }

    void writeMaps() {
        writeMap(EX_NODE_MAP, whole_.idMap(EX_NODE_MAP, whole_.counts().num_nodes), nodes_);
        writeMap(EX_ELEM_MAP, whole_.idMap(EX_ELEM_MAP, whole_.counts().num_elem), allElements_);
    }

    void writeMap(ex_entity_type type, const Ints& ids, const std::vector<std::size_t>& places) {
        const auto own = chosen(ids, places);
        if (places.empty()) {
            return;
        }
        Ints numbers(places.begin(), places.end());
        std::for_each(numbers.begin(), numbers.end(), [](auto& number) { ++number; });
        require(ex_put_id_map(id_, type, (cut_.hasOriginalIds ? numbers : own).data()));
        if (cut_.hasOriginalIds) {
            require(ex_put_num_map(id_, type, 1, own.data()));
            require(ex_put_name(id_, type, 1, OriginalIds));
        }
    }

    void writeMesh() {
        std::vector<std::vector<double>> axes(3);
        for (int axis = 0; axis < whole_.dimension(); ++axis) {
            axes[static_cast<std::size_t>(axis)] = chosen(whole_.coordinates(axis), nodes_);
        }
        if (!nodes_.empty()) {
            require(ex_put_coord(id_, axes[0].data(), axes[1].data(), axes[2].data()));
        }
        for (std::size_t i = 0; i < whole_.blocks().size(); ++i) {
            if (hasBlock(i)) {
                writeBlock(whole_.blocks()[i], elements_[i]);
            }
        }
        writeNodeSets();
    }

    void writeBlock(const MoxTool::ExodusBlock& block, const std::vector<std::size_t>& elements) {
        const auto nodes = whole_.connectivity(block);
        const auto starts = startsOf(block);
        Ints own;
        std::vector<int> counts;
        for (const auto element : elements) {
            for (auto at = starts[element]; at < starts[element + 1]; ++at) {
                own.push_back(local_.at(static_cast<std::size_t>(nodes[at] - 1)));
            }
            counts.push_back(static_cast<int>(starts[element + 1] - starts[element]));
        }
        // The library counts the nodes of all elements of such a block.
        const auto each = isNsided(block) ? std::ssize(own) : block.nodesPerElement;
        require(ex_put_block(id_, EX_ELEM_BLOCK, block.id, block.elementType.c_str(), std::ssize(elements),
                             each, 0, 0, 0));
        if (!block.name.empty()) {
            require(ex_put_name(id_, EX_ELEM_BLOCK, block.id, block.name.c_str()));
        }
        if (!own.empty()) {
            require(ex_put_conn(id_, EX_ELEM_BLOCK, block.id, own.data(), nullptr, nullptr));
        }
        if (isNsided(block) && !own.empty()) {
            require(ex_put_entity_count_per_polyhedra(id_, EX_ELEM_BLOCK, block.id, counts.data()));
        }
    }

    void writeNodeSets() {
        for (const auto set : whole_.ids(EX_NODE_SET, whole_.counts().num_node_sets)) {
            std::int64_t count = 0;
            require(ex_get_set_param(whole_.handle(), EX_NODE_SET, set, &count, nullptr));
            Ints nodes(static_cast<std::size_t>(count));
            require(ex_get_set(whole_.handle(), EX_NODE_SET, set, nodes.data(), nullptr));
            Ints own;
            for (const auto node : nodes) {
                if (const auto found = local_.find(static_cast<std::size_t>(node - 1));
                    found != local_.end()) {
                    own.push_back(found->second);
                }
            }
            require(ex_put_set_param(id_, EX_NODE_SET, set, std::ssize(own), 0));
            if (!own.empty()) {
                require(ex_put_set(id_, EX_NODE_SET, set, own.data(), nullptr));
            }
        }
    }

    void writeVariables() {
        for (const auto type : {EX_NODAL, EX_ELEM_BLOCK, EX_GLOBAL}) {
            const auto names = whole_.variableNames(type);
            const bool isRefused = type == EX_NODAL && nodes_.empty(); // by the library
            if (names.empty() || isRefused) {
                continue;
            }
            require(ex_put_variable_param(id_, type, static_cast<int>(names.size())));
            for (std::size_t i = 0; i < names.size(); ++i) {
                require(ex_put_variable_name(id_, type, static_cast<int>(i) + 1, names[i].c_str()));
            }
        }
        const auto count = whole_.variableNames(EX_ELEM_BLOCK).size();
        table_ = whole_.elementTruthTable(count);
        std::vector<int> own;
        for (std::size_t i = 0; i < table_.size(); ++i) {
            table_[i] = elements_[i / count].empty() ? 0 : table_[i];
            if (hasBlock(i / count)) {
                own.push_back(table_[i]);
            }
        }
        if (!own.empty() && !nodes_.empty()) {
            require(ex_put_truth_table(id_, EX_ELEM_BLOCK, static_cast<int>(own.size() / count),
                                       static_cast<int>(count), own.data()));
        }
    }

    bool isLast() const { return rank_ + 1 == cut_.pieces; }

    std::size_t steps() const {
        const auto all = whole_.times().size();
        return isLast() ? std::min(cut_.steps, all) : all;
    }

    void writeStep(std::size_t step) {
        const auto number = static_cast<int>(step) + 1;
        const auto time = whole_.times()[step] + (isLast() ? cut_.lateBy : 0);
        require(ex_put_time(id_, number, &time));
        const auto globals = whole_.variableNames(EX_GLOBAL).size();
        if (globals > 0) {
            const auto values = whole_.globalValues(step, globals);
            require(ex_put_var(id_, number, EX_GLOBAL, 1, 0, std::ssize(values), values.data()));
        }
        const auto nodal = whole_.variableNames(EX_NODAL).size();
        for (std::size_t i = 0; i < nodal && !nodes_.empty(); ++i) {
            const auto values =
                chosen(whole_.values(EX_NODAL, i, 1, step, whole_.counts().num_nodes), nodes_);
            require(ex_put_var(id_, number, EX_NODAL, static_cast<int>(i) + 1, 1, std::ssize(values),
                               values.data()));
        }
        writeElementValues(step);
    }

    void writeElementValues(std::size_t step) {
        const auto count = whole_.variableNames(EX_ELEM_BLOCK).size();
        for (std::size_t i = 0; i < table_.size(); ++i) {
            if (table_[i] == 0) {
                continue;
            }
            const auto& block = whole_.blocks()[i / count];
            const auto values =
                chosen(whole_.values(EX_ELEM_BLOCK, i % count, block.id, step, block.elementCount),
                       elements_[i / count]);
            require(ex_put_var(id_, static_cast<int>(step) + 1, EX_ELEM_BLOCK,
                               static_cast<int>(i % count) + 1, block.id, std::ssize(values), values.data()));
        }
    }

    const ExodusFile& whole_;
    const ExodusCut& cut_;
    std::size_t rank_;
    int id_ = -1;
    std::vector<std::vector<std::size_t>> elements_; // of each block, by their places in it
    std::vector<std::size_t> allElements_;
    std::vector<std::size_t> nodes_;
    std::map<std::size_t, std::int64_t> local_; // a node's number in this piece
    std::vector<int> table_;
};

} // namespace

void splitExodus(const std::string& source, const std::string& target, const ExodusCut& cut) {
    const ExodusFile whole(source);
    for (std::size_t rank = 0; rank < cut.pieces; ++rank) {
        Piece(whole, target, cut, rank);
    }
}
