// The pieces of a decomposed Exodus model become what the import of the whole file gives.

#include "../../exodus/SmallExodusFile.h"
#include "../ImportRun.h"
#include "../ReadBack.h"
#include "Support/TemporaryFolder.h"
#include "splitExodus.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <numeric>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace {

namespace fs = std::filesystem;

constexpr int Columns = 6;
constexpr int Rows = 4;
constexpr int GridNodes = (Columns + 1) * (Rows + 1);
constexpr int Steps = 3;

// Two blocks of quadrilaterals, the lower and the upper half of a sheet. The second element variable is in the upper
// one alone.
class Sheet {
public:
    /// @param table Which of the two blocks has which of the two element variables.
    Sheet(const std::string& path, bool hasMixedIds, const std::vector<int>& table = {1, 0, 1, 1})
        : file_(path, {2, GridNodes, Columns * Rows, 2}), hasMixedIds_(hasMixedIds), table_(table) {
        addNodes();
        addBlocks();
        addIds();
        addVariables();
        for (int step = 1; step <= Steps; ++step) {
            addStep(step);
        }
    }

private:
    void addNodes() {
        std::vector<double> x;
        std::vector<double> y;
        for (int node = 0; node < GridNodes; ++node) {
            x.push_back(node % (Columns + 1));
            y.push_back(node / (Columns + 1));
        }
        file_.coordinates(x, y);
    }

    void addBlocks() {
        std::vector<int> nodes;
        for (int element = 0; element < Columns * Rows; ++element) {
            const int corner = element / Columns * (Columns + 1) + element % Columns + 1;
            nodes.insert(nodes.end(), {corner, corner + 1, corner + Columns + 2, corner + Columns + 1});
        }
        const auto half = nodes.begin() + std::ssize(nodes) / 2;
        file_.block(7, "QUAD4", Columns * Rows / 2, 4, {nodes.begin(), half});
        file_.block(3, "QUAD4", Columns * Rows / 2, 4, {half, nodes.end()});
        SmallExodusFile::require(ex_put_name(file_.handle(), EX_ELEM_BLOCK, 3, "upper"));
    }

    // 31 has no common divisor with either count, so the mixed ids are different.
    void addIds() {
        const auto ids = [&](int count) {
            std::vector<int> result;
            for (int i = 0; i < count; ++i) {
                result.push_back(hasMixedIds_ ? 1000 + i * 31 % count : 10 + 3 * i);
            }
            return result;
        };
        SmallExodusFile::require(ex_put_id_map(file_.handle(), EX_NODE_MAP, ids(GridNodes).data()));
        SmallExodusFile::require(ex_put_id_map(file_.handle(), EX_ELEM_MAP, ids(Columns * Rows).data()));
    }

    void addVariables() {
        file_.variables(EX_NODAL, {"disp_x", "disp_y", "heat"});
        file_.variables(EX_ELEM_BLOCK, {"energy", "damage"});
        SmallExodusFile::require(ex_put_truth_table(file_.handle(), EX_ELEM_BLOCK, 2, 2, table_.data()));
    }

    void addStep(int step) {
        file_.time(step, 0.25 * step);
        for (int variable = 1; variable <= 3; ++variable) {
            file_.values(step, EX_NODAL, variable, 1, numbers(GridNodes, 100 * step + variable));
        }
        file_.values(step, EX_ELEM_BLOCK, 1, 7, numbers(Columns * Rows / 2, 1000 * step));
        file_.values(step, EX_ELEM_BLOCK, 1, 3, numbers(Columns * Rows / 2, 2000 * step));
        if (table_[3] == 0) {
            return;
        }
        file_.values(step, EX_ELEM_BLOCK, 2, 3, numbers(Columns * Rows / 2, 3000 * step));
    }

    static std::vector<double> numbers(int count, double first) {
        std::vector<double> result(static_cast<std::size_t>(count));
        std::iota(result.begin(), result.end(), first);
        return result;
    }

    SmallExodusFile file_;
    bool hasMixedIds_;
    std::vector<int> table_;
};

// A triangle, a pentagon, a quadrilateral and a triangle.
void writePolygons(const std::string& path) {
    SmallExodusFile file(path, {2, 9, 4, 1});
    file.coordinates({0, 1, 2, 0, 1, 0, 1, 2, -1}, {0, 0, 0, 1, 1, 2, 2, 1, 1});
    std::vector<int> sizes = {3, 5, 4, 3};
    file.block(1, "NSIDED", 4, 15, {1, 2, 4, 2, 5, 7, 6, 4, 2, 3, 8, 5, 1, 4, 9});
    SmallExodusFile::require(
        ex_put_entity_count_per_polyhedra(file.handle(), EX_ELEM_BLOCK, 1, sizes.data()));
    file.variables(EX_ELEM_BLOCK, {"energy"});
    file.time(1, 0.5);
    file.values(1, EX_ELEM_BLOCK, 1, 1, {11, 12, 13, 14});
}

void change(const std::string& path, const std::function<int(int)>& work) {
    int words = 8;
    int diskWords = 0;
    float version = 0;
    const int file = ex_open(path.c_str(), EX_WRITE, &words, &diskWords, &version);
    SmallExodusFile::require(work(file));
    ex_close(file);
}

void renameVariable(const std::string& path, ex_entity_type type, int number, const char* name) {
    change(path, [&](int file) { return ex_put_variable_name(file, type, number, name); });
}

#ifndef _WIN32
/// For as long as it lives, this process can have so many files open.
class OpenFileLimit {
public:
    explicit OpenFileLimit(rlim_t count) {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit limit = {count, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    OpenFileLimit(const OpenFileLimit&) = delete;
    OpenFileLimit& operator=(const OpenFileLimit&) = delete;
    ~OpenFileLimit() { setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};
#endif

std::size_t byColumns(std::size_t element) {
    return element % Columns * 4 / Columns;
}

class ImportPieces : public testing::Test {
protected:
    ImportPieces() { fs::create_directory(folder.path("whole")); }

    std::string whole() const { return folder.path("whole/run.e"); }
    std::string piece(const std::string& end) const { return folder.path("run.e." + end); }
    std::string out() const { return folder.path("out.mox"); }

    void cut(const ExodusCut& how, bool hasMixedIds = true) const {
        Sheet(whole(), hasMixedIds);
        splitExodus(whole(), folder.path("run.e"), how);
    }
    void expectEqualToWhole(const std::vector<std::string>& arguments) const {
        ASSERT_EQ(runImport({whole(), folder.path("whole.mox")}).exitCode, 0);
        const auto run = runImport(arguments);
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        const auto diff = runMox({"diff", folder.path("whole.mox"), out()});
        EXPECT_EQ(diff.exitCode, 0) << diff.output << diff.messages;
    }
    void expectRefused(const std::vector<std::string>& arguments, const std::string& message) const {
        const auto run = runImport(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.messages, "mox import: " + message + "\n");
        EXPECT_FALSE(fs::exists(out()));
    }

    Support::TemporaryFolder folder;
};

TEST_F(ImportPieces, PatternTakesAllPiecesAsTheWholeFile) {
    cut({4, byColumns});
    expectEqualToWhole({piece("4.*"), out()});
}

TEST_F(ImportPieces, AllPartsTakesThePiecesBesidesTheOneThatIsNamed) {
    cut({4, byColumns});
    splitExodus(whole(), folder.path("run.e"), {2, [](std::size_t element) { return element % 2; }});
    expectEqualToWhole({"--all-parts", piece("4.2"), out()});
}

TEST_F(ImportPieces, NumberMapsAloneGiveTheOrderAndTheIds) {
    cut({3, [](std::size_t element) { return element % 3; }, false}, false);
    expectEqualToWhole({piece("3.?"), out()});
}

TEST_F(ImportPieces, PiecesWithoutElementsOfABlockFit) {
    cut({2, [](std::size_t element) { return element < Columns * Rows / 2 ? 1U : 0U; }});
    expectEqualToWhole({piece("2.*"), out()});
}

TEST_F(ImportPieces, PiecesWithoutElementsFit) {
    cut({6, byColumns});
    expectEqualToWhole({piece("6.*"), out()});
}

TEST_F(ImportPieces, FirstPieceCanHaveNoElements) {
    cut({3, [](std::size_t element) { return 1 + element % 2; }});
    expectEqualToWhole({piece("3.*"), out()});
}

TEST_F(ImportPieces, FirstPieceWithoutElementsFitsWhereNumberMapsAreAlone) {
    cut({3, [](std::size_t element) { return 1 + element % 2; }, false}, false);
    expectEqualToWhole({piece("3.*"), out()});
}

TEST_F(ImportPieces, BlockThatSomePiecesDoNotKnowFits) {
    cut({.pieces = 3,
         .pieceOf = [](std::size_t element) { return element < Columns * Rows / 2 ? 0U : 1 + element % 2; },
         .hasAllBlocks = false});
    expectEqualToWhole({piece("3.*"), out()});
}

TEST_F(ImportPieces, BlockThatTheFirstPieceDoesNotKnowKeepsItsPlaceBeforeAnother) {
    cut({.pieces = 2,
         .pieceOf = [](std::size_t element) { return element < Columns * Rows / 2 + 1 ? 1U : 0U; },
         .hasAllBlocks = false});
    expectEqualToWhole({piece("2.*"), out()});
}

#ifndef _WIN32
// 250 pieces, of which 24 have an element each.
TEST_F(ImportPieces, HundredsOfPiecesAreReadWithFewOpenFiles) {
    cut({250, [](std::size_t element) { return 10 * element; }});
    ASSERT_EQ(runImport({whole(), folder.path("whole.mox")}).exitCode, 0);
    const OpenFileLimit few(100);
    const auto run = runImport({piece("250.*"), out()});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_EQ(runMox({"diff", folder.path("whole.mox"), out()}).exitCode, 0);
}
#endif

TEST_F(ImportPieces, PolygonsOfPiecesAreThoseOfTheWhole) {
    writePolygons(whole());
    splitExodus(whole(), folder.path("run.e"), {2, [](std::size_t element) { return element % 2; }});
    expectEqualToWhole({piece("2.*"), out()});
    ReadBack pieces(out());
    const auto& geometry = *pieces.geometries().front();
    EXPECT_EQ(pieces.integers(ReadBack::dataset(geometry, "Polylength")),
              (std::vector<std::uint32_t>{3, 5, 4, 3}));
    EXPECT_EQ(pieces.integers(ReadBack::dataset(geometry, "Connectivity")),
              (std::vector<std::uint32_t>{0, 1, 3, 1, 4, 6, 5, 3, 1, 2, 7, 4, 0, 3, 8}));
}

TEST_F(ImportPieces, ChoiceIsMadeOfTheWhole) {
    cut({4, byColumns});
    const std::vector<std::string> choice = {"--block", "upper", "--variable", "damage", "--step", "2"};
    auto arguments = choice;
    arguments.insert(arguments.end(), {whole(), folder.path("chosen.mox")});
    ASSERT_EQ(runImport(arguments).exitCode, 0);
    arguments = choice;
    arguments.insert(arguments.end(), {piece("4.*"), out()});
    ASSERT_EQ(runImport(arguments).exitCode, 0);
    EXPECT_EQ(runMox({"diff", folder.path("chosen.mox"), out()}).exitCode, 0);
}

TEST_F(ImportPieces, RootIsNamedByTheFileIfTitlesNameProcessors) {
    cut({.pieces = 2, .pieceOf = [](std::size_t element) { return element % 2; }, .hasOwnTitles = true});
    ASSERT_EQ(runImport({piece("2.*"), out()}).exitCode, 0);
    const auto tree = runMox({"tree", out()});
    EXPECT_NE(tree.output.find("run"), std::string::npos) << tree.output;
    EXPECT_EQ(tree.output.find("Piece"), std::string::npos) << tree.output;
}

TEST_F(ImportPieces, MissingPiecesAreListed) {
    cut({4, byColumns});
    fs::remove(piece("4.1"));
    expectRefused({"--all-parts", piece("4.0"), out()},
                  piece("4.0") + ": piece 1 of 4, numbered from 0, is missing");
    fs::remove(piece("4.3"));
    expectRefused({piece("4.*"), out()},
                  piece("4.*") + ": pieces 1 and 3 of 4, numbered from 0, are missing");
}

TEST_F(ImportPieces, PatternOfTwoDecompositionsIsRefused) {
    cut({4, byColumns});
    splitExodus(whole(), folder.path("run.e"), {2, [](std::size_t element) { return element % 2; }});
    expectRefused({piece("*"), out()}, piece("*") + ": matches pieces of different models or decompositions: "
                                                    "run.e.2.0 and run.e.4.0");
}

TEST_F(ImportPieces, PatternWithoutPiecesIsRefused) {
    expectRefused({piece("4.*"), out()}, piece("4.*") + ": matches no file");
    cut({4, byColumns});
    expectRefused({folder.path("whole/*.e"), out()},
                  folder.path("whole/*.e") +
                      ": matches run.e, which is not named as a piece is, such as run.e.4.0");
}

TEST_F(ImportPieces, PieceWithFewerStepsIsNamed) {
    cut({.pieces = 2, .pieceOf = [](std::size_t element) { return element % 2; }, .steps = 2});
    expectRefused({piece("2.*"), out()},
                  piece("2.1") + ": has 2 steps, but run.e.2.0 has 3; they are not pieces of one run");
}

TEST_F(ImportPieces, PieceWithoutStepsIsNamed) {
    cut({.pieces = 2, .pieceOf = [](std::size_t element) { return element % 2; }, .steps = 0});
    const std::string reason = "it was not written to its end, or they are not pieces of one run";
    expectRefused({piece("2.*"), out()}, piece("2.1") + ": has no steps, but run.e.2.0 has 3; " + reason);
    fs::rename(piece("2.0"), piece("2.2"));
    fs::rename(piece("2.1"), piece("2.0"));
    fs::rename(piece("2.2"), piece("2.1"));
    expectRefused({piece("2.*"), out()}, piece("2.0") + ": has no steps, but run.e.2.1 has 3; " + reason);
}

TEST_F(ImportPieces, PieceWithAnotherTimeIsNamed) {
    cut({.pieces = 2, .pieceOf = [](std::size_t element) { return element % 2; }, .lateBy = 0.125});
    expectRefused({piece("2.*"), out()}, piece("2.1") + ": has the time 0.375 at step 1, but run.e.2.0 has "
                                                        "0.25; they are not pieces of one run");
}

TEST_F(ImportPieces, PieceWithAnotherVariableIsNamed) {
    cut({2, [](std::size_t element) { return element % 2; }});
    renameVariable(piece("2.1"), EX_NODAL, 3, "cold");
    expectRefused({piece("2.*"), out()}, piece("2.1") + ": has nodal variable 3 \"cold\", but run.e.2.0 has "
                                                        "\"heat\"; they are not pieces of one run");
    renameVariable(piece("2.1"), EX_NODAL, 3, "heat");
    renameVariable(piece("2.1"), EX_ELEM_BLOCK, 2, "harm");
    expectRefused({piece("2.*"), out()}, piece("2.1") +
                                             ": has element variable 2 \"harm\", but run.e.2.0 has "
                                             "\"damage\"; they are not pieces of one run");
}

TEST_F(ImportPieces, VariableThatOnePieceLacksOnABlockIsNamed) {
    cut({2, [](std::size_t element) { return element % 2; }});
    Sheet(whole(), true, {1, 0, 1, 0});
    splitExodus(whole(), folder.path("other"), {2, [](std::size_t element) { return element % 2; }});
    fs::rename(folder.path("other.2.1"), piece("2.1"));
    expectRefused({piece("2.*"), out()}, piece("2.1") + ": has no variable \"damage\" on upper, unlike the "
                                                        "pieces before it; they are not pieces of one run");
}

// The first node of the second piece is the second of the sheet, which the first piece has as well.
TEST_F(ImportPieces, NodeThatLiesElsewhereInAnotherPieceIsNamed) {
    cut({2, [](std::size_t element) { return element % 2; }});
    change(piece("2.1"), [](int file) {
        double x = 1.5;
        return ex_put_partial_coord(file, 1, 1, &x, nullptr, nullptr);
    });
    expectRefused({piece("2.*"), out()}, piece("2.1") +
                                             ": has node 1031 at x = 1.5, but a piece before it has it "
                                             "at 1; they are not pieces of one run");
}

TEST_F(ImportPieces, NodeWithAnotherIdInAnotherPieceIsNamed) {
    cut({2, [](std::size_t element) { return element % 2; }});
    change(piece("2.1"), [](int file) {
        int id = 5;
        return ex_put_partial_num_map(file, EX_NODE_MAP, 1, 1, 1, &id);
    });
    expectRefused({piece("2.*"), out()},
                  piece("2.1") +
                      ": has a node 5 whose number in the whole is another node's, in this piece or in one "
                      "before it; they are not pieces of one run");
}

TEST_F(ImportPieces, ElementsThatNoPieceHasAreMissed) {
    cut({2, [](std::size_t element) { return element == 3 ? 2 : element % 2; }});
    expectRefused({piece("2.*"), out()}, folder.path("run.e") +
                                             ": its pieces have 23 elements, but the whole has 24; "
                                             "they are not pieces of one run");
}

TEST_F(ImportPieces, PieceOfAWholeOfAnotherSizeIsNamed) {
    cut({2, [](std::size_t element) { return element % 2; }});
    writePolygons(whole());
    splitExodus(whole(), folder.path("other"), {2, [](std::size_t element) { return element % 2; }});
    fs::rename(folder.path("other.2.1"), piece("2.1"));
    expectRefused({piece("2.*"), out()}, piece("2.1") +
                                             ": has a share of 9 nodes, but run.e.2.0 has one of 35; they "
                                             "are not pieces of one run");
}

TEST_F(ImportPieces, ElementInTwoPiecesIsNamed) {
    cut({2, [](std::size_t element) { return element % 2; }});
    fs::copy_file(piece("2.0"), piece("2.1"), fs::copy_options::overwrite_existing);
    const auto run = runImport({piece("2.*"), out()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says(piece("2.1") +
                         ": has element 1000, which is in another piece too, or here twice; they "
                         "are not pieces of one run"))
        << run.messages;
}

TEST_F(ImportPieces, DamagedPieceIsNamed) {
    cut({4, byColumns});
    fs::resize_file(piece("4.2"), fs::file_size(piece("4.2")) / 2);
    const auto run = runImport({piece("4.*"), out()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says("mox import: " + piece("4.2") + ": damaged")) << run.messages;
    EXPECT_FALSE(fs::exists(out()));
}

TEST_F(ImportPieces, PieceOfAnotherRunIsNamed) {
    cut({4, byColumns});
    splitExodus(whole(), folder.path("other.e"), {4, [](std::size_t element) { return element % 4; }});
    fs::rename(folder.path("other.e.4.2"), piece("4.2"));
    const auto run = runImport({piece("4.*"), out()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says("run.e.4.")) << run.messages;
    EXPECT_TRUE(run.says("they are not pieces of one run")) << run.messages;
}

TEST_F(ImportPieces, PieceOfAnotherNumberOfPiecesIsNamed) {
    cut({4, byColumns});
    fs::rename(piece("4.0"), piece("1.0"));
    expectRefused({"--all-parts", piece("1.0"), out()},
                  piece("1.0") + ": is one of 4 pieces, but by its name one of 1");
}

TEST_F(ImportPieces, PieceByItselfGetsANoteThatItIsOne) {
    cut({4, byColumns});
    const auto run = runImport({piece("4.2"), out()});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(
        run.says("note: run.e.4.2 is one of 4 pieces of a decomposed model; --all-parts imports all as one"))
        << run.messages;
}

TEST_F(ImportPieces, PatternWithoutQuotesIsExplained) {
    cut({4, byColumns});
    const auto reason = [&](const std::string& first, const std::string& second) {
        return "mox import: " + first + " and " + second +
               " are pieces of one model; put the pattern in quotes, as in '" + piece("4.*") +
               "', or name one piece, with --all-parts (see mox import --help)\n";
    };
    const auto four = runImport({piece("4.0"), piece("4.1"), piece("4.2"), piece("4.3"), out()});
    EXPECT_EQ(four.exitCode, 2);
    EXPECT_EQ(four.messages, reason(piece("4.0"), piece("4.1")));
    const auto withOption = runImport({"--overwrite", piece("4.0"), piece("4.1"), piece("4.2"), out()});
    EXPECT_EQ(withOption.messages, reason(piece("4.0"), piece("4.1")));
    const auto noPieces = runImport({whole(), out(), piece("4.1")});
    EXPECT_EQ(noPieces.messages,
              "mox import: \"" + piece("4.1") + "\" is one argument too many (see mox import --help)\n");
}

TEST_F(ImportPieces, PieceIsNotReplacedByWhatIsMadeOfAnother) {
    cut({2, byColumns});
    const auto before = folder.read("run.e.2.1");
    const auto run = runImport({"--overwrite", piece("2.0"), piece("2.1")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.says("are pieces of one model; put the pattern in quotes")) << run.messages;
    EXPECT_EQ(folder.read("run.e.2.1"), before);
}

TEST_F(ImportPieces, OutputCanNotReplaceAPiece) {
    cut({4, byColumns});
    const auto run = runImport({"--overwrite", piece("4.*"), piece("4.3")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + piece("4.3") + ": is the input itself\n");
}

// What `mox diff` says of two files; nothing if they are alike. The order of datasets counts too.
std::string differenceOf(const std::string& left, const std::string& right) {
    const auto diff = runMox({"diff", left, right});
    const auto isInOrder = runMox({"tree", left}).output == runMox({"tree", right}).output;
    return diff.output + diff.messages + (isInOrder ? "" : "another order");
}

// Checks that the shapes of a file are those of the files of single pieces, in their order, number for number.
void expectShapesOf(const std::string& joined, const std::vector<std::string>& pieces) {
    ReadBack all(joined);
    const auto found = all.geometries();
    std::size_t next = 0;
    for (std::size_t rank = 0; rank < pieces.size(); ++rank) {
        ReadBack piece(pieces[rank]);
        for (const auto* expected : piece.geometries()) {
            ASSERT_LT(next, found.size());
            const auto& geometry = *found[next++];
            EXPECT_EQ(geometry.name, expected->name + " piece " + std::to_string(rank));
            const auto& datasets = expected->geometry()->datasets;
            ASSERT_EQ(geometry.geometry()->datasets.size(), datasets.size());
            for (std::size_t i = 0; i < datasets.size(); ++i) {
                const auto& dataset = geometry.geometry()->datasets[i];
                EXPECT_EQ(dataset.key, datasets[i].key);
                EXPECT_EQ(all.bytes(dataset), piece.bytes(datasets[i])) << dataset.name;
                EXPECT_EQ(all.attributes(dataset), piece.attributes(datasets[i])) << dataset.name;
            }
        }
    }
    EXPECT_EQ(next, found.size());
}

// Imports each piece by itself. Returns the paths of the new files.
std::vector<std::string> importSingly(const Support::TemporaryFolder& folder, const std::string& pieces,
                                      std::size_t count) {
    std::vector<std::string> files;
    for (std::size_t rank = 0; rank < count; ++rank) {
        files.push_back(folder.path("single" + std::to_string(rank) + ".mox"));
        const auto run = runImport({pieces + std::to_string(rank), files.back()});
        EXPECT_EQ(run.exitCode, 0) << run.messages;
    }
    return files;
}

TEST_F(ImportPieces, PiecesThatAreKeptHaveTheNumbersOfTheirFiles) {
    cut({4, byColumns});
    const auto run = runImport({"--pieces", "--check", piece("4.*"), out()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says(out() + ": shapes: 8, nodes: 50, elements: 24, steps: 3, ")) << run.messages;
    expectShapesOf(out(), importSingly(folder, piece("4."), 4));
}

TEST_F(ImportPieces, RootOfPiecesThatAreKeptIsThatOfTheWhole) {
    cut({.pieces = 4, .pieceOf = byColumns, .hasOwnTitles = true});
    ASSERT_EQ(runImport({piece("4.*"), folder.path("whole.mox")}).exitCode, 0);
    ASSERT_EQ(runImport({"--pieces", piece("4.*"), out()}).exitCode, 0);
    const ReadBack whole(folder.path("whole.mox"));
    const ReadBack kept(out());
    EXPECT_EQ(kept.model().root().name, "run");
    EXPECT_EQ(kept.model().root().group()->attributes, whole.model().root().group()->attributes);
}

TEST_F(ImportPieces, PiecesWithoutElementsAreKeptWithoutShapes) {
    cut({6, byColumns});
    const auto run = runImport({"--pieces", "--all-parts", piece("6.5"), out()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says("shapes: 8, nodes: 50, elements: 24, steps: 3, ")) << run.messages;
    EXPECT_FALSE(run.says("no element block")) << run.messages;
    EXPECT_FALSE(run.says("note:")) << run.messages;
}

TEST_F(ImportPieces, ProcessesMakeTheSameFileOfPiecesThatAreKept) {
    cut({4, byColumns});
    const auto one = runImport({"--pieces", piece("4.*"), folder.path("one.mox")});
    const auto three = runImport({"--pieces", "-j", "3", piece("4.*"), out()});
    ASSERT_EQ(three.exitCode, 0) << three.messages;
    EXPECT_EQ(differenceOf(folder.path("one.mox"), out()), "");
    EXPECT_EQ(three.messages.substr(out().size()), one.messages.substr(folder.path("one.mox").size()));
    EXPECT_EQ(fs::file_size(folder.path("one.mox")), fs::file_size(out()));
}

TEST_F(ImportPieces, ProcessesThatShareTheStepsMakeTheSameFile) {
    cut({4, byColumns});
    const auto one = runImport({piece("4.*"), folder.path("one.mox")});
    ASSERT_EQ(one.exitCode, 0) << one.messages;
    for (const char* processes : {"2", "3", "5"}) {
        const auto run = runImport({"--overwrite", "--check", "--jobs", processes, piece("4.*"), out()});
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        EXPECT_EQ(differenceOf(folder.path("one.mox"), out()), "") << processes;
        EXPECT_EQ(run.messages.substr(out().size()), one.messages.substr(folder.path("one.mox").size()));
    }
}

TEST_F(ImportPieces, ChoiceNeedNotBeInEachPieceThatIsKept) {
    cut({2, [](std::size_t element) { return element < Columns * Rows / 2 ? 1U : 0U; }});
    const std::vector<std::string> choice = {"--pieces", "--block", "upper", "--variable",
                                             "damage",   "--step",  "2",     piece("2.*")};
    auto arguments = choice;
    arguments.push_back(out());
    const auto run = runImport(arguments);
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    const ReadBack kept(out());
    ASSERT_EQ(kept.geometries().size(), 1U);
    EXPECT_EQ(kept.geometries().front()->name, "upper piece 0");
    EXPECT_TRUE(ReadBack::has(*kept.geometries().front(), "damage", "Step 2"));
    EXPECT_FALSE(ReadBack::has(*kept.geometries().front(), "damage", "Step 1"));
    EXPECT_FALSE(ReadBack::has(*kept.geometries().front(), "heat", "Step 2"));
    fs::remove(out());
    const auto wrong = runImport({"--pieces", "--block", "web", piece("2.*"), out()});
    EXPECT_EQ(wrong.exitCode, 1);
    EXPECT_TRUE(wrong.says("web")) << wrong.messages;
    EXPECT_FALSE(fs::exists(out()));
}

TEST_F(ImportPieces, DamagedPieceThatIsToBeKeptLeavesNothing) {
    cut({4, byColumns});
    fs::resize_file(piece("4.2"), fs::file_size(piece("4.2")) / 2);
    const auto before = folder.files();
    for (const char* processes : {"1", "3"}) {
        const auto run = runImport({"--pieces", "-j", processes, piece("4.*"), out()});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.says("mox import: " + piece("4.2") + ": damaged")) << run.messages;
        EXPECT_EQ(folder.files(), before);
    }
}

TEST_F(ImportPieces, OutputOfPiecesThatAreKeptIsReplacedOnlyWithOverwrite) {
    cut({4, byColumns});
    std::ofstream(out()) << "old";
    const auto run = runImport({"--pieces", piece("4.*"), out()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + out() + ": exists already; --overwrite replaces it\n");
    EXPECT_EQ(folder.read("out.mox"), "old");
    EXPECT_EQ(runImport({"--overwrite", "--pieces", piece("4.*"), out()}).exitCode, 0);
    EXPECT_EQ(ReadBack(out()).geometries().size(), 8U);
}

TEST_F(ImportPieces, PiecesAreKeptOfDecomposedModelsAlone) {
    cut({2, byColumns});
    const auto run = runImport({"--pieces", piece("2.0"), out()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.says("--pieces takes a decomposed Exodus model: a pattern such as 'run.e.4.*', or one "
                         "piece with --all-parts"))
        << run.messages;
}

TEST_F(ImportPieces, ProcessesAreForExodusFilesAloneAndNotForThousands) {
    std::ofstream(folder.path("horn.msh")) << "$MeshFormat\n4.1 0 8\n";
    expectRefused({"-j", "2", folder.path("horn.msh"), out()},
                  folder.path("horn.msh") + ": is no Exodus II file; --jobs is for those alone");
    const auto many = runImport({"-j", "129", folder.path("horn.msh"), out()});
    EXPECT_EQ(many.exitCode, 2);
    EXPECT_EQ(many.messages, "mox import: --jobs: at most 128 processes, not 129 (see mox import --help)\n");
}

// Real meshes that were cut for some ranks, beside the whole ones. What differs is what the pieces say about
// themselves: the title, the program that cut them, the letters of element types.
struct RealMesh {
    const char* whole;
    const char* pieces;
};

class ImportRealPieces : public testing::TestWithParam<RealMesh> {};

TEST_P(ImportRealPieces, HaveEveryNumberOfTheWholeFile) {
    const std::string data = std::string(MOXWRITER_DATA_DIR) + "/decomposed/";
    if (!fs::exists(data + GetParam().whole)) {
        GTEST_SKIP() << "there are no real files in " << data;
    }
    const Support::TemporaryFolder folder;
    ASSERT_EQ(runImport({data + GetParam().whole, folder.path("whole.mox")}).exitCode, 0);
    const auto run = runImport({data + GetParam().pieces, folder.path("pieces.mox")});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    ReadBack whole(folder.path("whole.mox"));
    ReadBack pieces(folder.path("pieces.mox"));
    ASSERT_EQ(pieces.geometries().size(), whole.geometries().size());
    for (std::size_t i = 0; i < whole.geometries().size(); ++i) {
        const auto& expected = *whole.geometries()[i];
        const auto& found = *pieces.geometries()[i];
        EXPECT_EQ(pieces.floats(ReadBack::dataset(found, "Coordinates")),
                  whole.floats(ReadBack::dataset(expected, "Coordinates")));
        for (const char* name : {"Node Ids", "Connectivity", "Polylength", "Element IDs"}) {
            EXPECT_EQ(pieces.integers(ReadBack::dataset(found, name)),
                      whole.integers(ReadBack::dataset(expected, name)))
                << name;
        }
    }
}

TEST_P(ImportRealPieces, AreKeptWithEveryNumberOfTheirFiles) {
    const std::string data = std::string(MOXWRITER_DATA_DIR) + "/decomposed/";
    if (!fs::exists(data + GetParam().whole)) {
        GTEST_SKIP() << "there are no real files in " << data;
    }
    const Support::TemporaryFolder folder;
    const std::string pattern = GetParam().pieces;
    const std::size_t count = pattern.find(".3.") == std::string::npos ? 4 : 3;
    const auto run = runImport({"--pieces", "-j", "2", data + pattern, folder.path("pieces.mox")});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    const auto singles = importSingly(folder, data + pattern.substr(0, pattern.size() - 1), count);
    expectShapesOf(folder.path("pieces.mox"), singles);
}

INSTANTIATE_TEST_SUITE_P(
    Meshes, ImportRealPieces,
    testing::Values(RealMesh{"contact_entity_creation.g", "contact_entity_creation.g.3.*"},
                    RealMesh{"contact_entity_creation.g", "contact_entity_creation.g.4.*"},
                    RealMesh{"brick_with_fibers.g", "brick_with_fibers.g.4.*"}),
    [](const auto& mesh) { return "Number" + std::to_string(mesh.index); });

} // namespace
