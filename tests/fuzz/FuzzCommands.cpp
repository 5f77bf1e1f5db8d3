// Runs commands of mox, in this process, on files made of arbitrary bytes. Any outcome but one of the exit codes or a
// failure with a text is a bug.
//
//     mox_fuzz -max_len=2048 CORPUS_FOLDER
//
// The first byte of an input chooses the command, or if its highest bit is set says that what follows from the fourth
// byte on is a file as it is; else that is an input of moxreader_records_fuzz, of which a file is made. The next two
// bytes say at which place the second file of diff differs. With MOX_FUZZ_COMMAND in the environment, all inputs go to
// the command of that number. Files are in a folder of /dev/shm.

#include "Container.h"
#include "TimeLimit.h"
#include "mutateStreams.h"

#include "check/CheckCommand.h"
#include "common/CommandLine.h"
#include "common/Terminal.h"
#include "diff/DiffCommand.h"
#include "dump/DumpCommand.h"
#include "export/ExportCommand.h"
#include "extract/ExtractCommand.h"
#include "info/InfoCommand.h"
#include "salvage/SalvageCommand.h"
#include "stat/StatCommand.h"
#include "tree/TreeCommand.h"

#include <CLI/CLI.hpp>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

using namespace MoxFuzz;

constexpr std::size_t HeadSize = 3;
constexpr std::uint8_t WholeFile = 0x80;

/// A folder in memory, with the file to read, a second one for diff, and what the commands write.
class Folder {
public:
    Folder() : path_("/dev/shm/mox_fuzz." + std::to_string(getpid())) {
        std::filesystem::create_directories(path_);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path_); }

    std::string file(const std::string& name) const { return path_ + "/" + name; }

    void write(const std::string& name, ByteSpan bytes) const {
        std::ofstream(file(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    void clearOutput() const { std::filesystem::remove_all(file("out")); }

private:
    std::string path_;
};

struct Call {
    std::unique_ptr<MoxTool::Command> (*make)();
    std::vector<std::string> options;
    enum { NoOutput, SecondFile, Output } second = NoOutput;
};

template <class CommandT>
std::unique_ptr<MoxTool::Command> make() {
    return std::make_unique<CommandT>();
}

const std::vector<Call>& calls() {
    using namespace MoxTool;
    static const std::vector<Call> list = {
        {make<CheckCommand>, {}},
        {make<CheckCommand>, {"--json"}},
        {make<DumpCommand>, {"--numbers"}},
        {make<DumpCommand>, {"--storage"}},
        {make<DiffCommand>, {}, Call::SecondFile},
        {make<DiffCommand>, {"--json", "--links"}, Call::SecondFile},
        {make<SalvageCommand>, {"--force"}, Call::Output},
        {make<ExportCommand>, {"--format", "vtu"}, Call::Output},
        {make<ExportCommand>, {"--format", "pvd"}, Call::Output},
        {make<TreeCommand>, {"--attributes"}},
        {make<TreeCommand>, {"--steps"}},
        {make<InfoCommand>, {}},
        {make<StatCommand>, {}},
        {make<StatCommand>, {"--values"}},
        {make<ExtractCommand>, {"--all"}, Call::Output},
    };
    return list;
}

std::size_t callOf(std::uint8_t head) {
    static const char* const chosen = std::getenv("MOX_FUZZ_COMMAND");
    const auto number = chosen != nullptr ? std::strtoul(chosen, nullptr, 10) : head & ~WholeFile & 0xFFu;
    return number % calls().size();
}

void run(const Call& call, const Folder& folder) {
    static std::FILE* const dropped = std::fopen("/dev/null", "w");
    const auto command = call.make();
    CLI::App app;
    MoxTool::CommandLine line(app);
    command->addOptions(line);
    MoxTool::Terminal terminal(dropped, false, false);
    std::vector<std::string> words = {folder.file("in.mox")};
    words.insert(words.end(), call.options.begin(), call.options.end());
    if (call.second != Call::NoOutput) {
        words.push_back(folder.file(call.second == Call::Output ? "out" : "second.mox"));
    }
    std::reverse(words.begin(), words.end()); // As this parser takes them.
    app.parse(words);
    try {
        command->run(terminal);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& failure) {
        if (std::string(failure.what()).empty()) {
            std::abort();
        }
    }
    folder.clearOutput();
}

/// The same file but for one byte, so that there is something to compare.
Bytes changed(Bytes file, ByteSpan head) {
    if (!file.empty()) {
        file[(head[1] + std::size_t{head[2]} * 256) % file.size()] ^= static_cast<std::uint8_t>(head[2] | 1);
    }
    return file;
}

Streams changed(Streams streams, ByteSpan head) {
    auto& content = streams.contents[head[1] % Streams::Count];
    content = changed(std::move(content), head);
    return streams;
}

void writeFiles(ByteSpan input, const Folder& folder) {
    const auto head = input.first(HeadSize);
    const auto rest = input.subspan(HeadSize);
    if ((head[0] & WholeFile) != 0) {
        folder.write("in.mox", rest);
        folder.write("second.mox", changed(Bytes(rest.begin(), rest.end()), head));
        return;
    }
    std::minstd_rand chance(head[2]);
    const auto streams = Streams::fromInput(rest);
    folder.write("in.mox", pack(streams, chance));
    folder.write("second.mox", pack(changed(streams, head), chance));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    return std::freopen("/dev/null", "w", stdout) == nullptr ? 1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const TimeLimit limit;
    static const Folder folder;
    if (size < HeadSize) {
        return 0;
    }
    writeFiles({data, size}, folder);
    run(calls()[callOf(data[0])], folder);
    return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    std::minstd_rand chance(seed);
    const bool isWhole = size >= HeadSize && (data[0] & WholeFile) != 0;
    if (isWhole || size < HeadSize || maxSize < HeadSize + Streams::HeadSize || chance() % 16 == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    for (std::size_t i = 0; i < HeadSize; ++i) {
        data[i] = chance() % 4 == 0 ? static_cast<std::uint8_t>(chance() % WholeFile) : data[i];
    }
    auto streams = Streams::fromInput({data + HeadSize, size - HeadSize});
    mutateStreams(streams, maxSize - HeadSize - Streams::HeadSize, chance);
    const auto input = streams.toInput();
    std::copy(input.begin(), input.end(), data + HeadSize);
    return HeadSize + input.size();
}
