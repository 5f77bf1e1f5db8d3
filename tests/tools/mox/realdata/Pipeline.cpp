#include "Pipeline.h"

#include "expectVtk.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

std::string nameOfFile(const fs::path& path) {
    auto name = path.filename().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
    return name;
}

} // namespace

std::vector<PipelineCase> casesOfData(const std::set<std::string>& extensions,
                                      const std::function<ModelContent(const std::string&)>& read) {
    std::vector<PipelineCase> cases;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(MOXWRITER_DATA_DIR, missing)) {
        const auto path = entry.path();
        if (extensions.contains(path.extension().string())) {
            cases.push_back(
                {nameOfFile(path), [path](const Support::TemporaryFolder&) { return path.string(); }, read});
        }
    }
    std::sort(cases.begin(), cases.end(),
              [](const auto& left, const auto& right) { return left.name < right.name; });
    if (cases.empty()) {
        cases.push_back({"none", [](const Support::TemporaryFolder&) { return ""; }, read});
    }
    return cases;
}

void Pipeline::SetUp() {
    const auto file = GetParam().file(folder);
    if (file.empty()) {
        GTEST_SKIP() << "no files of this format in " << MOXWRITER_DATA_DIR;
    }
    original = GetParam().read(file);
    const auto run = runMox({"import", file, model()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
}

std::string Pipeline::exported(const std::string& extension) const {
    const auto output = folder.path("out" + extension);
    const auto run = runMox({"export", model(), output});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    return output;
}

void Pipeline::compareVtk(const std::string& way) {
    if (!VtkReading::hasPython()) {
        GTEST_SKIP() << "python3 is not installed";
    }
    const auto files = vtkFiles();
    ASSERT_EQ(files.size(), std::max<std::size_t>(1, original.steps.size()));
    const auto meshes = reading.read(way, files);
    if (!meshes) {
        GTEST_SKIP() << "VTK's reader for Python is not installed (on Debian python3-vtk9)";
    }
    ASSERT_EQ(meshes->size(), files.size());
    for (std::size_t step = 0; step < files.size(); ++step) {
        ASSERT_NO_FATAL_FAILURE(expectVtk((*meshes)[step], original, step)) << files[step];
    }
}

std::vector<std::string> Pipeline::vtkFiles() {
    if (original.steps.empty()) {
        return {exported(".vtu")};
    }
    std::vector<std::string> files;
    Numbers times;
    for (const auto& [time, file] : reading.series(exported(".pvd"))) {
        times.push_back(time);
        files.push_back(folder.path(file));
    }
    Numbers expected;
    for (const auto& step : original.steps) {
        expected.push_back(step.time);
    }
    EXPECT_EQ(times, expected);
    return files;
}
