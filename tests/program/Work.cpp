#include "program/Work.h"

#include "Support/EnvironmentGuard.h"
#include "Support/NumberedArrays.h"

#include <Qel/Mox2/Model.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace Program {

namespace fs = std::filesystem;

namespace {

constexpr unsigned int CellsOnASide = 4;
constexpr unsigned int Steps = 4;
const std::string BlockSize = "4000"; // bytes, so that there are several blocks

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A cube of hexahedra.
void addCube(Qel::Mox2::Model& model, const std::string& name, float x) {
    using namespace Qel::Mox2;
    constexpr unsigned int Side = CellsOnASide + 1;
    std::vector<float> places;
    std::vector<unsigned int> corners;
    for (unsigned int i = 0; i < Side * Side * Side; ++i) {
        const unsigned int column = i % Side;
        const unsigned int row = i / Side % Side;
        const unsigned int layer = i / (Side * Side);
        places.insert(places.end(),
                      {x + static_cast<float>(column), static_cast<float>(row), static_cast<float>(layer)});
        if (column < CellsOnASide && row < CellsOnASide && layer < CellsOnASide) {
            const unsigned int above = i + Side * Side;
            corners.insert(corners.end(), {i, i + 1, i + 1 + Side, i + Side, above, above + 1,
                                           above + 1 + Side, above + Side});
        }
    }
    const unsigned int shape = model.addNode(Shape, name);
    const auto nodes = static_cast<std::size_t>(Side * Side * Side);
    const std::size_t elements = corners.size() / 8;
    model.addArrayProperty(Coordinates, Array2d<float>(nodes, 3, places), shape, Step{});
    model.addArrayProperty(Connectivity2, Array1d<unsigned int>(corners), shape, Step{});
    model.addArrayProperty(Polylength2, Array1d<unsigned int>(std::vector<unsigned int>(elements, 8)), shape,
                           Step{});
    for (unsigned int step = 0; step < Steps; ++step) {
        Step named{"Step " + std::to_string(step + 1), {}};
        named.attributes.set("Time", static_cast<float>(step));
        std::vector<float> temperatures;
        for (const unsigned int number : Support::numbersOfArray(step, static_cast<unsigned int>(nodes))) {
            temperatures.push_back(static_cast<float>(number));
        }
        model.addArrayProperty("Temperature", NodeScalar, Array1d<float>(temperatures), shape, named);
    }
    model.moveToParentNode();
    model.moveToParentNode();
}

void saveCubes(const std::string& path, const std::vector<std::string>& names) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, BlockSize);
    Qel::Mox2::Model model;
    model.saveTo(path, {.overwrite = true, .sourceName = "cubes"});
    model.addNode(Qel::Mox2::Group, "cubes");
    float x = 0;
    for (const std::string& name : names) {
        addCube(model, name, x);
        x += CellsOnASide + 1;
    }
    model.close();
}

// As if the process that saved it had died.
void saveUnfinished(const std::string& path, const std::string& sound) {
    constexpr std::size_t HeadIndex = 12;
    std::string content = contentOf(sound);
    content.resize(content.size() * 3 / 4);
    content.replace(HeadIndex, 4, 4, '\0');
    std::ofstream(path, std::ios::binary) << content;
}

void replaceStart(std::string& word, const std::string& start, const std::string& folder) {
    if (word.starts_with(start)) {
        word.replace(0, start.size(), folder);
    }
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string firstPart(const std::string& path) {
    return path.substr(0, path.find('/'));
}

bool isTemporary(const std::string& name) {
    return name.ends_with(".part") || name.ends_with(".part.end");
}

} // namespace

void Work::makeInputs(const std::string& folder) {
    saveCubes(folder + "/model.mox", {"first cube", "second cube"});
    saveCubes(folder + "/other.mox", {"third cube"});
    saveUnfinished(folder + "/unfinished.mox", folder + "/model.mox");
#ifdef MOX_HAS_EXODUS
    if (runMox({"export", folder + "/model.mox", folder + "/model.e"}).exitCode != 0) {
        throw std::runtime_error("the Exodus file can't be made");
    }
#endif
}

std::vector<Work> Work::writing(const std::string& inputs) {
    std::vector<Work> works = {
        {{"export", "IN/model.mox", "OUT/model.pvd"}, inputs},
        {{"export", "-s", "last", "IN/model.mox", "OUT/last.vtu"}, inputs},
        {{"extract", "IN/model.mox", "--all", "OUT/numbers"}, inputs},
        {{"extract", "IN/model.mox", "-n", "/cubes/first cube", "-d", "Coordinates", "-o", "OUT/places.npy"},
         inputs},
        {{"salvage", "IN/unfinished.mox", "OUT/blocks"}, inputs},
        {{"join", "OUT/joined.mox", "IN/model.mox", "IN/other.mox"}, inputs},
        {{"split", "IN/model.mox", "OUT/parts"}, inputs},
    };
    const Work view({"view", "IN/model.mox", "-o", "OUT/page.html", "--no-open"}, inputs);
    if (view.soundEnd().exitCode == 0) { // else mox is built without the page
        works.push_back(view);
    }
    return works;
}

std::vector<Work> Work::converting([[maybe_unused]] const std::string& inputs) {
#ifdef MOX_HAS_EXODUS
    return {
        {{"export", "IN/model.mox", "OUT/model.e"}, inputs},
        {{"import", "IN/model.e", "OUT/imported.mox"}, inputs},
    };
#else
    return {};
#endif
}

std::vector<Work> Work::reading(const std::string& inputs) {
    return {
        {{"info", "IN/model.mox"}, inputs},
        {{"tree", "IN/model.mox"}, inputs},
        {{"check", "IN/model.mox"}, inputs},
        {{"dump", "--numbers", "IN/model.mox"}, inputs},
        {{"diff", "IN/model.mox", "IN/other.mox"}, inputs},
    };
}

Work::Work(std::vector<std::string> arguments, const std::string& inputs)
    : arguments_(std::move(arguments)), inputs_(inputs) {
    soundEnd_ = run({});
    soundFiles_ = written();
}

std::string Work::name() const {
    std::string line = "mox";
    for (const std::string& argument : arguments_) {
        line += " " + argument;
    }
    return line;
}

End Work::run(const Circumstances& circumstances) {
    outputs_ = std::make_shared<Support::TemporaryFolder>();
    std::vector<std::string> words = arguments_;
    for (std::string& word : words) {
        replaceStart(word, "IN/", inputs_ + "/");
        replaceStart(word, "OUT/", outputs_->path(""));
    }
    End end = runMox(words, circumstances);
    replaceAll(end.output, outputs_->path(""), "OUT/");
    replaceAll(end.messages, outputs_->path(""), "OUT/");
    return end;
}

Work::Files Work::written() const {
    Files files;
    const fs::path folder = outputs_->path("");
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string path = fs::relative(entry.path(), folder).generic_string();
        files[path] = entry.is_directory() ? "" : contentOf(entry.path());
    }
    return files;
}

// A file of a model has the date on which it was saved, and so differs from the one before.
bool Work::isComplete(const std::string& path, const std::string& content, const std::string& sound) {
    if (!path.ends_with(".mox")) {
        return content == sound;
    }
    const Support::TemporaryFolder folder;
    return runMox({"check", "--quiet", folder.write("written.mox", content)}).exitCode == 0;
}

std::vector<std::string> Work::addedMessages(const End& end) const {
    std::vector<std::string> added = linesOf(end.messages);
    for (const std::string& line : linesOf(soundEnd_.messages)) {
        std::erase(added, line);
    }
    return added;
}

std::string Work::missing(const End& end) const {
    if (end.output != soundEnd_.output) {
        return "the output is another";
    }
    const Files files = written();
    for (const auto& [path, sound] : soundFiles_) {
        if (!files.contains(path)) {
            return path + " is missing";
        }
    }
    return halfWritten(false);
}

std::string Work::halfWritten(bool mayLeaveTemporaryFiles) const {
    const Files files = written();
    std::set<std::string> begun;
    for (const auto& [path, content] : files) {
        const std::string place = firstPart(path);
        if (mayLeaveTemporaryFiles && isTemporary(place)) {
            continue;
        }
        const auto sound = soundFiles_.find(path);
        if (sound == soundFiles_.end()) {
            return path + " is left";
        }
        if (!isComplete(path, content, sound->second)) {
            return path + " is not complete";
        }
        begun.insert(place);
    }
    for (const auto& [path, sound] : soundFiles_) {
        if (begun.contains(firstPart(path)) && !files.contains(path)) {
            return path + " is missing";
        }
    }
    return "";
}

std::size_t Work::largestFile() const {
    std::size_t largest = 0;
    for (const auto& [path, content] : soundFiles_) {
        largest = std::max(largest, content.size());
    }
    return largest;
}

} // namespace Program
