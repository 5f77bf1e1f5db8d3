// The bulk work as Exodus II users save it: nodal variables for each step, shuffled and deflated.

#include "common/Work.h"
#include "common/sampleFields.h"

#include <exodusII.h>

#include <array>
#include <stdexcept>
#include <vector>

namespace Workloads {

namespace {

constexpr int Level = 6;

void check(int result) {
    if (result < 0) {
        throw std::runtime_error("a call of the Exodus library failed");
    }
}

// One vector for each column, since a variable is a component.
std::vector<std::vector<float>> components(std::size_t number) {
    const std::vector<float> field = sampleField(FieldRows, FieldColumns, number);
    std::vector<std::vector<float>> result(FieldColumns);
    for (std::size_t i = 0; i < field.size(); ++i) {
        result[i % FieldColumns].push_back(field[i]);
    }
    return result;
}

void saveBulk(std::uint64_t mebibytes, const std::string& path, Stopwatch& watch) {
    std::vector<std::vector<std::vector<float>>> fields;
    for (std::size_t i = 0; i < FieldCount; ++i) {
        fields.push_back(components(i));
    }

    watch.start("add");
    int wordSize = sizeof(float);
    int fileWordSize = sizeof(float);
    const int file = ex_create(path.c_str(), EX_CLOBBER | EX_NETCDF4, &wordSize, &fileWordSize);
    check(file);
    check(ex_set_option(file, EX_OPT_COMPRESSION_LEVEL, Level));
    check(ex_set_option(file, EX_OPT_COMPRESSION_SHUFFLE, 1));
    check(ex_put_init(file, "bulk", FieldColumns, static_cast<std::int64_t>(FieldRows), 0, 0, 0, 0));
    check(ex_put_variable_param(file, EX_NODAL, FieldColumns));
    std::array<char, 7> x = {"disp_x"};
    std::array<char, 7> y = {"disp_y"};
    std::array<char, 7> z = {"disp_z"};
    std::array<char*, FieldColumns> names = {x.data(), y.data(), z.data()};
    check(ex_put_variable_names(file, EX_NODAL, FieldColumns, names.data()));
    for (std::uint64_t i = 0; i < fieldsIn(mebibytes); ++i) {
        const int step = static_cast<int>(i + 1);
        const float time = 0.1F * static_cast<float>(i);
        check(ex_put_time(file, step, &time));
        for (std::size_t column = 0; column < FieldColumns; ++column) {
            check(ex_put_var(file, step, EX_NODAL, static_cast<int>(column + 1), 1,
                             static_cast<std::int64_t>(FieldRows), fields[i % FieldCount][column].data()));
        }
    }
    watch.start("close");
    check(ex_close(file));
}

} // namespace

const std::vector<Work>& works() {
    static const std::vector<Work> all = {{"bulk", "MiB of fields", saveBulk}};
    return all;
}

} // namespace Workloads
