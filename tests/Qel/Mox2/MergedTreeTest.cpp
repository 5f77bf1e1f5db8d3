#include "Qel/Mox2/OpenDatabase.h"

#include <Qel/Exception/Exception.h>
#include <Qel/Mox2/Adder/Components.h>
#include <Qel/Mox2/Adder/Node.h>
#include <Qel/Mox2/Extractor/NodeId.h>
#include <Qel/Mox2/Modifier/CurrentNodeId.h>
#include <Qel/Mox2/Modifier/UpMover.h>

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Ids = std::vector<unsigned int>;
using Paths = std::vector<std::string>;

// What a call gave back, or the class of its exception.
struct Outcome {
    Ids ids;
    std::string failure;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    for (const unsigned int id : outcome.ids) {
        stream << id << ' ';
    }
    return stream << outcome.failure;
}

// A tree that is merged and searched by walking along all of its nodes, as plainly as it can be said.
class PlainTree {
public:
    struct Node {
        unsigned int parent;
        std::string name;
        std::string type;

        bool operator==(const Node&) const = default;
    };

    PlainTree() : nodes_{{0, "root", "Group"}} {}

    const std::vector<Node>& nodes() const { return nodes_; }
    unsigned int current() const { return current_; }
    void setCurrent(unsigned int id) { current_ = id; }

    void moveUp() {
        if (const unsigned int parent = nodes_[current_ - 1].parent; parent != 0) {
            current_ = parent;
        }
    }

    unsigned int addGroup(const std::string& name) { return add(name, "Group"); }
    unsigned int addShape(const std::string& name) {
        add(name, "Shape");
        return add(name, "Geometry");
    }

    Outcome merge(const Paths& paths, const std::string& separator) {
        Outcome outcome;
        for (const std::string& path : paths) {
            if (path.empty()) {
                outcome.ids.push_back(0);
                continue;
            }
            if (path.substr(0, separator.size()) != separator) {
                return {{}, "Relative paths not supported"};
            }
            Paths names = split(path, separator);
            if (names.empty()) {
                outcome.ids.push_back(0);
                continue;
            }
            if (names[0] != "root") {
                return {{}, "Not yet implemented"};
            }
            current_ = 1;
            if (names.size() > 1) {
                names.erase(names.begin());
            }
            outcome.ids.push_back(mergeNames(names, path.ends_with(separator)));
        }
        return outcome;
    }

    Outcome find(const std::string& path, const std::string& separator) {
        if (path.empty()) {
            return {{0}, ""};
        }
        current_ = 1;
        if (path.substr(0, separator.size() + 4) != separator + "root") {
            return {{0}, ""};
        }
        unsigned int id = 1;
        std::size_t place = separator.size() + 4;
        while (place != std::string::npos) {
            place += separator.size();
            if (place > path.size()) {
                return {{}, "invalid string position"};
            }
            const std::size_t next = path.find(separator, place);
            id = childOf(id, path.substr(place, next - place), "");
            if (id == 0) {
                return {{0}, ""};
            }
            place = next;
        }
        return {{id}, ""};
    }

private:
    static Paths split(const std::string& path, const std::string& separator) {
        const std::string separators = separator.c_str();
        Paths names = {""};
        for (const char character : path) {
            if (separators.find(character) == std::string::npos) {
                names.back() += character;
            } else if (!names.back().empty()) {
                names.push_back("");
            }
        }
        if (names.back().empty()) {
            names.pop_back();
        }
        return names;
    }

    unsigned int mergeNames(const Paths& names, bool endsInGroup) {
        for (std::size_t i = 0; i + 1 < names.size(); ++i) {
            moveToOrAdd(names[i], "Group");
        }
        if (endsInGroup) {
            moveToOrAdd(names.back(), "Group");
        } else {
            moveToOrAdd(names.back(), "Shape");
            moveToOrAdd(names.back(), "Geometry");
        }
        return current_;
    }

    void moveToOrAdd(const std::string& name, const std::string& type) {
        const unsigned int found = childOf(current_, name, type);
        current_ = found != 0 ? found : add(name, type);
    }

    // The type "" stands for any.
    unsigned int childOf(unsigned int parent, const std::string& name, const std::string& type) const {
        for (std::size_t i = 0; i < nodes_.size(); ++i) {
            const Node& node = nodes_[i];
            if (node.parent == parent && node.name == name && (type.empty() || node.type == type)) {
                return static_cast<unsigned int>(i + 1);
            }
        }
        return 0;
    }

    unsigned int add(const std::string& name, const std::string& type) {
        nodes_.push_back({current_, name, type});
        current_ = static_cast<unsigned int>(nodes_.size());
        return current_;
    }

    std::vector<Node> nodes_;
    unsigned int current_ = 1;
};

class MergedTree : public Support::OpenDatabase {
protected:
    MergedTree() { tree().SetRootGroup("root", {}); }

    Outcome merge(const Paths& paths, const std::string& separator) {
        return outcomeOf([&] {
            Qel::Mox2::Adder::Components<Paths, Qel::Mox2::IdArray> adder(paths, separator);
            adder.update(database);
            return Ids(adder.result().begin(), adder.result().end());
        });
    }
    Outcome find(const std::string& path, const std::string& separator) {
        return outcomeOf(
            [&] { return Ids{Qel::Mox2::Extractor::NodeId(path, separator).extract(database)}; });
    }
    Outcome add(Qel::Mox2::NodeType type, const std::string& name) {
        return outcomeOf([&] {
            const Qel::Mox2::AttributeMap none;
            Qel::Mox2::Adder::Node adder(type, name, none);
            adder.update(database);
            return Ids{adder.result()};
        });
    }

    std::vector<PlainTree::Node> nodes() {
        std::vector<PlainTree::Node> all;
        for (const auto& node : tree().GetNodes()) {
            all.push_back({node.parent, node.data->GetName(), node.data->GetTypeName()});
        }
        return all;
    }

private:
    template <typename Call>
    static Outcome outcomeOf(Call call) {
        try {
            return {call(), ""};
        } catch (const std::exception& failure) {
            return {{}, failure.what()};
        }
    }
};

// Random calls, in sequences that begin with a new tree.
class RandomCalls {
public:
    explicit RandomCalls(unsigned int seed) : random_(seed) {}

    unsigned int below(std::size_t count) { return static_cast<unsigned int>(random_() % count); }

    std::string name() {
        static const std::vector<std::string> names = {
            "a", "b", "root", "", "a b", "A", "a:b", "a/b", "\x1e", "a name that needs memory of its own"};
        return below(4) == 0 ? "n" + std::to_string(below(30)) : names[below(names.size())];
    }

    std::string separator() {
        static const std::vector<std::string> separators = {
            "/", "/", "/", "::", ":/", "\x1e", "", std::string("/\0", 2)};
        return separators[below(separators.size())];
    }

    std::string path(const std::string& separator) {
        std::string path = below(200) == 0 ? "" : separator;
        path += below(200) == 0 ? name() : "root";
        for (unsigned int depth = below(5); depth > 0; --depth) {
            path += below(12) == 0 ? separator.substr(0, 1) : separator;
            path += name();
        }
        if (below(3) == 0) {
            path += below(6) == 0 ? separator.substr(0, 1) : separator;
        }
        return below(60) == 0 ? std::string() : path;
    }

    // Neighbours often share their beginning, as in a list of the paths of an assembly.
    Paths paths(const std::string& separator) {
        Paths paths;
        for (unsigned int count = below(12); count > 0; --count) {
            if (!paths.empty() && below(2) == 0) {
                const std::string former = paths.back();
                const std::size_t root = (separator + "root" + separator).size();
                paths.push_back(former.substr(0, root + below(former.size() + 1)) + name() + separator +
                                name());
            } else {
                paths.push_back(path(separator));
            }
        }
        return paths;
    }

private:
    std::mt19937 random_;
};

TEST_F(MergedTree, IsThatOfAWalkAlongAllNodesAfterRandomCalls) {
    for (unsigned int seed = 0; seed < 100; ++seed) {
        database.close();
        database.open();
        tree().SetRootGroup("root", {});
        PlainTree plain;
        RandomCalls calls(seed);
        for (int step = 0; step < 60; ++step) {
            const std::string separator = calls.separator();
            const std::string name = calls.name();
            const unsigned int id = 1 + calls.below(plain.nodes().size());
            std::ostringstream place;
            place << "sequence " << seed << ", call " << step;
            SCOPED_TRACE(place.str());
            switch (calls.below(7)) {
            case 0:
                ASSERT_EQ(add(Qel::Mox2::Group, name), (Outcome{{plain.addGroup(name)}, ""}));
                break;
            case 1:
                ASSERT_EQ(add(Qel::Mox2::Shape, name), (Outcome{{plain.addShape(name)}, ""}));
                break;
            case 2:
                Qel::Mox2::Modifier::CurrentNodeId(id).update(database);
                plain.setCurrent(id);
                break;
            case 3:
                Qel::Mox2::Modifier::UpMover().update(database);
                plain.moveUp();
                break;
            case 4: {
                const std::string path = calls.path(separator);
                ASSERT_EQ(find(path, separator), plain.find(path, separator)) << path;
                break;
            }
            default:
                const Paths paths = calls.paths(separator);
                const Outcome expected = plain.merge(paths, separator);
                ASSERT_EQ(merge(paths, separator), expected) << testing::PrintToString(paths);
            }
            ASSERT_EQ(tree().GetCurrentId(), plain.current());
        }
        ASSERT_EQ(nodes(), plain.nodes()) << "sequence " << seed;
    }
}

// --- Paths that share their beginning with the one before them

TEST_F(MergedTree, PathGoesThroughTheGroupsOfTheOneBefore) {
    EXPECT_EQ(merge({"/root/a/b/c", "/root/a/b/d", "/root/a/e", "/root/a/b/f"}, "/").ids, (Ids{5, 7, 9, 11}));
    EXPECT_EQ(tree().GetReqNode(6).parent, 3U);
    EXPECT_EQ(tree().GetReqNode(8).parent, 2U);
    EXPECT_EQ(tree().GetReqNode(10).parent, 3U);
}

TEST_F(MergedTree, GroupOfTheSameNameAndDepthBelowAnotherGroupIsAnother) {
    EXPECT_EQ(merge({"/root/a/x/", "/root/a/x/p/", "/root/b/x/p/", "/root/b/y/", "/root/a/x/p/q/"}, "/").ids,
              (Ids{3, 4, 7, 8, 9}));
    EXPECT_EQ(tree().GetReqNode(6).parent, 5U);
    EXPECT_EQ(tree().GetReqNode(9).parent, 4U);
}

TEST_F(MergedTree, GroupIsPassedThoughTheLastPathEndedInAShapeOfItsName) {
    EXPECT_EQ(merge({"/root/a", "/root/a/b", "/root/a"}, "/").ids, (Ids{3, 6, 3}));
    EXPECT_EQ(tree().GetReqNode(5).parent, 4U);
}

TEST_F(MergedTree, LastNameOfAPathIsAShapeThoughThePathBeforeHasPassedThroughAGroup) {
    EXPECT_EQ(merge({"::root:a:b", "::root:a:", "::root:a::", "::root:a"}, "::").ids, (Ids{4, 6, 2, 6}));
    EXPECT_EQ(tree().GetReqNode(5).parent, 1U);
}

TEST_F(MergedTree, NameThatBeginsLikeThatOfAGroupIsAnother) {
    EXPECT_EQ(merge({"/root/a/b/", "/root/ab/b/", "/root/a/b/c/"}, "/").ids, (Ids{3, 5, 6}));
    EXPECT_EQ(tree().GetReqNode(4).parent, 1U);
    EXPECT_EQ(tree().GetReqNode(6).parent, 3U);
}

TEST_F(MergedTree, PathOfTheRootAloneMakesItsNodeAlsoAfterPathsThroughTheRoot) {
    EXPECT_EQ(merge({"/root/a/", "/root", "/root/", "/root//b/"}, "/").ids, (Ids{2, 4, 5, 6}));
    EXPECT_EQ(tree().GetReqNode(3).parent, 1U);
    EXPECT_EQ(tree().GetReqNode(6).parent, 1U);
}

TEST_F(MergedTree, PathBelowAnotherRootThatBeginsLikeTheOneBeforeIsRefused) {
    EXPECT_EQ(merge({"/root/a/", "/roo/a/"}, "/").failure, "Not yet implemented");
    EXPECT_EQ(merge({"/root/a/", "/roots/a/"}, "/").failure, "Not yet implemented");
    EXPECT_EQ(tree().GetNodes().size(), 2U);
}

TEST_F(MergedTree, PathAfterOneThatWasSkippedGoesThroughTheSameGroups) {
    EXPECT_EQ(merge({"/root/a/b/", "", "/", "/root/a/c/"}, "/").ids, (Ids{3, 0, 0, 4}));
    EXPECT_EQ(tree().GetReqNode(4).parent, 2U);
}

TEST_F(MergedTree, GroupsOfAFormerTreeAreForgotten) {
    merge({"/root/a/b/c/"}, "/");
    database.close();
    database.open();
    EXPECT_EQ(merge({"/root/z/", "/root/a/b/c/"}, "/").ids, (Ids{2, 5}));
}

} // namespace
