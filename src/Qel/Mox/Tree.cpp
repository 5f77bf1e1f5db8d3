#include <Qel/Mox/Tree.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Log/Log.h>
#include <Qel/Mox/Format.h>
#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/NodeSets.h>
#include <Qel/Mox/Shape.h>
#include <Qel/Tnf/Format.h>
#include <Qel/Util/Platform.h>

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

void saveGroup(QelTnf::TnFile& container, const Group& group) {
    QelTnf::Index& index = container.GetIndex();
    index.Put(Format::LightData, group.GetTranslation().data(), sizeof(group.GetTranslation()));
    index.Put(Format::LightData, group.GetRotation().data(), sizeof(group.GetRotation()));
    index.Put(Format::LightData, group.GetScale().data(), sizeof(group.GetScale()));
    Tree::WriteAttributes(container, Format::Attributes, group.GetAttributes());
    index.Put(Format::LightData, group.GetGroupKind());
}

// Kept though nothing calls it; see docs/oddities.md.
void saveNodeSets(QelTnf::TnFile& container, NodeSets& nodeSets) {
    nodeSets.WriteHeavy(container, Format::HeavyData);
    QelTnf::Index& index = container.GetIndex();
    index.Put(Format::LightData, Format::NodeSetsMark);
    index.Put(Format::LightData, static_cast<unsigned int>(nodeSets.sets.size()));
    index.Put(Format::LightData, nodeSets.heavyPosition);
    index.Put(Format::LightData, nodeSets.heavySize);
}

void logDataset(std::uint32_t count, std::uint8_t width) {
    constexpr int valueSize = 4;
    QEL_LOG("QelMox::Tree::WriteStreamDataset", "Writing Dataset of size " << width * count << " width "
                                                                           << unsigned{width}
                                                                           << " datatype size " << valueSize);
}

} // namespace

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
    container.GetIndex().Put(Format::MoxTree, static_cast<int>(GetNodes().size()));
    for (const auto& node : GetNodes()) {
        SaveNode(container, node);
    }
    QEL_LOG("QelMox::Tree::SaveTree", "Mox tree saved. ");
}

void Tree::SaveNode(QelTnf::TnFile& container, const QelAdt::TreeNode<Node*>& node) {
    QelTnf::Index& index = container.GetIndex();
    index.Put(Format::MoxTree, node.id);
    index.Put(Format::MoxTree, node.parent);
    index.Put(Format::MoxTree, node.previous);
    index.Put(Format::MoxTree, node.next);
    index.Put(Format::MoxTree, node.firstChild);
    index.Put(Format::MoxTree, node.lastChild);
    index.Put(Format::MoxTree, node.data != nullptr ? node.data->GetName() : std::string());
    index.Put(Format::MoxTree, node.data != nullptr ? node.data->GetTypeName() : std::string());
    index.Put(Format::MoxTree, node.data != nullptr ? node.data->GetVersion() : std::string());
    // The comparison can't succeed with the present file version: all files have 64-bit positions.
    const std::uint64_t lightPosition = index.GetStreamSize(Format::LightData);
    if (Format::FileVersion == Format::NarrowFileVersion) {
        // Kept though nothing calls it; see docs/oddities.md.
        index.Put(Format::MoxTree, static_cast<unsigned int>(lightPosition));
    } else {
        index.Put(Format::MoxTree, lightPosition);
    }
    if (node.data != nullptr) {
        SaveDescriptor(container, *node.data);
    }
}

void Tree::SaveDescriptor(QelTnf::TnFile& container, Node& payload) {
    const std::string type = payload.GetTypeName();
    if (type == Format::GroupType) {
        saveGroup(container, static_cast<const Group&>(payload));
    }
    if (type == Format::ShapeType) {
        container.GetIndex().Put(Format::Resources, static_cast<const Shape&>(payload).GetMaterial());
    }
    if (type == Format::GeometryType) {
        static_cast<const Geometry&>(payload).WriteTn(container, Format::LightData, Format::HeavyData,
                                                      Format::Attributes);
    }
    if (type == Format::NodeSetsType) {
        saveNodeSets(container, static_cast<NodeSets&>(payload));
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

void Tree::WriteAttributes(QelTnf::TnFile& container, const std::string& blockName,
                           const QelUtil::AttributeList& list) {
    using QelUtil::AttributeValue;
    std::vector<std::string> keys;
    std::vector<unsigned char> kinds;
    std::vector<unsigned int> integers;
    std::vector<float> reals;
    std::vector<double> longReals;
    std::vector<std::string> texts;
    for (const auto& [key, value] : list) {
        keys.push_back(key);
        kinds.push_back(static_cast<unsigned char>(value.kind));
        if (value.kind == AttributeValue::Integer) {
            integers.push_back(value.integer);
        } else if (value.kind == AttributeValue::Float) {
            reals.push_back(value.real);
        } else if (value.kind == AttributeValue::Double) {
            longReals.push_back(value.longReal);
        } else if (value.kind == AttributeValue::Text) {
            texts.push_back(value.text);
        }
    }
    QelTnf::Index& index = container.GetIndex();
    index.Put(blockName, keys);
    index.Put(blockName, kinds);
    index.Put(blockName, integers);
    index.Put(blockName, reals);
    index.Put(blockName, longReals);
    index.Put(blockName, texts);
}

} // namespace QelMox
