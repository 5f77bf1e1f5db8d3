#include "../../exodus/SmallExodusFile.h"
#include "../ExodusContent.h"
#include "../Pipeline.h"

#include <algorithm>
#include <filesystem>

namespace {

using Gathered = std::vector<GatheredContent>;

GatheredContent vectorOf(const std::string& name, const std::string& base) {
    return {true, name, {base + "x", base + "y", base + "z"}};
}

GatheredContent tensorOf(const std::string& base, const std::string& end = "") {
    return {false,
            base + end,
            {base + "_xx" + end, base + "_yy" + end, base + "_zz" + end, base + "_xy" + end,
             base + "_yz" + end, base + "_zx" + end}};
}

Gathered gatheredInUnitTest() {
    Gathered gathered = {vectorOf("Displacement", "disp_"), vectorOf("residual", "residual_"),
                         tensorOf("stress"), tensorOf("unrotated_stress")};
    for (int point = 1; point <= 9; ++point) {
        gathered.push_back(tensorOf("unrotated_stress", "_" + std::to_string(point)));
    }
    return gathered;
}

// How the variables of the available files are combined.
const std::map<std::string, Gathered> GatheredByFile = {
    {"8-block.g",
     {{true, "Displacement", {"disp_X", "disp_Y", "disp_Z"}},
      vectorOf("accel", "accel_"),
      vectorOf("force", "force_"),
      vectorOf("vel", "vel_"),
      {false, "sigma", {"sigma_XX", "sigma_YY", "sigma_ZZ", "sigma_XY", "sigma_YZ", "sigma_ZX"}}}},
    {"exomerge_unit_test.e", gatheredInUnitTest()},
    {"mode_solid_shell_bar.exo",
     {{true, "Displacement", {"DispX", "DispY", "DispZ", "RotX", "RotY", "RotZ"}}}},
    {"mug.e", {}},
    {"seismic_force_test_z_out.e",
     {vectorOf("accel", "accel_"), vectorOf("Displacement", "disp_"), vectorOf("vel", "vel_")}},
    {"test-assembly.exo", {}},
};

// A model takes only the global variables of mode shapes, and only the times of steps without results.
ModelContent readOriginal(const std::string& path) {
    auto content = readExodus(path);
    const auto& globals = content.globalNames;
    if (std::find(globals.begin(), globals.end(), "EigenFrequency") == globals.end()) {
        content.globalNames.clear();
        content.globals.clear();
    }
    if (content.variables.empty()) {
        for (const auto& step : content.steps) {
            content.bareTimes.push_back(step.time);
        }
        content.steps.clear();
    }
    const auto known = GatheredByFile.find(std::filesystem::path(path).filename().string());
    if (known != GatheredByFile.end()) {
        content.gathered = known->second;
    }
    return content;
}

std::vector<PipelineCase> realFiles() {
    return casesOfData({".e", ".g", ".exo", ".ex2"}, readOriginal);
}

// A plane of a triangle, a quadrilateral and a line, each of higher order, in which only one block has a
// variable.
std::string writePlane(const Support::TemporaryFolder& folder) {
    SmallExodusFile file(folder.path("plane.e"), {2, 9, 3, 3});
    file.coordinates({0, 1, 1.1, 0, 0.5, 1.05, 0.55, 0, 0.3}, {0, 0.1, 1, 1, 0, 0.5, 1, 0.5, 0.7});
    file.block(7, "TRI6", 1, 6, {1, 3, 4, 9, 7, 8});
    file.block(30, "quad", 1, 8, {1, 2, 3, 4, 5, 6, 7, 8});
    file.block(2, "BAR", 1, 3, {1, 2, 5});
    file.variables(EX_NODAL, {"disp_x", "disp_y", "heat"});
    file.variables(EX_ELEM_BLOCK, {"flux", "force_x", "force_y"});
    std::vector<int> table = {1, 0, 0, 1, 1, 1, 0, 0, 0};
    SmallExodusFile::require(ex_put_truth_table(file.handle(), EX_ELEM_BLOCK, 3, 3, table.data()));
    for (int step = 1; step <= 2; ++step) {
        file.time(step, 0.1 * step);
        for (int variable = 1; variable <= 3; ++variable) {
            file.values(step, EX_NODAL, variable, 1, Numbers(9, variable + 0.1 * step));
        }
        file.values(step, EX_ELEM_BLOCK, 1, 7, {70.1 * step});
        for (int variable = 1; variable <= 3; ++variable) {
            file.values(step, EX_ELEM_BLOCK, variable, 30, {variable + 0.7 * step});
        }
    }
    return folder.path("plane.e");
}

std::vector<PipelineCase> smallFiles() {
    return {{"plane", writePlane, [](const std::string& path) {
                 auto content = readOriginal(path);
                 content.gathered = {{true, "Displacement", {"disp_x", "disp_y"}},
                                     {false, "force", {"force_x", "force_y"}}};
                 return content;
             }}};
}

} // namespace

INSTANTIATE_TEST_SUITE_P(RealExodus, Pipeline, testing::ValuesIn(realFiles()), nameOfCase);
INSTANTIATE_TEST_SUITE_P(SmallExodus, Pipeline, testing::ValuesIn(smallFiles()), nameOfCase);
