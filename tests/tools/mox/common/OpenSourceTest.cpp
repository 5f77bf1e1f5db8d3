#include "common/openSource.h"

#include "MoxRun.h"
#include "SampleModel.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#ifndef _WIN32

#include <fstream>
#include <sys/stat.h>
#include <thread>

namespace {

// As a shell's <(cat FILE).
class Pipe {
public:
    Pipe(const std::string& path, const std::string& bytes) : path_(path) {
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
        writer_ = std::thread([path, bytes] { std::ofstream(path, std::ios::binary) << bytes; });
    }
    ~Pipe() { writer_.join(); }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
    std::thread writer_;
};

std::string without(std::string text, const std::string& path) {
    for (auto place = text.find(path); place != std::string::npos; place = text.find(path)) {
        text.erase(place, path.size());
    }
    return text;
}

} // namespace

TEST(OpenSource, PipeIsReadAsStdinIs) {
    Support::TemporaryFolder folder;
    const auto model = folder.path("sample.mox");
    saveSampleModel(model);
    for (const std::string command : {"tree", "info", "stat", "check"}) {
        const Pipe pipe(folder.path(command), folder.read("sample.mox"));
        const auto piped = runMox({command, pipe.path()});
        const auto direct = runMox({command, model});
        EXPECT_EQ(piped.exitCode, direct.exitCode) << piped.messages;
        EXPECT_EQ(piped.messages, "");
        EXPECT_EQ(without(piped.output, pipe.path()), without(direct.output, model));
    }
}

TEST(OpenSource, TwoPipesAreCompared) {
    Support::TemporaryFolder folder;
    saveSampleModel(folder.path("sample.mox"));
    const Pipe a(folder.path("a"), folder.read("sample.mox"));
    const Pipe b(folder.path("b"), folder.read("sample.mox"));
    EXPECT_EQ(runMox({"diff", a.path(), b.path()}).exitCode, 0);
}

#endif
