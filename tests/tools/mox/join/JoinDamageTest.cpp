// Files that are not whole, and joins that don't come to their end.

#include "../parts/PartFiles.h"
#include "Support/NumberedArrays.h"
#include "Support/SampleModel.h"
#include "common/Failure.h"
#include "common/Platform.h"
#include "common/TemporaryPath.h"
#include "parts/FileJoin.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>

#if defined(__unix__)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

namespace {

using namespace Qel::Mox2;
using Support::numbersOfArray;
using Support::saveNumberedArrays;

class JoinDamage : public PartFiles {
protected:
    void expectRefused(const Arguments& arguments, const std::string& message) const {
        const auto before = folder.files();
        const auto run = join(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.messages.starts_with("mox join: " + message)) << run.messages;
        EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1) << run.messages;
        EXPECT_EQ(folder.files(), before);
    }
    /// Flips a bit in the middle of a block of numbers.
    void damageBlock(const std::string& name, std::size_t number) const {
        auto bytes = folder.read(name);
        const auto block = ReadFile(path(name)).heavyBlocks().at(number);
        bytes[block.position + block.length / 2] ^= 0x10;
        folder.write(name, bytes);
    }
    /// Writes a file made by hand, whose tree has all types of nodes.
    std::string writeSample(const std::string& name, const SampleModel& sample) const {
        const auto bytes = sample.file().bytes();
        return folder.write(name, {bytes.begin(), bytes.end()});
    }

    static void replaceIn(std::vector<std::uint8_t>& bytes, const std::vector<std::uint8_t>& from,
                          const std::vector<std::uint8_t>& to) {
        const auto place = std::search(bytes.begin(), bytes.end(), from.begin(), from.end());
        ASSERT_NE(place, bytes.end());
        std::copy(to.begin(), to.end(), place);
    }

    // The connectivity of the sample names nodes that it does not have.
    static void expectNothingButNonsense(const std::string& file) {
        const auto run = runMox({"check", file});
        EXPECT_NE(run.output.find("0 errors, 1 warning"), std::string::npos) << run.output;
        EXPECT_NE(run.output.find("warning 703"), std::string::npos) << run.output;
    }

    /// Changes the second of two files when the trees of both have been read.
    void expectRefusedIfChanged(const std::function<void()>& change) const {
        saveShape("a.mox", "one", {"T"}, 0);
        saveShape("b.mox", "two", {"T"}, 0);
        const MoxTool::JoinRequest request = {.inputs = {a, b}, .output = out};
        std::string reason;
        try {
            MoxTool::joinFiles(request, [&](const std::string& work, double fraction) {
                if (work == "copying the numbers" && fraction == 0) {
                    change();
                }
            });
        } catch (const MoxTool::Failure& failure) {
            reason = failure.what();
        }
        EXPECT_EQ(reason, b + ": has changed while it was joined");
        EXPECT_FALSE(std::filesystem::exists(out));
        EXPECT_EQ(folder.files().size(), 2u);
    }

#if defined(__unix__)
    /// Ends a join by a signal when one of two files has been copied.
    /// @return what has ended the process.
    int signalOf(int signal) const {
        const auto child = fork();
        if (child == 0) {
            MoxTool::Platform::runAtInterruption(MoxTool::TemporaryPath::removeAllForGood);
            const MoxTool::JoinRequest request = {.inputs = {a, b}, .output = out, .overwrite = true};
            MoxTool::joinFiles(request, [signal](const std::string& work, double fraction) {
                if (work == "copying the numbers" && fraction > 0) {
                    kill(getpid(), signal);
                    pause();
                }
            });
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }
#endif

    const std::string a = path("a.mox");
    const std::string b = path("b.mox");
};

} // namespace

TEST_F(JoinDamage, FileThatIsNoneIsRefused) {
    expectRefused({out, path("none.mox")}, path("none.mox") + ": there is no such file");
    expectRefused({out, folder.write("text.mox", "text")},
                  path("text.mox") + ": is no MOX file but a text file");
    expectRefused({out, folder.write("empty.mox", "")},
                  path("empty.mox") + ": is not whole: error 104 index table inside");
}

TEST_F(JoinDamage, FileThatIsCutIsRefusedWithTheReasonOfTheCheck) {
    saveShape("a.mox", "one", {"T"}, 0);
    const auto whole = folder.read("a.mox");
    folder.write("b.mox", whole.substr(0, whole.size() - 1));
    expectRefused({out, a, b}, b + ": is not whole: error 106 file size");
}

TEST_F(JoinDamage, FileThatWasNeverClosedIsRefused) {
    folder.write("b.mox", std::string("\x89TNF\r\n\x1A\n"
                                      "1.3\0",
                                      12) +
                              std::string(2788, '\0'));
    expectRefused({out, b}, b + ": is not whole: error 103 head index");
}

TEST_F(JoinDamage, FileWithBlocksThatLieTooLowIsRefusedWithTheReasonOfTheCheck) {
    saveNumberedArrays(a, "16000", 40, [](unsigned) { return 4000U; });
    expectRefused({out, a}, a + ": is not whole: error 114 block places");
}

TEST_F(JoinDamage, TreeThatDoesNotFitIsRefused) {
    SampleModel sample;
    auto records = sampleRecords();
    records[1].next = 3;
    sample.tree = treeStream(records);
    expectRefused({out, writeSample("b.mox", sample)}, b + ": is not whole: error 40");
}

TEST_F(JoinDamage, DamagedNumbersAreFoundByTheCheckAlone) {
    saveShape("a.mox", "one", {"T"}, 0);
    damageBlock("a.mox", 0);
    expectRefused({"--check", out, a}, a + ": is not whole: error 20");
    EXPECT_EQ(join({out, a}).exitCode, 0);
    EXPECT_EQ(storedNumbers(out), storedNumbers(a));
}

// --- Files that change meanwhile

TEST_F(JoinDamage, FileThatGrowsBetweenItsTreeAndItsNumbersIsRefused) {
    expectRefusedIfChanged([&] { folder.write("b.mox", folder.read("b.mox") + "x"); });
}

TEST_F(JoinDamage, FileThatIsWrittenAnewBetweenItsTreeAndItsNumbersIsRefused) {
    expectRefusedIfChanged([&] {
        saveShape("b.mox", "two", {"T"}, 0);
        std::filesystem::last_write_time(b, std::filesystem::file_time_type::clock::now() +
                                                std::chrono::hours(1));
    });
}

TEST_F(JoinDamage, FileThatIsGoneBetweenItsTreeAndItsNumbersIsRefused) {
    expectRefusedIfChanged([&] { std::filesystem::rename(b, path("c.mox")); });
}

// --- Node sets

TEST_F(JoinDamage, NodeSetsAndPlainNodesOfAHandMadeFileAreJoined) {
    SampleModel sample;
    writeSample("a.mox", sample);
    Model model;
    model.saveTo(b, {true, "", "", ""});
    model.addNode(Group, "Root");
    const auto shape = model.addNode(Shape, "Other");
    model.addArrayProperty("T", NodeScalar, Array1d<float>{1, 2, 3}, shape, Step{});
    model.close();
    EXPECT_EQ(join({"--prefer-first", out, b, a}).exitCode, 0);
    expectNothingButNonsense(out);
    ReadFile joined(out);
    const auto& sets = joined.at({"Sets"});
    ASSERT_NE(sets.nodeSets(), nullptr);
    const auto read = joined.heavy.readNodeSets(*sets.nodeSets());
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0].name, "ab");
    EXPECT_EQ(read[1].members, (std::vector<std::pair<std::uint32_t, std::uint32_t>>{{2, 5}, {3, 6}}));
    EXPECT_EQ(joined.at({"Plain"}).typeName, "Node");
    EXPECT_EQ(joined.floats({"Other"}, "T"), (std::vector<float>{1, 2, 3}));
    EXPECT_EQ(storedNumbers(out), storedNumbers(b) + storedNumbers(a));
}

TEST_F(JoinDamage, NodeSetsOfOnePathClash) {
    const SampleModel sample;
    writeSample("a.mox", sample);
    writeSample("b.mox", sample);
    const auto run = join({"--suffix", "{n}", out, a, b});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says("/Root/Sets has other node sets in " + a)) << run.messages;
}

// --- --force

TEST_F(JoinDamage, ForceLeavesOutTheDatasetsOfADamagedBlockAndSaysWhich) {
    saveNumberedArrays(a, "4000", 6, [](unsigned) { return 500U; });
    saveNumberedArrays(b, "4000", 2, [](unsigned) { return 500U; });
    ASSERT_EQ(ReadFile(a).heavyBlocks().size(), 3u);
    damageBlock("a.mox", 1);
    const auto run = join({"--force", "--suffix", "{n}", out, a, b});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.says("mox join: left out: " + a +
                         ": /root/part: T2: its numbers can't be read\n"
                         "mox join: left out: " +
                         a + ": /root/part: T3: its numbers can't be read\n"))
        << run.messages;
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.keys({"part1"}), (Arguments{"T0", "T1", "T4", "T5"}));
    EXPECT_EQ(joined.heavy.readUnsigned(joined.dataset({"part1"}, "T5")), numbersOfArray(5, 500));
    EXPECT_EQ(joined.heavy.readUnsigned(joined.dataset({"part2"}, "T1")), numbersOfArray(1, 500));
    EXPECT_EQ(joined.heavyBlocks().size(), 3u);
}

TEST_F(JoinDamage, ForceMakesAWholeFileOfOneWhoseBlocksLieTooLow) {
    saveNumberedArrays(a, "16000", 40, [](unsigned) { return 4000U; });
    ASSERT_TRUE(ReadFile(a).file.index().isDisplaced());
    const auto run = join({"--force", "--verbose", out, a});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    expectWhole(out);
    ReadFile joined(out);
    const auto& kept = joined.at({"part"}).geometry()->datasets;
    EXPECT_GT(kept.size(), 10u);
    EXPECT_LT(kept.size(), 40u);
    EXPECT_EQ(static_cast<std::size_t>(std::count(run.messages.begin(), run.messages.end(), '\n')),
              40 - kept.size() + 1);
    for (const auto& dataset : kept) {
        const auto number = static_cast<unsigned>(std::stoul(dataset.name.substr(1)));
        EXPECT_EQ(joined.heavy.readUnsigned(dataset), numbersOfArray(number, 4000)) << dataset.name;
    }
}

TEST_F(JoinDamage, ForceLeavesOutNodeSetsThatCantBeRead) {
    SampleModel sample;
    sample.heavy.resize(sample.heavy.size() - 1);
    writeSample("a.mox", sample);
    const auto run = join({"--force", out, a});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says("/Root/Sets: its sets can't be read")) << run.messages;
    expectNothingButNonsense(out);
    EXPECT_EQ(ReadFile(out).childNames({}), (Arguments{"Part", "Plain"}));
}

TEST_F(JoinDamage, ForceLeavesOutALinkThatLeadsNowhere) {
    SampleModel sample;
    const auto key = std::string("Stress\x1e") + "Step2";
    replaceIn(sample.light, linkEntry(key, 0x01000010, 3, 2), linkEntry(key, 0x01000010, 3, 9));
    writeSample("a.mox", sample);
    EXPECT_EQ(join({out, a}).exitCode, 1);
    const auto run = join({"--force", out, a});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says("/Root/Part: Stress, step \"Step2\": its link leads nowhere")) << run.messages;
    expectNothingButNonsense(out);
}

TEST_F(JoinDamage, ForceLeavesOutTheSecondDatasetOfOneNameAndStep) {
    SampleModel sample;
    const auto key = [](const std::string& step) { return "Stress\x1e" + step; };
    replaceIn(sample.light, linkEntry(key("Step2"), 0x01000010, 3, 2),
              linkEntry(key("Step1"), 0x01000010, 3, 2));
    writeSample("a.mox", sample);
    EXPECT_EQ(join({out, a}).exitCode, 1);
    const auto run = join({"--force", out, a});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says("/Root/Part: Stress, step \"Step1\": another has its name and step"))
        << run.messages;
    expectNothingButNonsense(out);
}

TEST_F(JoinDamage, ForceLeavesAWholeFileAsItIs) {
    saveShape("a.mox", "one", {"T", "U"}, 0);
    EXPECT_EQ(join({"--force", out, a}).messages,
              "mox join: " + out + ": 3 nodes of 1 file, with 2 datasets and 16 B of numbers\n");
    expectSame(a, out);
    EXPECT_EQ(storedNumbers(out), storedNumbers(a));
}

TEST_F(JoinDamage, ForceDoesNotHelpIfTheTreeIsLost) {
    saveShape("a.mox", "one", {"T"}, 0);
    auto bytes = folder.read("a.mox");
    const MoxReader::File file(a);
    for (const auto& block : file.blocks()) {
        if (block.name == "Mox Tree") {
            bytes[block.position + 20] ^= 0x10;
        }
    }
    folder.write("b.mox", bytes);
    expectRefused({"--force", out, b}, b + ": ");
}

TEST_F(JoinDamage, ForceAndCheckExcludeEachOther) {
    EXPECT_EQ(join({"--force", "--check", out, a}).exitCode, 2);
}

#if defined(__unix__)

// --- Joins that don't come to their end

namespace {

/// For a child process: from now on no file grows beyond this size.
void leaveRoomInFiles(rlim_t size) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {size, size};
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// The exit code of the work in a process of its own.
int inChild(const std::function<int()>& work) {
    const auto child = fork();
    if (child == 0) {
        _exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

// A limit to the size of files stands for a full disk: in the head index, in the numbers, and in the tree.
TEST_F(JoinDamage, FullDiskIsAnErrorAndLeavesNothing) {
    saveNumberedArrays(a, "4000", 6, [](unsigned) { return 500U; });
    const auto size = std::filesystem::file_size(a);
    for (const auto room : {std::uintmax_t{2500}, std::uintmax_t{9000}, size - 300}) {
        const auto code = inChild([&] {
            leaveRoomInFiles(static_cast<rlim_t>(room));
            const auto run = join({out, a});
            return run.messages == "mox join: " + out + ": can't be written: File too large\n" ? run.exitCode
                                                                                               : 9;
        });
        EXPECT_EQ(code, 1) << room;
        EXPECT_EQ(folder.files(), (Arguments{"a.mox"}));
    }
}

TEST_F(JoinDamage, InterruptionInTheMiddleLeavesNothing) {
    saveShape("a.mox", "one", {"T"}, 0);
    saveShape("b.mox", "two", {"T"}, 0);
    folder.write("out.mox", "precious");
    EXPECT_EQ(signalOf(SIGTERM), SIGTERM);
    EXPECT_EQ(folder.files(), (Arguments{"a.mox", "b.mox", "out.mox"}));
    EXPECT_EQ(folder.read("out.mox"), "precious");
}

TEST_F(JoinDamage, KilledJoinLeavesNothingUnderTheFinalName) {
    saveShape("a.mox", "one", {"T"}, 0);
    saveShape("b.mox", "two", {"T"}, 0);
    EXPECT_EQ(signalOf(SIGKILL), SIGKILL);
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(JoinDamage, ThousandFilesAreJoinedWithFewOpenFiles) {
    Arguments arguments = {"--suffix", " {n}", out};
    saveShape("a.mox", "one", {"T"}, 0);
    for (int i = 0; i < 1000; ++i) {
        arguments.push_back(a);
    }
    const auto code = inChild([&] {
        const rlimit few = {20, 20};
        setrlimit(RLIMIT_NOFILE, &few);
        return join(arguments).exitCode;
    });
    EXPECT_EQ(code, 0);
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.model.nodes().size(), 2001u);
    EXPECT_EQ(joined.heavyBlocks().size(), 1000u);
    EXPECT_EQ(joined.floats({"one 1000"}, "T"), (std::vector<float>{0, 1}));
}

#endif
