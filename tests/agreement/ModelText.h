#pragma once

#include <MoxReader/HeavyData.h>

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Everything that a file says, as lines of text that another reader can produce too: integers in decimal,
/// floats and numbers as the bytes in the file, texts in quotes.
class ModelText {
public:
    /// @throws MoxReader::Error  Whatever is wrong with the file or its model. Numbers that can't be read are
    ///                           marked as such in the text.
    explicit ModelText(const MoxReader::File& file);

    const std::string& text() const { return text_; }
    /// Whether all numbers could be read.
    bool isWhole() const { return isWhole_; }

private:
    void addBlocks();
    void addStream(const std::string& name);
    void addGlobalInformation();
    void addNode(const MoxReader::Node& node);
    void addContent(std::monostate) {}
    void addContent(const MoxReader::Group& group);
    void addContent(const MoxReader::Shape& shape);
    void addContent(const MoxReader::Geometry& geometry);
    void addContent(const MoxReader::NodeSets& descriptor);
    void addDataset(const MoxReader::Dataset& dataset);
    void addHolder(const MoxReader::Dataset& link);
    void addNumbers(const MoxReader::Dataset& dataset);
    template <class Add>
    void addIfWhole(const Add& add);
    void addAttributes(const MoxReader::Attributes& attributes);

    template <class... Words>
    void addLine(const Words&... words);
    template <std::integral T>
    void addWord(T number);
    void addWord(std::string_view text);
    void addWord(float number);
    void addWord(double number);
    void addWord(std::span<const float> numbers);
    template <class T>
    void addBytes(std::span<const T> numbers);

    const MoxReader::File& file_;
    MoxReader::Model model_;
    MoxReader::HeavyData heavy_;
    std::string text_;
    bool isWhole_ = true;
};
