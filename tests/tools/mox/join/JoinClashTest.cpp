// What doesn't fit together, and what --prefer-first makes of it.

#include "../parts/PartFiles.h"

namespace {

using namespace Qel::Mox2;
using Floats = std::vector<float>;

constexpr const char* Advice = "; --prefer-first keeps that, --under and --suffix keep both";
constexpr const char* RootAdvice = "; --prefer-first keeps that"; // no option gives a file two roots

class JoinClash : public PartFiles {
protected:
    void expectClash(const std::string& sentence, const std::string& advice = Advice) const {
        const auto run = join({out, a, b});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.messages, "mox join: " + b + ": " + sentence + advice + "\n");
        EXPECT_FALSE(std::filesystem::exists(out));
        EXPECT_EQ(folder.files(), (Arguments{"a.mox", "b.mox"}));
    }
    /// @return the messages before the summary.
    std::string preferFirst() const {
        const auto run = join({"--prefer-first", out, a, b});
        EXPECT_EQ(run.exitCode, 0) << run.messages;
        return run.messages.substr(0, run.messages.find("mox join: " + out));
    }
    std::string leftOut(const std::string& sentence) const {
        return "mox join: left out: " + b + ": " + sentence + "\n";
    }

    void saveRoot(const std::string& name, int number) const {
        Attributes attributes;
        attributes.set("Count", number);
        Model model;
        model.saveTo(folder.path(name), {true, "", "", ""});
        model.addNode(Group, "model", attributes);
        model.close();
    }
    void saveGroup(const std::string& name, const Attributes& attributes, const Floats& translation) const {
        save(name, [&](Model& model) {
            const auto group = model.addNode(Group, "group", attributes);
            NodeProperties moved;
            moved.set(Translation, translation);
            model.setNodeData(group, moved);
        });
    }
    void saveRed(const std::string& name, float red) const {
        save(name, [&](Model& model) {
            NodeProperties colour;
            colour.set(DiffuseColor, Floats{red, 0, 0});
            model.setNodeData(model.addNode(Shape, "shape"), colour);
        });
    }

    const std::string a = path("a.mox");
    const std::string b = path("b.mox");
};

template <typename Value>
NodeProperties with(PropertyType part, const Value& value) {
    NodeProperties properties;
    properties.set(part, value);
    return properties;
}

Attributes count(int number) {
    Attributes attributes;
    attributes.set("Count", number);
    return attributes;
}

} // namespace

TEST_F(JoinClash, OneKeyOnOneShapeNamesThePathTheKeyAndBothFiles) {
    const auto saveStep = [&](const std::string& name, float value) {
        save(name, [&](Model& model) {
            const auto shape = model.addNode(Shape, "shape");
            model.addArrayProperty("T", NodeScalar, Array1d<float>{value}, shape, Step{"Step 1", {}});
        });
    };
    saveStep("a.mox", 1);
    saveStep("b.mox", 2);
    const auto sentence = "/model/shape: the dataset T, step \"Step 1\" is in " + a + " too";
    expectClash(sentence);
    EXPECT_EQ(preferFirst(), leftOut(sentence));
    expectWhole(out);
    EXPECT_EQ(ReadFile(out).floats({"shape"}, "T\x1eStep 1"), (Floats{1}));
}

TEST_F(JoinClash, KeyOfTheSecondFileIsNamedWhenTheThirdHasItToo) {
    saveShape("a.mox", "part", {"T"}, 0);
    saveShape("b.mox", "part", {"U"}, 0);
    const auto c = saveShape("c.mox", "part", {"U"}, 0);
    const auto run = join({out, a, b, c});
    EXPECT_EQ(run.messages,
              "mox join: " + c + ": /model/part: the dataset U is in " + b + " too" + Advice + "\n");
}

TEST_F(JoinClash, AnotherTransformIsAnError) {
    saveGroup("a.mox", {}, {1, 2, 3});
    saveGroup("b.mox", {}, {1, 2, 4});
    expectClash("/model/group has another transform in " + a);
    EXPECT_EQ(preferFirst(), leftOut("/model/group has another transform in " + a));
    EXPECT_EQ(ReadFile(out).at({"group"}).group()->translation, (std::array<float, 3>{1, 2, 3}));
}

TEST_F(JoinClash, EachPartOfATransformCounts) {
    saveGroup("a.mox", {}, {0, 0, 0});
    for (const auto& part : {with(Rotation, Floats{0, 0, 1, 0.5F}), with(Scale, Floats{1, 1, 2})}) {
        save("b.mox", [&](Model& model) { model.setNodeData(model.addNode(Group, "group"), part); });
        expectClash("/model/group has another transform in " + a);
    }
}

TEST_F(JoinClash, OtherAttributesAreAnError) {
    saveGroup("a.mox", count(1), {0, 0, 0});
    saveGroup("b.mox", count(2), {0, 0, 0});
    expectClash("/model/group has other attributes in " + a);
    preferFirst();
    EXPECT_EQ(ReadFile(out).at({"group"}).group()->attributes, (MoxReader::Attributes{{"Count", 1U}}));
}

TEST_F(JoinClash, AttributeThatIsMissingOrOfAnotherKindIsAnother) {
    Attributes asFloat;
    asFloat.set("Count", 1.0F);
    saveGroup("a.mox", count(1), {0, 0, 0});
    for (const auto& other : {Attributes(), asFloat}) {
        saveGroup("b.mox", other, {0, 0, 0});
        expectClash("/model/group has other attributes in " + a);
    }
}

TEST_F(JoinClash, EqualTransformsAndAttributesAreFine) {
    saveGroup("a.mox", count(1), {1, 2, 3});
    saveGroup("b.mox", count(1), {1, 2, 3});
    expectJoined({out, a, b});
    expectWhole(out);
}

TEST_F(JoinClash, AnotherMaterialIsAnError) {
    saveRed("a.mox", 1);
    saveRed("b.mox", 0.5F);
    expectClash("/model/shape has another material in " + a);
    preferFirst();
    const ReadFile joined(out);
    EXPECT_EQ(joined.model.node(2).shape()->material.diffuse, (std::array<float, 4>{1, 0, 0, 1}));
}

TEST_F(JoinClash, EachPartOfAMaterialCounts) {
    save("a.mox", [](Model& model) { model.addNode(Shape, "shape"); });
    const auto parts = {with(DiffuseColor, Floats{0.5F, 0.8F, 0.8F}),
                        with(SpecularColor, Floats{0.5F, 0, 0}),
                        with(EmissiveColor, Floats{0, 0, 0.5F}),
                        with(AmbientColor, Floats{0.5F, 0.5F, 0.5F}),
                        with(Transparency, 0.5F),
                        with(Shininess, 0.5F)};
    for (const auto& part : parts) {
        save("b.mox", [&](Model& model) { model.setNodeData(model.addNode(Shape, "shape"), part); });
        expectClash("/model/shape has another material in " + a);
    }
}

TEST_F(JoinClash, EqualMaterialsAreFine) {
    saveRed("a.mox", 0.5F);
    saveRed("b.mox", 0.5F);
    expectJoined({out, a, b});
    expectWhole(out);
}

TEST_F(JoinClash, AnotherTypeOfNodeIsAnErrorAndPreferFirstLeavesOutAllBelowIt) {
    save("a.mox", [](Model& model) { model.addNode(Group, "thing"); });
    saveShape("b.mox", "thing", {"T"}, 0);
    const auto sentence = "/model/thing is a Shape here, and a Group in " + a;
    expectClash(sentence);
    EXPECT_EQ(preferFirst(), leftOut(sentence));
    expectWhole(out);
    EXPECT_EQ(ReadFile(out).model.nodes().size(), 2u);
}

TEST_F(JoinClash, RootsOfDifferentNamesAreAnErrorInAnyCase) {
    save("a.mox", [](Model&) {});
    {
        Model model;
        model.saveTo(b, {true, "", "", ""});
        model.addNode(Group, "other");
        model.close();
    }
    for (const auto& arguments :
         {Arguments{out, a, b}, {"--prefer-first", out, a, b}, {"--under", "x", out, a, b}}) {
        const auto run = join(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.messages, "mox join: " + b + ": its root is a Group \"other\", and that of " + a +
                                    " is a Group \"model\"\n");
    }
    EXPECT_EQ(folder.files(), (Arguments{"a.mox", "b.mox"}));
}

TEST_F(JoinClash, RootsOfDifferentTypesAreAnError) {
    save("a.mox", [](Model&) {});
    {
        Model model;
        model.saveTo(b, {true, "", "", ""});
        model.addNode(Shape, "model");
        model.close();
    }
    EXPECT_EQ(join({out, a, b}).messages, "mox join: " + b + ": its root is a Shape \"model\", and that of " +
                                              a + " is a Group \"model\"\n");
}

TEST_F(JoinClash, MarkOfARootIsAnError) {
    save("a.mox", [](Model&) {});
    {
        Model model;
        model.saveTo(b, {true, "", "", ""});
        model.addNode(RootMarkedGroup, "model");
        model.close();
    }
    expectClash("/model has another mark in " + a, RootAdvice);
}

TEST_F(JoinClash, OtherAttributesOfTheRootAreAnErrorThatOnlyPreferFirstHelps) {
    saveRoot("a.mox", 1);
    saveRoot("b.mox", 2);
    expectClash("/model has other attributes in " + a, RootAdvice);
    const auto run = join({"--under", "file {n}", out, a, b});
    EXPECT_EQ(run.messages, "mox join: " + b + ": /model has other attributes in " + a + RootAdvice + "\n");
    EXPECT_EQ(preferFirst(), leftOut("/model has other attributes in " + a));
}

// The first file has the dataset that the second file's link leads to.
TEST_F(JoinClash, LinkToADatasetThatIsLeftOutKeepsItsOwnNumbers) {
    saveShape("a.mox", "one", {"T"}, 0);
    save("b.mox", [](Model& model) {
        const auto one = model.addNode(Shape, "one");
        model.setCurrentNodeId(1);
        const auto two = model.addNode(Shape, "two");
        model.setCurrentNodeId(1);
        const auto three = model.addNode(Shape, "three");
        Attributes attributes;
        attributes.set("Unit", "K");
        model.addArrayProperty("T", NodeScalar, Array1d<float>{100, 101}, Array1d<unsigned>{one, two, three},
                               Step{}, attributes);
    });
    preferFirst();
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.floats({"one"}, "T"), (Floats{0, 1}));
    EXPECT_EQ(joined.floats({"two"}, "T"), (Floats{100, 101}));
    EXPECT_EQ(joined.floats({"three"}, "T"), (Floats{100, 101}));
    EXPECT_FALSE(joined.dataset({"two"}, "T").isLink);
    EXPECT_EQ(joined.dataset({"two"}, "T").attributes, (MoxReader::Attributes{{"Unit", std::string("K")}}));
    EXPECT_EQ(joined.dataset({"three"}, "T").linkNodeId, joined.at({"two"}).id);
}

TEST_F(JoinClash, OnlyTenOfManyAreListed) {
    Arguments names;
    for (int i = 0; i < 12; ++i) {
        names.push_back("T" + std::to_string(i));
    }
    saveShape("a.mox", "one", names, 0);
    saveShape("b.mox", "one", names, 0);
    const auto messages = preferFirst();
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 11);
    EXPECT_TRUE(messages.ends_with("mox join: left out: 2 more; --verbose lists all\n")) << messages;
    const auto all = join({"-v", "-f", "--prefer-first", out, a, b}).messages;
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 13);
}
