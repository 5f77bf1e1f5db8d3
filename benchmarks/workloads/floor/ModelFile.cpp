#include "floor/ModelFile.h"

#include <array>
#include <ctime>

namespace Workloads::Floor {

namespace {

const std::string GroupType = "Group";
const std::string GroupVersion = "0.4";
const std::string ShapeType = "Shape";
const std::string ShapeVersion = "0.2";
const std::string GeometryType = "Geometry";
const std::string GeometryVersion = "0.7";

struct GroupDescriptor {
    std::array<float, 10> transform = {0, 0, 0, 0, 0, 1, 0, 1, 1, 1};
};
struct Colors {
    std::array<float, 18> values = {0.8F,        0.8F,        0.8F,        1,           0, 0,
                                    0,           1,           0,           0,           0, 0,
                                    0.8F * 0.2F, 0.8F * 0.2F, 0.8F * 0.2F, 1.0F * 0.2F, 0, 0.2F};
};

} // namespace

void ModelFile::putNode(const Links& links, const std::string& name, const std::string& type,
                        const std::string& version) {
    Buffer& tree = file_.blockOf(tree_);
    tree.put(links);
    tree.putText(name);
    tree.putText(type);
    tree.putText(version);
    tree.put(light_.size());
}

void ModelFile::putNoAttributes() {
    file_.blockOf(attributes_).put(std::array<std::uint32_t, 6>{});
}

void ModelFile::putGroup(const Links& links, const std::string& name) {
    putNode(links, name, GroupType, GroupVersion);
    Buffer& light = file_.blockOf(light_);
    light.put(GroupDescriptor());
    light.put(static_cast<unsigned char>(0));
    putNoAttributes();
}

void ModelFile::putShape(const Links& links, const std::string& name) {
    putNode(links, name, ShapeType, ShapeVersion);
    constexpr std::uint32_t size = 84;
    static const std::string version = "0.3";
    Buffer& resources = file_.blockOf(resources_);
    resources.put(size);
    resources.putText(version);
    resources.put(Colors());
    resources.put(static_cast<unsigned char>(1));
}

void ModelFile::putGeometry(const Links& links, const std::string& name, std::uint32_t datasets) {
    putNode(links, name, GeometryType, GeometryVersion);
    file_.blockOf(light_).put(datasets);
}

void ModelFile::putDescription(const std::string& key, std::uint32_t type, std::size_t rows,
                               std::size_t columns, std::uint64_t position) {
    constexpr std::array<unsigned char, 11> fixedFields{};
    Buffer& light = file_.blockOf(light_);
    light.putText(key);
    light.put(type);
    light.put(false);
    light.put(static_cast<std::uint32_t>(rows * columns * sizeof(float)));
    light.put(static_cast<unsigned char>(columns));
    light.put(fixedFields);
    light.put(position);
    light.put(false);
}

void ModelFile::putDataset(const std::string& key, std::uint32_t type, std::size_t rows, std::size_t columns,
                           std::uint64_t position) {
    putDescription(key, type, rows, columns, position);
    putNoAttributes();
}

void ModelFile::putTimedDataset(const std::string& key, std::uint32_t type, std::size_t rows,
                                std::size_t columns, std::uint64_t position, float time) {
    constexpr std::uint32_t none = 0;
    constexpr std::uint32_t one = 1;
    constexpr unsigned char kindOfFloats = 1;
    static const std::string timeKey = "Time";
    putDescription(key, type, rows, columns, position);
    Buffer& attributes = file_.blockOf(attributes_);
    attributes.put(one);
    attributes.putText(timeKey);
    attributes.put(one);
    attributes.put(kindOfFloats);
    attributes.put(none);
    attributes.put(one);
    attributes.put(time);
    attributes.put(none);
    attributes.put(none);
}

void ModelFile::close() {
    const std::time_t now = std::time(nullptr);
    std::array<char, 120> date{};
    const std::size_t length =
        std::strftime(date.data(), date.size(), "%a %b %d %H:%M:%S %Y %Z", std::localtime(&now));
    Buffer record;
    for (const std::string& text :
         {std::string("0.1"), std::string(), std::string(), std::string("1.3"),
          std::string(date.data(), length), std::string(), std::string(), std::string()}) {
        record.putText(text);
    }
    Buffer& information = file_.blockOf(information_);
    information.put(std::uint32_t{1});
    information.put(static_cast<std::uint32_t>(sizeof(std::uint32_t) + record.size()));
    information.append(record.data(), record.size());
    information.put(std::uint32_t{0});
    file_.close();
}

} // namespace Workloads::Floor
