#pragma once

#include <exodusII.h>

#include <stdexcept>
#include <string>
#include <vector>

/// Writes small Exodus files for tests. All numbers are written as double.
class SmallExodusFile {
public:
    struct Counts {
        int dimension;
        int nodes;
        int elements;
        int blocks;
    };

    /// @param diskWordSize 8 for a file of doubles, 4 for one of floats.
    SmallExodusFile(const std::string& path, const Counts& counts, int mode = EX_CLOBBER,
                    int diskWordSize = 8) {
        int memoryWordSize = 8;
        id_ = ex_create(path.c_str(), mode, &memoryWordSize, &diskWordSize);
        require(id_ < 0 ? -1 : 0);
        require(
            ex_put_init(id_, "small", counts.dimension, counts.nodes, counts.elements, counts.blocks, 0, 0));
    }
    SmallExodusFile(const SmallExodusFile&) = delete;
    SmallExodusFile& operator=(const SmallExodusFile&) = delete;
    ~SmallExodusFile() { ex_close(id_); }

    int handle() const { return id_; }

    void coordinates(const std::vector<double>& x, const std::vector<double>& y = {},
                     const std::vector<double>& z = {}) {
        const auto data = [](const std::vector<double>& axis) {
            return axis.empty() ? nullptr : axis.data();
        };
        require(ex_put_coord(id_, data(x), data(y), data(z)));
    }

    void block(int blockId, const std::string& type, int elements, int nodesPerElement,
               const std::vector<int>& nodes, int attributes = 0) {
        require(ex_put_block(id_, EX_ELEM_BLOCK, blockId, type.c_str(), elements, nodesPerElement, 0, 0,
                             attributes));
        if (!nodes.empty()) {
            require(ex_put_conn(id_, EX_ELEM_BLOCK, blockId, nodes.data(), nullptr, nullptr));
        }
    }

    void variables(ex_entity_type type, const std::vector<const char*>& names) {
        const auto count = static_cast<int>(names.size());
        require(ex_put_variable_param(id_, type, count));
        for (int i = 0; i < count; ++i) {
            require(ex_put_variable_name(id_, type, i + 1, names[static_cast<std::size_t>(i)]));
        }
    }

    void time(int step, double time) { require(ex_put_time(id_, step, &time)); }

    void values(int step, ex_entity_type type, int variable, int entity, const std::vector<double>& numbers) {
        require(ex_put_var(id_, step, type, variable, entity, static_cast<std::int64_t>(numbers.size()),
                           numbers.data()));
    }

    static void require(int status) {
        if (status != 0) {
            throw std::runtime_error("a small Exodus file can't be written");
        }
    }

private:
    int id_ = -1;
};
