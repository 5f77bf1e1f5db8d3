#pragma once

#include <Qel/Adt/AdtTree.h>
#include <Qel/Mox/ChildIndex.h>
#include <Qel/Mox/ModifierInfo.h>
#include <Qel/Mox/Node.h>
#include <Qel/Mox/ResultAttributes.h>
#include <Qel/Tnf/TnFile.h>
#include <Qel/Util/AttributeList.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace QelTnf {
class BlockStream;
}

namespace QelMox {

/// The model in memory, and its file. Owns the payload of every node.
///
/// Numbers go to the file while the model grows; nodes, descriptors and attributes stay until SaveFile().
class Tree : public QelAdt::Tree<Node*> {
public:
    /// A tree of only the root, without a payload and without a file.
    Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    ~Tree();

    /// Opens the file and writes its signature and version. Does nothing unless `*mode` is 0.
    /// @throws Qel::Exception::Exception what QelTnf::TnFile::OpenFileForWriting() throws.
    void SetStreamFile(const std::string& path, unsigned char overwrite, const int* mode);

    /// Makes the root current and gives it a group as its payload.
    /// @throws Qel::Exception::InvalidObjectState "Root node properties are already set", after the root has
    ///         become current.
    void SetRootGroup(const std::string& name, const QelUtil::AttributeList& attributes);
    void SetRootGroup(const std::string& name, unsigned char groupKind,
                      const QelUtil::AttributeList& attributes);
    /// The same with a shape, which gets no geometry.
    void SetRootShape(const std::string& name);

    /// Adds a child with a payload below the current node, and makes it current. The child is never in the
    /// tree without its payload, even when memory runs out.
    /// @throws Qel::Exception::KeyNotFound if no node has the current id; nothing changes.
    void AddChildNode(std::unique_ptr<Node> payload);

    /// Makes the child group of this name current, adding it if there is none.
    void AddGroupNode(const std::string& name);
    /// Makes the geometry of the child shape of this name current, adding the shape and the geometry if they
    /// are missing.
    void AddShapeNode(const std::string& name);

    /// Looks up a node by its path from the root on, and makes the root current.
    /// @param path The separator and a name for each level. After the root's name as many characters as the
    ///             separator has are skipped, whatever they are.
    /// @return the node's id, or 0 if there is none or if the root has no payload.
    /// @throws std::out_of_range "invalid string position" for a path of only the root.
    unsigned int FindNodeByPath(const std::string& path, const std::string& separator);

    /// Appends an array to the stream of the datasets; see QelTnf::TnFile::PutDataset().
    std::uint64_t WriteStreamDataset(const float* data, std::uint32_t count, std::uint8_t width);
    std::uint64_t WriteStreamDataset(const unsigned int* data, std::uint32_t count, std::uint8_t width);

    /// Writes everything that is still in memory, completes the file and closes it. Does nothing without an
    /// open file.
    void SaveFile(QelTnf::TnFile& container, const std::string& comment);
    /// Puts the record and the descriptor of each node into the file's blocks.
    void SaveTree(QelTnf::TnFile& container);
    /// Puts who wrote the file, and when, into the file's blocks.
    void SaveGlobalInfo(QelTnf::TnFile& container, const std::string& comment);

    /// Puts an attribute record: the keys, the kinds, and the values of each kind, in key order.
    static void WriteAttributes(QelTnf::BlockStream& stream, const QelUtil::AttributeList& list);

    std::string FileVersion;
    std::vector<ModifierInfo> ModifierInfos;
    std::vector<ResultAttributes> ResultAttributesList;
    ModifierInfo CurrentModifier;
    QelTnf::TnFile File;

private:
    template <typename NodeClass>
    bool MoveToChildOfClass(const std::string& name);
    struct SaveStreams;
    static void SaveNode(SaveStreams& streams, const QelAdt::TreeNode<Node*>& node);
    static void SaveDescriptor(SaveStreams& streams, Node& payload);
    void FillCurrentModifier(const std::string& comment);

    ChildIndex children_{GetNodes()};
};

} // namespace QelMox
