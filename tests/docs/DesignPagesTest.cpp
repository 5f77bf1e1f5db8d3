// Everything in the code and the tests that docs/design.md and docs/oddities.md name exists.

#include "textOf.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path Root = MOXWRITER_ROOT;

std::vector<fs::path> sourcesBelow(const fs::path& folder) {
    std::vector<fs::path> sources;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string extension = entry.path().extension().string();
        if (extension == ".cpp" || extension == ".h" || extension == ".inl") {
            sources.push_back(entry.path());
        }
    }
    return sources;
}

std::set<std::string> matchesIn(const std::string& text, const std::regex& pattern) {
    std::set<std::string> matches;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
        matches.insert((*match)[1].str() + ((*match).size() > 2 ? "." + (*match)[2].str() : ""));
    }
    return matches;
}

std::set<std::string> testNames() {
    const std::regex definition(R"(\b(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\))");
    std::set<std::string> names;
    for (const fs::path& source : sourcesBelow(Root / "tests")) {
        names.merge(matchesIn(textOf(source), definition));
    }
    return names;
}

TEST(DesignPages, EachTestThatTheOdditiesNameExists) {
    const std::regex named(R"(`([A-Z]\w+)\.([A-Z]\w+)`)");
    const std::set<std::string> names = matchesIn(textOf(Root / "docs/oddities.md"), named);
    const std::set<std::string> existing = testNames();
    EXPECT_GT(names.size(), 50U);
    for (const std::string& name : names) {
        EXPECT_TRUE(existing.contains(name)) << name;
    }
}

TEST(DesignPages, EachSourceThatThePagesNameExists) {
    const std::regex named(R"(`((?:Adt|Base|Data|Exception|Log|Mox2?|Tnf|Type|Util|Variant)/[\w/]+)`)");
    for (const char* const page : {"docs/design.md", "docs/oddities.md"}) {
        const std::set<std::string> names = matchesIn(textOf(Root / page), named);
        EXPECT_GT(names.size(), 10U) << page;
        for (const std::string& name : names) {
            const fs::path stem = Root / "src/Qel" / name;
            const fs::path headerStem = Root / "include/Qel" / name;
            EXPECT_TRUE(fs::exists(stem.string() + ".h") || fs::exists(stem.string() + ".cpp") ||
                        fs::exists(headerStem.string() + ".h") || fs::exists(stem))
                << page << ": " << name;
        }
    }
}

TEST(DesignPages, EachMarkOfWhatNothingCallsHasItsFileInTheOddities) {
    const std::string mark = "// Kept though nothing calls it; see docs/oddities.md.";
    const std::string page = textOf(Root / "docs/oddities.md");
    int marked = 0;
    for (const fs::path& source : sourcesBelow(Root / "src/Qel")) {
        if (textOf(source).find(mark) != std::string::npos) {
            const std::string name =
                fs::relative(source, Root / "src/Qel").replace_extension().generic_string();
            EXPECT_NE(page.find('`' + name), std::string::npos) << name;
            ++marked;
        }
    }
    EXPECT_GT(marked, 10);
}

TEST(DesignPages, LinksLeadToFiles) {
    const std::regex link(R"(\]\(([^)#:]+)(?:#[^)]*)?\))");
    for (const char* const page : {"docs/design.md", "docs/oddities.md", "README.md"}) {
        const fs::path path = Root / page;
        const std::set<std::string> targets = matchesIn(textOf(path), link);
        EXPECT_FALSE(targets.empty()) << page;
        for (const std::string& target : targets) {
            EXPECT_TRUE(fs::exists(path.parent_path() / target)) << page << ": " << target;
        }
    }
}

} // namespace
