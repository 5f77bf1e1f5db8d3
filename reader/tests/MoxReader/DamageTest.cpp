#include "MoxReader/HeavyData.h"

#include "Support/CaseStride.h"
#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

#include <optional>
#include <sstream>

// Whatever happens to a file, reading it ends in a value or in an Error.

namespace {

using namespace MoxReader;

void print(std::ostream& out, const Attributes& attributes) {
    for (const auto& [key, value] : attributes) {
        out << key << '=' << value.index() << ':';
        std::visit([&](const auto& held) { out << held; }, value);
        out << '\n';
    }
}

template <class T>
void print(std::ostream& out, const std::vector<T>& values) {
    for (const auto value : values) {
        out << value << ' ';
    }
    out << '\n';
}

void print(std::ostream& out, const Dataset& dataset, HeavyData& heavy) {
    out << dataset.key << ' ' << dataset.variableType << ' ' << dataset.vibration << '\n';
    print(out, dataset.attributes);
    if (dataset.elementTag == Format::FloatTag) {
        print(out, heavy.readFloats(dataset));
    } else {
        print(out, heavy.readUnsigned(dataset));
    }
}

void print(std::ostream& out, const Node& node, HeavyData& heavy) {
    out << node.id << ' ' << node.parent << ' ' << node.name << ' ' << node.typeName << '\n';
    if (const auto* group = node.group()) {
        print(out, group->attributes);
    }
    if (const auto* shape = node.shape()) {
        out << shape->material.shininess << '\n';
    }
    if (const auto* geometry = node.geometry()) {
        for (const auto& dataset : geometry->datasets) {
            print(out, dataset, heavy);
        }
    }
    if (const auto* sets = node.nodeSets()) {
        for (const auto& set : heavy.readNodeSets(*sets)) {
            out << set.name << ' ' << set.members.size() << '\n';
        }
    }
}

/// Everything that a file says, as one text; empty if reading ends in an Error.
std::optional<std::string> readAll(std::vector<std::uint8_t> bytes) {
    try {
        const File file(memory(std::move(bytes)));
        std::ostringstream out;
        for (const auto& name : file.streamNames()) {
            auto stream = file.stream(name);
            out << name << ' ' << stream.readBytes(stream.size()).size() << '\n';
        }
        const auto model = readModel(file);
        HeavyData heavy(file, model);
        for (const auto& node : model.nodes()) {
            print(out, node, heavy);
        }
        return out.str();
    } catch (const Error&) {
        return std::nullopt;
    }
}

} // namespace

TEST(Damage, ASoundFileIsReadWhole) {
    const auto text = readAll(SampleModel().file().bytes());
    ASSERT_TRUE(text.has_value());
    EXPECT_NE(std::string::npos, text->find("1 2 3 4 5 6"));
}

TEST(Damage, AFileCutAnywhereIsAnError) {
    const auto bytes = SampleModel().file().bytes();
    for (std::size_t size = 0; size < bytes.size(); size += CaseStride) {
        ASSERT_FALSE(readAll({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)})) << size;
    }
}

TEST(Damage, AFlippedBitInTheHeaderIsAnError) {
    const auto bytes = SampleModel().file().bytes();
    for (std::size_t bit = 0; bit < 8 * 20; ++bit) {
        auto damaged = bytes;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ (1u << (bit % 8)));
        // The version's fourth byte is its terminator; a bit flipped there makes a different version.
        ASSERT_FALSE(readAll(damaged)) << "bit " << bit;
    }
}

TEST(Damage, AFlippedBitInTheIndexIsAnErrorOrAValue) {
    const auto bytes = SampleModel().file().bytes();
    std::size_t errors = 0;
    for (std::size_t bit = 8 * 20; bit < 8 * 2800; bit += CaseStride) {
        auto damaged = bytes;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ (1u << (bit % 8)));
        errors += readAll(damaged) ? 0 : 1;
    }
    // At least the 32 bits of each record's name length, and the first 32 of each block's length.
    EXPECT_LE((20u + 6u) * (32 / CaseStride), errors);
}

TEST(Damage, AFlippedBitInABlockIsAnErrorOrChangesNothing) {
    const auto bytes = SampleModel().file().bytes();
    const auto sound = readAll(bytes);
    for (std::size_t bit = 8 * 2800; bit < 8 * bytes.size(); bit += CaseStride) {
        auto damaged = bytes;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ (1u << (bit % 8)));
        const auto text = readAll(damaged);
        ASSERT_TRUE(!text || text == sound) << "bit " << bit;
    }
}

TEST(Damage, AFlippedBitInAnyUncompressedStreamIsAnErrorOrAValue) {
    const SampleModel sample;
    TestFile file;
    file.plain("Heavy Data", sample.heavy).plain("Mox Tree", sample.tree).plain("Light Data", sample.light);
    file.plain("Attributes", sample.attributes).plain("Resources", sample.resources);
    file.plain("Global Information", sample.global);
    const auto bytes = file.bytes();
    std::size_t errors = 0;
    for (std::size_t bit = 8 * 2800; bit < 8 * bytes.size(); bit += CaseStride) {
        auto damaged = bytes;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ (1u << (bit % 8)));
        errors += readAll(damaged) ? 0 : 1;
    }
    // At least all six ids and the position of each of the five nodes.
    EXPECT_LE(5u * (6 * 32 / CaseStride + 64 / CaseStride), errors);
}
