#include "mutateStreams.h"

#include "littleEndian.h"
#include "mendStreams.h"

#include <algorithm>
#include <string>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace MoxFuzz {

namespace {

using Chance = std::minstd_rand;

std::size_t below(Chance& chance, std::size_t bound) {
    return bound == 0 ? 0 : chance() % bound;
}

template <class List>
const auto& anyOf(Chance& chance, const List& list) {
    return list[below(chance, std::size(list))];
}

void appendText(Bytes& bytes, std::string_view text) {
    appendWord(bytes, static_cast<std::uint32_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void mutateFreely(Bytes& bytes, std::size_t room) {
    const auto size = bytes.size();
    const auto most = std::max<std::size_t>(size + std::min<std::size_t>(room, 64), 1);
    bytes.resize(most);
    bytes.resize(LLVMFuzzerMutate(bytes.data(), size, most));
}

/// Sets a number to one at which something changes, or near the size of a stream.
void setNumber(Streams& streams, Bytes& bytes, Chance& chance) {
    constexpr std::uint32_t Limits[] = {
        0, 1, 2, 3, 4, 16, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0xFFFFFFFE, 0x40000000, 0xFF, 0x100};
    if (bytes.size() < 4) {
        return;
    }
    const auto size = anyOf(chance, streams.contents).size();
    const auto nearSize = static_cast<std::uint32_t>(size + below(chance, 9) - 4);
    const auto number = below(chance, 2) == 0 ? anyOf(chance, Limits) : nearSize;
    setWord(bytes, below(chance, bytes.size() - 3), number);
}

/// Mending numbers and links the node, and gives it what it needs in the other streams.
void addNode(Streams& streams, Chance& chance) {
    constexpr std::string_view Types[][2] = {{"Group", "0.4"}, {"Shape", "0.2"}, {"Geometry", "0.7"},
                                             {"NodeSets", ""}, {"Node", "0.1"},  {"", ""}};
    auto& tree = streams.contents[Streams::Tree];
    const auto& [type, version] = anyOf(chance, Types);
    appendWord(tree, 0);
    appendWord(tree, 1 + static_cast<std::uint32_t>(below(chance, 6)));
    tree.resize(tree.size() + 4 * 4);
    appendText(tree, below(chance, 2) == 0 ? "a" : "");
    appendText(tree, type);
    appendText(tree, version);
    tree.resize(tree.size() + 8);
    mendStreams(streams);
}

void addDataset(Bytes& bytes, Chance& chance) {
    constexpr std::uint8_t Variables[] = {1, 4, 5, 6, 9, 12, 13, 14, 16, 20, 28, 0, 255};
    constexpr std::uint8_t Elements[] = {1, 1, 5, 5, 0, 255};
    constexpr std::string_view Keys[] = {"a",
                                         "b",
                                         "a\x1e"
                                         "b",
                                         "Coordinates",
                                         "Connectivity",
                                         ""};
    const bool isLink = below(chance, 2) == 0;
    appendText(bytes, anyOf(chance, Keys));
    bytes.insert(bytes.end(), {anyOf(chance, Variables), 0, 0, anyOf(chance, Elements)});
    bytes.push_back(isLink ? 1 : 0);
    appendWord(bytes, static_cast<std::uint32_t>(below(chance, isLink ? 6 : 64)));
    if (isLink) {
        appendWord(bytes, static_cast<std::uint32_t>(below(chance, 4)));
    } else {
        bytes.push_back(static_cast<std::uint8_t>(below(chance, 8)));
        bytes.resize(bytes.size() + 7);
        appendWord(bytes, static_cast<std::uint32_t>(below(chance, 64)));
        appendWord(bytes, 0);
    }
    bytes.push_back(0);
}

/// To the geometry whose list comes last. Mending takes the count back to what is there.
void addDatasets(Streams& streams, Chance& chance) {
    auto& light = streams.contents[Streams::Light];
    if (light.size() < 4) {
        return;
    }
    const auto place = below(chance, light.size() - 3);
    if (wordAt(light, place) < 16) {
        setWord(light, place, wordAt(light, place) + 1);
    }
    addDataset(light, chance);
}

void addAttributes(Bytes& bytes, Chance& chance) {
    const auto kind = static_cast<std::uint8_t>(below(chance, 5));
    Bytes record;
    appendWord(record, 1);
    appendText(record, "k");
    appendWord(record, 1);
    record.push_back(kind);
    constexpr std::uint8_t KindsInOrder[] = {0, 1, 3, 2};
    for (const auto each : KindsInOrder) {
        appendWord(record, kind == each ? 1 : 0);
        record.resize(record.size() + (kind != each ? 0u : each == 3 ? 8u : 4u));
    }
    const auto place = below(chance, bytes.size() + 1) / 24 * 24;
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(place), record.begin(), record.end());
}

/// A node of sets whose payload begins at a place in "Heavy Data".
void addSets(Streams& streams, Chance& chance) {
    auto& heavy = streams.contents[Streams::Heavy];
    auto& light = streams.contents[Streams::Light];
    const auto place = heavy.size();
    for (const auto& list : {std::array<std::uint32_t, 3>{2, 0, 1}, {2, 0, 1}}) {
        for (const auto word : list) {
            appendWord(heavy, word);
        }
        if (heavy.size() == place + 12) {
            appendText(heavy, "s");
        }
    }
    for (int i = 0; i < 2; ++i) {
        appendWord(heavy, 1);
        appendWord(heavy, static_cast<std::uint32_t>(below(chance, 9)));
    }
    for (const auto word : {std::size_t{16}, std::size_t{1}, place, std::size_t{0}, heavy.size() - place}) {
        appendWord(light, static_cast<std::uint32_t>(word));
    }
}

void mutateOnce(Streams& streams, std::size_t room, Chance& chance) {
    auto& bytes = streams.contents[below(chance, Streams::Count)];
    switch (below(chance, 12)) {
    case 0:
        return addNode(streams, chance);
    case 1:
        return addDatasets(streams, chance);
    case 2:
        return addAttributes(streams.contents[Streams::Attributes], chance);
    case 3:
        return addSets(streams, chance);
    case 4:
    case 5:
    case 6:
        return setNumber(streams, bytes, chance);
    case 7:
        streams.division = static_cast<std::uint8_t>(chance());
        return;
    default:
        return mutateFreely(bytes, room);
    }
}

void mendMostly(Streams& streams, Chance& chance) {
    if (below(chance, 8) != 0) {
        mendStreams(streams);
    }
}

std::size_t contentSize(const Streams& streams) {
    return streams.inputSize() - Streams::HeadSize;
}

/// Cuts what is too much, from the stream that is longest.
void cutTo(Streams& streams, std::size_t room) {
    while (contentSize(streams) > room) {
        auto& longest = *std::ranges::max_element(streams.contents, {}, &Bytes::size);
        longest.resize(longest.size() - std::min(contentSize(streams) - room, longest.size() / 2 + 1));
    }
}

} // namespace

void mutateStreams(Streams& streams, std::size_t room, Chance& chance) {
    for (auto edits = 1 + below(chance, 4); edits > 0; --edits) {
        const auto size = contentSize(streams);
        mutateOnce(streams, room > size ? room - size : 0, chance);
    }
    mendMostly(streams, chance);
    cutTo(streams, room);
}

void crossStreams(Streams& streams, const Streams& other, Chance& chance) {
    const auto which = below(chance, Streams::Count);
    streams.contents[which] = other.contents[which];
    mendMostly(streams, chance);
}

} // namespace MoxFuzz
