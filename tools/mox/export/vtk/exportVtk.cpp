#include "exportVtk.h"

#include "../../common/OutputFile.h"
#include "../../common/Platform.h"
#include "../../common/Terminal.h"
#include "../../common/followLinks.h"
#include "../../common/utf8Path.h"
#include "ReplaceableFolder.h"
#include "VtuExporter.h"
#include "xmlText.h"

#include <fmt/format.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <set>

namespace MoxTool {

namespace fs = std::filesystem;

namespace {

// A file of a series.
struct SeriesFile {
    std::size_t step;
    double value; // its place on the axis of times
    std::string name;
};

double valueOf(const ExportModel& model, std::size_t step) {
    if (step == ResultField::NoStep) {
        return 0;
    }
    return model.results().steps[step].valueOr(static_cast<double>(step));
}

// A series shows one file for each value, so repeated values can't be used.
void makeDistinct(std::vector<SeriesFile>& series, ConversionSummary& summary) {
    std::set<double> values;
    for (const auto& file : series) {
        values.insert(file.value);
    }
    if (values.size() == series.size()) {
        return;
    }
    summary.addNote("times repeat, so the steps stand at 1, 2, 3 and so on");
    double number = 0;
    for (auto& file : series) {
        file.value = ++number;
    }
}

std::vector<SeriesFile> planSeries(ExportModel& model) {
    auto steps = model.wantedSteps();
    if (steps.empty()) {
        steps.push_back(ResultField::NoStep);
    }
    std::vector<SeriesFile> series;
    series.reserve(steps.size());
    for (const auto step : steps) {
        series.push_back({step, valueOf(model, step), fmt::format("step_{:05}.vtu", series.size() + 1)});
    }
    makeDistinct(series, model.summary());
    return series;
}

std::string seriesText(const std::vector<SeriesFile>& series, const std::string& folder) {
    auto text = vtkFileStart("Collection") + "<Collection>\n";
    for (const auto& file : series) {
        text += fmt::format("<DataSet timestep=\"{}\" group=\"\" part=\"0\" file=\"{}/{}\"/>\n", file.value,
                            xmlText(folder), file.name);
    }
    return text + "</Collection>\n</VTKFile>\n";
}

void writeText(const std::string& text, const fs::path& path, const std::string& shownPath) {
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) {
        throw Failure(shownPath, "can't be written; is the disk full?");
    }
}

// The list names the folder as one beside itself, so it stands beside the list and not beside a link to it.
fs::path folderBeside(const fs::path& series) {
    auto folder = followLinks(series);
    folder.replace_extension();
    folder += "_steps";
    return folder;
}

} // namespace

ConversionSummary exportVtu(const ExportRequest& request) {
    std::optional<OutputFile> output;
    if (!request.isToStandardOutput()) {
        output.emplace(pathOf(request.output), request.overwrite);
    }
    ExportModel model(request);
    const auto& steps = model.wantedSteps();
    if (steps.size() > 1) {
        throw Failure(
            request.shownOutput(),
            fmt::format("can't hold the model's {} steps; name a .pvd file, or one step with --step",
                        steps.size()));
    }
    const auto step = steps.empty() ? ResultField::NoStep : steps.front();
    explainErrors(request.input, [&] {
        VtuExporter exporter(model);
        if (output) {
            exporter.write(step, valueOf(model, step), output->temporaryPath(), request.output);
        } else {
            Platform::makeBinary(stdout);
            exporter.write(step, valueOf(model, step), std::cout);
        }
    });
    if (output) {
        output->commit();
    }
    return model.summary();
}

ConversionSummary exportPvd(const ExportRequest& request, Terminal& terminal) {
    OutputFile output(pathOf(request.output), request.overwrite);
    const auto folderPath = folderBeside(pathOf(request.output));
    ReplaceableFolder folder(folderPath, ".vtu", request.overwrite);
    ExportModel model(request);
    const auto series = planSeries(model);
    model.limitMeshes(series.size());
    VtuExporter exporter(model);
    std::size_t written = 0;
    for (const auto& file : series) {
        terminal.progress("exporting steps",
                          static_cast<double>(written++) / static_cast<double>(series.size()));
        explainErrors(request.input, [&] {
            exporter.write(file.step, file.value, folder.temporaryPath() / pathOf(file.name), request.output);
        });
    }
    terminal.clearProgress();
    writeText(seriesText(series, utf8Of(folderPath.filename())), output.temporaryPath(), request.output);
    folder.commit();
    output.commit();
    return model.summary();
}

} // namespace MoxTool
