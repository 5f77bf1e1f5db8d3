#include <Qel/Mox/Tree.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Log/Log.h>
#include <Qel/Mox/Format.h>
#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/NodeSets.h>
#include <Qel/Mox/Shape.h>
#include <Qel/Tnf/BlockStream.h>
#include <Qel/Tnf/Format.h>
#include <Qel/Util/Platform.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <string_view>
#include <typeinfo>
#include <utility>

namespace QelMox {

namespace {

std::string currentDate() {
    const std::tm now = QelUtil::Platform::localTime(std::time(nullptr));
    std::array<char, 120> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%a %b %d %H:%M:%S %Y %Z", &now);
    return {text.data(), length};
}

void saveGroup(QelTnf::BlockStream& lightData, QelTnf::BlockStream& attributes, const Group& group) {
    lightData.Put(group.GetTranslation().data(), sizeof(group.GetTranslation()));
    lightData.Put(group.GetRotation().data(), sizeof(group.GetRotation()));
    lightData.Put(group.GetScale().data(), sizeof(group.GetScale()));
    Tree::WriteAttributes(attributes, group.GetAttributes());
    lightData.Put(group.GetGroupKind());
}

// Kept though nothing calls it; see docs/oddities.md.
void saveNodeSets(QelTnf::BlockStream& lightData, const NodeSets& nodeSets) {
    lightData.Put(Format::NodeSetsMark);
    lightData.Put(nodeSets.GetSetCount());
    lightData.Put(nodeSets.heavyPosition);
    lightData.Put(nodeSets.heavySize);
}

using QelUtil::AttributeValue;

// A list of all keys and one of all kinds.
void putKeys(QelTnf::BlockStream& stream, const QelUtil::AttributeList& list) {
    const auto count = static_cast<std::uint32_t>(list.size());
    QelTnf::Block& keys = stream.NextBlock();
    keys.Append(count);
    for (const auto& [key, value] : list) {
        keys.Append(key);
    }
    QelTnf::Block& kinds = stream.NextBlock();
    kinds.Append(count);
    for (const auto& [key, value] : list) {
        kinds.Append(static_cast<unsigned char>(value.kind));
    }
}

// A list of the values of one kind.
template <typename ValueOf>
void putValues(QelTnf::BlockStream& stream, const QelUtil::AttributeList& list, AttributeValue::Kind kind,
               ValueOf valueOf) {
    QelTnf::Block& block = stream.NextBlock();
    block.Append(static_cast<std::uint32_t>(
        std::ranges::count(list, kind, [](const auto& attribute) { return attribute.second.kind; })));
    for (const auto& [key, value] : list) {
        if (value.kind == kind) {
            block.Append(valueOf(value));
        }
    }
}

void logDataset(std::uint32_t count, std::uint8_t width) {
    constexpr int valueSize = 4;
    QEL_LOG("QelMox::Tree::WriteStreamDataset", "Writing Dataset of size " << width * count << " width "
                                                                           << unsigned{width}
                                                                           << " datatype size " << valueSize);
}

} // namespace

// The streams that the tree is written to.
struct Tree::SaveStreams {
    explicit SaveStreams(QelTnf::TnFile& file) : container(file) {}

    QelTnf::TnFile& container;
    QelTnf::BlockStream moxTree{container.GetIndex(), Format::MoxTree};
    QelTnf::BlockStream lightData{container.GetIndex(), Format::LightData};
    QelTnf::BlockStream heavyData{container.GetIndex(), Format::HeavyData};
    QelTnf::BlockStream attributes{container.GetIndex(), Format::Attributes};
    QelTnf::BlockStream resources{container.GetIndex(), Format::Resources};
};

Tree::Tree() {
    // Nothing here draws random numbers, but applications that do have come to rely on the known seed.
    std::srand(0);
}

Tree::~Tree() {
    for (const auto& node : GetNodes()) {
        delete node.data;
    }
}

// --- Opening

void Tree::SetStreamFile(const std::string& path, unsigned char overwrite, const int* const mode) {
    if (*mode != 0) {
        return;
    }
    QEL_LOG("QelMox::Tree::SetStreamFile", "Setting mox file \"" << path << "\"");
    File.OpenFileForWriting(path, overwrite != 0);
    FileVersion = Format::FileVersion;
    (void)std::fwrite(QelTnf::Format::Signature.data(), QelTnf::Format::Signature.size(), 1,
                      File.GetStream());
    (void)std::fwrite(QelTnf::Format::Version, sizeof(QelTnf::Format::Version), 1, File.GetStream());
}

// --- Growing

void Tree::SetRootGroup(const std::string& name, const QelUtil::AttributeList& attributes) {
    SetRootGroup(name, 0, attributes);
}

void Tree::SetRootGroup(const std::string& name, unsigned char groupKind,
                        const QelUtil::AttributeList& attributes) {
    PutCurrentId(RootId);
    if (GetCurrentNode().data != nullptr) {
        QEL_THROW(Qel::Exception::InvalidObjectState("Root node properties are already set"));
    }
    GetCurrentNode().data = std::make_unique<Group>(name, attributes, groupKind).release();
}

void Tree::SetRootShape(const std::string& name) {
    PutCurrentId(RootId);
    if (GetCurrentNode().data != nullptr) {
        QEL_THROW(Qel::Exception::InvalidObjectState("Root node properties are already set"));
    }
    GetCurrentNode().data = std::make_unique<Shape>(name).release();
}

void Tree::AddChildNode(std::unique_ptr<Node> payload) {
    AddChild();
    GetCurrentNode().data = payload.release();
}

template <typename NodeClass>
bool Tree::MoveToChildOfClass(const std::string& name) {
    const unsigned int found = children_.Find(GetCurrentId(), name, typeid(NodeClass));
    if (found != 0) {
        SetCurrentId(found);
    }
    return found != 0;
}

void Tree::AddGroupNode(const std::string& name) {
    if (!MoveToChildOfClass<Group>(name)) {
        AddChildNode(std::make_unique<Group>(name, QelUtil::AttributeList()));
    }
}

void Tree::AddShapeNode(const std::string& name) {
    if (!MoveToChildOfClass<Shape>(name)) {
        AddChildNode(std::make_unique<Shape>(name));
    }
    if (!MoveToChildOfClass<Geometry>(name)) {
        AddChildNode(std::make_unique<Geometry>(name));
    }
}

unsigned int Tree::FindNodeByPath(const std::string& path, const std::string& separator) {
    PutCurrentId(RootId);
    const Node* const root = GetCurrentNode().data;
    if (root == nullptr) {
        return 0;
    }
    const std::string prefix = separator + root->GetName();
    if (path.compare(0, prefix.size(), prefix) != 0) {
        return 0;
    }
    unsigned int id = RootId;
    std::size_t separatorPlace = prefix.size();
    while (id != 0 && separatorPlace != std::string::npos) {
        const std::size_t start = separatorPlace + separator.size();
        if (start > path.size()) {
            throw std::out_of_range("invalid string position");
        }
        separatorPlace = path.find(separator, start);
        id = children_.Find(id, std::string_view(path).substr(start, separatorPlace - start));
    }
    return id;
}

std::uint64_t Tree::WriteStreamDataset(const float* const data, std::uint32_t count, std::uint8_t width) {
    logDataset(count, width);
    return File.PutDataset(Format::HeavyData, data, count, width);
}

std::uint64_t Tree::WriteStreamDataset(const unsigned int* const data, std::uint32_t count,
                                       std::uint8_t width) {
    logDataset(count, width);
    return File.PutDataset(Format::HeavyData, data, count, width);
}

// --- Saving

void Tree::SaveFile(QelTnf::TnFile& container, const std::string& comment) {
    if (container.GetStream() == nullptr) {
        return;
    }
    SaveTree(container);
    SaveGlobalInfo(container, comment);
    for (const std::string& name : {Format::HeavyData, Format::MoxTree, Format::LightData, Format::Attributes,
                                    Format::Resources, Format::GlobalInformation, Format::ViewPoints}) {
        container.SetBlockFlags(name, QelTnf::Format::BlockCompressed);
    }
    container.GetIndex().WriteAllBuffersToFileStream(container.GetStream());
    container.CloseFile();
}

void Tree::SaveTree(QelTnf::TnFile& container) {
    QEL_LOG("QelMox::Tree::SaveTree", "Saving mox tree ... ");
    SaveStreams streams(container);
    streams.moxTree.Put(static_cast<int>(GetNodes().size()));
    for (const auto& node : GetNodes()) {
        SaveNode(streams, node);
    }
    QEL_LOG("QelMox::Tree::SaveTree", "Mox tree saved. ");
}

void Tree::SaveNode(SaveStreams& streams, const QelAdt::TreeNode<Node*>& node) {
    QelTnf::BlockStream& moxTree = streams.moxTree;
    moxTree.Put(node.id);
    moxTree.Put(node.parent);
    moxTree.Put(node.previous);
    moxTree.Put(node.next);
    moxTree.Put(node.firstChild);
    moxTree.Put(node.lastChild);
    moxTree.Put(node.data != nullptr ? std::string_view(node.data->GetName()) : std::string_view());
    moxTree.Put(node.data != nullptr ? node.data->GetTypeName() : std::string());
    moxTree.Put(node.data != nullptr ? node.data->GetVersion() : std::string());
    // The comparison can't succeed with the present file version: all files have 64-bit positions.
    const std::uint64_t lightPosition = streams.lightData.GetSize();
    if (Format::FileVersion == Format::NarrowFileVersion) {
        // Kept though nothing calls it; see docs/oddities.md.
        moxTree.Put(static_cast<unsigned int>(lightPosition));
    } else {
        moxTree.Put(lightPosition);
    }
    if (node.data != nullptr) {
        SaveDescriptor(streams, *node.data);
    }
}

void Tree::SaveDescriptor(SaveStreams& streams, Node& payload) {
    const std::string type = payload.GetTypeName();
    if (type == Format::GroupType) {
        saveGroup(streams.lightData, streams.attributes, static_cast<const Group&>(payload));
    }
    if (type == Format::ShapeType) {
        streams.resources.Put(static_cast<const Shape&>(payload).GetMaterial());
    }
    if (type == Format::GeometryType) {
        static_cast<const Geometry&>(payload).WriteTn(streams.lightData, streams.heavyData,
                                                      streams.attributes);
    }
    if (type == Format::NodeSetsType) {
        auto& nodeSets = static_cast<NodeSets&>(payload);
        nodeSets.WriteHeavy(streams.container, Format::HeavyData);
        saveNodeSets(streams.lightData, nodeSets);
    }
}

void Tree::SaveGlobalInfo(QelTnf::TnFile& container, const std::string& comment) {
    QEL_LOG("QelMox::Tree::SaveGlobalInfo", "Saving global information ...");
    FillCurrentModifier(comment);
    ModifierInfos.push_back(CurrentModifier);
    container.GetIndex().Put(Format::GlobalInformation, ModifierInfos);
    container.GetIndex().Put(Format::GlobalInformation, ResultAttributesList);
    container.SetBlockFlags(Format::GlobalInformation, QelTnf::Format::BlockCompressed);
    QEL_LOG("QelMox::Tree::SaveGlobalInfo", "Global information saved.");
}

void Tree::FillCurrentModifier(const std::string& comment) {
    CurrentModifier.Date = currentDate();
    CurrentModifier.FormatVersion = FileVersion;
    if (CurrentModifier.CollectHostInfo != 0) {
        CurrentModifier.Computer = QelUtil::Platform::computerName();
        CurrentModifier.User = QelUtil::Platform::userName();
    }
    CurrentModifier.Comment = comment;
}

void Tree::WriteAttributes(QelTnf::BlockStream& stream, const QelUtil::AttributeList& list) {
    putKeys(stream, list);
    putValues(stream, list, AttributeValue::Integer,
              [](const AttributeValue& value) { return value.integer; });
    putValues(stream, list, AttributeValue::Float, [](const AttributeValue& value) { return value.real; });
    putValues(stream, list, AttributeValue::Double,
              [](const AttributeValue& value) { return value.longReal; });
    putValues(stream, list, AttributeValue::Text,
              [](const AttributeValue& value) -> const std::string& { return value.text; });
}

} // namespace QelMox
