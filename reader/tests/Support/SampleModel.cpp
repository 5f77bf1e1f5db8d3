#include "Support/SampleModel.h"

std::vector<std::uint8_t> treeStream(const std::vector<TreeRecord>& records) {
    Bytes bytes;
    bytes.u32(static_cast<std::uint32_t>(records.size()));
    for (const auto& record : records) {
        bytes.u32(record.id).u32(record.parent).u32(record.previous).u32(record.next);
        bytes.u32(record.firstChild).u32(record.lastChild);
        bytes.text(record.name).text(record.type).text(record.version).u64(record.light);
    }
    return bytes;
}

std::vector<TreeRecord> sampleRecords() {
    return {
        {1, 0, 0, 0, 2, 5, "Root", "Group", "0.4", 0},     {2, 1, 0, 4, 3, 3, "Part", "Shape", "0.2", 41},
        {3, 2, 0, 0, 0, 0, "Part", "Geometry", "0.7", 41}, {4, 1, 2, 5, 0, 0, "Sets", "NodeSets", "0.1", 212},
        {5, 1, 4, 0, 0, 0, "Plain", "Node", "0.1", 232},
    };
}

std::vector<std::uint8_t> fullEntry(const std::string& key, std::uint32_t typeWord, std::uint32_t size,
                                    unsigned width, std::uint64_t position, bool vibration) {
    return Bytes()
        .text(key)
        .u32(typeWord)
        .u8(0)
        .u32(size)
        .u8(width)
        .raw({0, 0})
        .f32s({0, 0})
        .u8(0)
        .u64(position)
        .u8(vibration ? 1 : 0);
}

std::vector<std::uint8_t> linkEntry(const std::string& key, std::uint32_t typeWord, std::uint32_t node,
                                    std::uint32_t index) {
    return Bytes().text(key).u32(typeWord).u8(1).u32(node).u32(index).u8(0);
}

std::vector<std::uint8_t> materialRecord() {
    return Bytes()
        .u32(84)
        .text("0.3")
        .f32s({0.1f, 0.2f, 0.3f, 0.4f})
        .f32s({0.5f, 0.6f, 0.7f, 0.8f})
        .f32s({0.9f, 1.0f, 1.1f, 1.2f})
        .f32s({1.3f, 1.4f, 1.5f, 1.6f})
        .f32s({0.25f, 0.75f})
        .u8(1);
}

SampleModel::SampleModel() : tree(treeStream(sampleRecords())), resources(materialRecord()) {
    heavy = Bytes()
                .raw({0x00, 0x00, 0x00, 0x00, 0x80, 0x80, 0x3F, 0x40}) // x: 1, 4
                .raw({0x00, 0x00, 0x00, 0x00, 0x00, 0xA0, 0x40, 0x40}) // y: 2, 5
                .raw({0x00, 0x00, 0x00, 0x00, 0x40, 0xC0, 0x40, 0x40}) // z: 3, 6
                .raw({0x01, 0x05, 0x02, 0x06, 0x03, 0x07, 0x04, 0x08})
                .raw({0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0x3F, 0xBF}) // 0.5, -1
                .u32List({0, 2, 5})
                .text("abcde")
                .u32List({0, 1, 3})
                .u32List({1, 2, 3})
                .u32List({4, 5, 6});
    light = Bytes()
                .f32s({1, 2, 3})
                .f32s({0, 0, 1, 0.5f})
                .f32s({4, 5, 6})
                .u8(1)
                .u32(4)
                .raw(fullEntry("Coordinates", 0x01000001, 24, 3, 0))
                .raw(fullEntry("Connectivity", 0x05000004, 8, 1, 24))
                .raw(fullEntry("Stress\x1EStep1", 0x01000010, 8, 1, 32, true))
                .raw(linkEntry("Stress\x1EStep2", 0x01000010, 3, 2))
                .u32(16)
                .u32(2)
                .u64(40)
                .u32(73);
    attributes = Bytes()
                     .texts({"a", "b", "c", "d"})
                     .u8List({0, 2, 1, 3})
                     .u32List({7})
                     .f32List({1.5f})
                     .f64List({2.25})
                     .texts({"text"})
                     .noAttributes()
                     .noAttributes()
                     .texts({"unit"})
                     .u8List({2})
                     .u32List({})
                     .f32List({})
                     .f64List({})
                     .texts({"MPa"})
                     .noAttributes();
    global = Bytes()
                 .u32(1)
                 .u32(55)
                 .text("0.1")
                 .text("App")
                 .text("2.0")
                 .text("1.3")
                 .text("Mon")
                 .text("")
                 .text("")
                 .text("note")
                 .u32(0);
}

TestFile SampleModel::file() const {
    TestFile file;
    file.compressed("Heavy Data", heavy).compressed("Mox Tree", tree).compressed("Light Data", light);
    file.compressed("Attributes", attributes).compressed("Resources", resources);
    file.compressed("Global Information", global);
    return file;
}
