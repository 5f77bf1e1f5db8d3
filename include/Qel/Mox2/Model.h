#pragma once

#include <Qel/Mox2/Array1d.h>
#include <Qel/Mox2/Array2d.h>
#include <Qel/Mox2/Attributes.h>
#include <Qel/Mox2/DatasetType.h>
#include <Qel/Mox2/NodeProperties.h>
#include <Qel/Mox2/NodeType.h>
#include <Qel/Mox2/PropertyType.h>
#include <Qel/Mox2/SaverOptions.h>
#include <Qel/Mox2/Step.h>
#include <Qel/Mox2/StepList.h>
#include <Qel/Util/Export.h>

#include <map>
#include <string>
#include <vector>

namespace Qel::Mox2 {

class Database;

/// A finite-element model on its way into a file: an assembly tree of groups and shapes, and numbers on the
/// geometry of the shapes.
///
/// The order of calls: saveTo() once; then the first node, by addNode() or addAssemblyComponents(); then
/// nodes, node data and arrays in any order; close() last, because only then are the tree and the file's
/// catalogue written. After close() the same object can save another model.
///
/// A model is *Empty* from construction to saveTo() and after close(), and *Open* in between. Nodes have ids:
/// 1 for the first, counting up in order of creation; 0 means none. One node is the *current* node; new nodes
/// go below it.
///
/// @par Failures
/// What a call did before it failed stays done, and the model stays usable; nothing is rolled back. Every
/// failure is an exception of Qel/Exception/Exception.h or of the standard library; docs/exceptions.md lists
/// them with their cures. The results of writing to the disk are not examined: check the finished file.
///
/// When memory runs out, a call throws `std::bad_alloc` or Qel::Exception::MemoryAllocationException and can
/// be repeated; addArrayProperty() and close() say what can be lost.
///
/// @par Threads
/// A model can be used by one thread at a time. addArrayProperty() must not run on two threads at once, not
/// even for two models.
///
/// @par Environment
/// `MOXWRITER_DEFAULT_BLOCK_SIZE`, a decimal number of bytes read anew at each use, replaces both the step by
/// which buffers grow (10,485,760) and the size at which a block of the file is full (209,715,200).
class MOXWRITER_EXPORT Model {
public:
    /// A number that is never a node's id. No call returns or expects it; "no node" is 0.
    static constexpr unsigned int INVALID_ID = 0xFFFFFFFFU;

    /// Makes an Empty model. Opens no file.
    Model();
    Model(const Model&) = delete;
    /// Makes this model share the database of `other`; nothing counts the owners. The former database of this
    /// model is neither closed nor freed, and only one of the two models may ever be destroyed.
    Model& operator=(const Model& other);
    /// Does what close() does. An exception that close() would throw ends the process here.
    ~Model();

    /// Opens the file and writes its first bytes. The model is then Open, with no node.
    ///
    /// @param path    The file, replaced or not as `options.overwrite` says.
    /// @throws Qel::Exception::InvalidObjectState "Not Empty" if the model is Open. Nothing changes.
    /// @throws Qel::Exception::FileOpenException "File exists." if the file exists and must not be replaced.
    /// @throws Qel::Exception::MiscelleneousException with the path if the file can't be opened.
    ///
    /// After the last two the model is Open without a file: close() writes nothing and makes the model Empty.
    /// Until then nodes and arrays can be added, but once the arrays fill a block of the file,
    /// addArrayProperty() throws Qel::Exception::FileWriteException "Saving the buffer failed".
    void saveTo(const std::string& path, const SaverOptions& options);

    /// Writes everything that is still in memory, completes the file and closes it. The model is then Empty.
    /// Does nothing on an Empty model.
    ///
    /// @throws Qel::Exception::FileWriteException "Saving the buffer failed" if the file can't be positioned.
    /// @throws Qel::Exception::MemoryAllocationException if a block can't be compressed for lack of memory.
    ///
    /// After an exception the model is still Open, and its file can no longer be saved. close() can be called
    /// again, but it makes a damaged file, and once blocks have gone out it fails every time; the destructor
    /// then ends the process. Save anew, through another model.
    ///
    /// If zlib itself gets no memory for a block, the block's content is lost without an exception; the
    /// finished file shows a compressed block of length 0.
    ///
    /// @par Cost
    /// One pass over the tree; every block still in memory is compressed on this thread.
    void close();

    /// The separator "/" of paths.
    static const std::string& defaultPathSeparator();

    /// Adds a node below the current node, or the first node of the model, and makes it current.
    ///
    /// A Shape below another node gets a geometry of the same name below it, and so takes two ids. The
    /// geometry becomes current, and its id is returned: that is the id for addArrayProperty(). A Shape as
    /// the first node gets no geometry. To add a sibling of a Shape, first call moveToParentNode() twice.
    ///
    /// @param type       Group or Shape; for the first node also RootMarkedGroup or RootGroup.
    /// @param attributes Kept for groups; ignored for shapes.
    /// @return the id of the node that is now current.
    /// @throws Qel::Exception::InvalidObjectState "File not open." if the model is Empty.
    /// @throws Qel::Exception::InvalidArguments "Invalid node type for root node" or "Invalid node type".
    /// @throws Qel::Exception::InvalidArguments if an attribute is of a kind that a file can't keep.
    /// @throws Qel::Exception::KeyNotFound if addArrayProperty() left an unknown id current.
    ///
    /// A call that fails adds no node, with one exception: if memory suffices for a Shape but not for its
    /// geometry, the Shape stays, without a geometry, as the current node.
    unsigned int addNode(NodeType type, const std::string& name,
                         const Attributes& attributes = emptyAttributes());

    /// Makes the node `id` current. Id 1 exists from saveTo() on.
    ///
    /// @throws Qel::Exception::InvalidObjectState "Not initialized" if the model is Empty.
    /// @throws Qel::Exception::OutOfBounds if there is no node with this id. The current node stays the same.
    void setCurrentNodeId(unsigned int id);

    /// Makes the parent of the current node current; at the root it does nothing.
    ///
    /// @throws Qel::Exception::InvalidObjectState "Not initialized" if the model is Empty.
    /// @throws Qel::Exception::KeyNotFound if addArrayProperty() left an unknown id current.
    void moveToParentNode();

    /// Looks up a node by its path: for each level from the root on, the separator and the node's name, as in
    /// "/car/body/door". Makes the root current, whether or not the node is found; an empty path leaves the
    /// current node as it is.
    ///
    /// A shape's own path finds the shape; for its geometry the path repeats the shape's name at the end.
    /// Among siblings of the same name the oldest is found.
    ///
    /// @param separator Separates two names as a whole, not by each of its characters.
    /// @return the node's id, or 0 if there is none.
    /// @throws Qel::Exception::InvalidObjectState "Not initialized" if the model is Empty.
    /// @throws std::out_of_range "invalid string position" if the path names only the root.
    unsigned int getNodeId(const std::string& path, const std::string& separator = defaultPathSeparator());

    /// The same for a path given as the names from the root on, which can hold any byte except 0x1E.
    unsigned int getNodeId(const std::vector<std::string>& components);

    /// Sets properties and attributes of a node, in ascending order of the properties' numbers, and makes the
    /// node current. Given the geometry of a shape, it works on the shape and makes the shape current.
    ///
    /// @param id         A group, for transforms and attributes, or a shape or its geometry, for the
    ///                   material.
    /// @param properties See PropertyType for what each needs.
    /// @param attributes Added to those of a group, replacing those with the same key; ignored for other
    ///                   nodes.
    /// @throws Qel::Exception::InvalidObjectState "File not open." if the model is Empty.
    /// @throws Qel::Exception::OutOfBounds if there is no node with this id.
    /// @throws Qel::Exception::InvalidArguments "Invalid properties" for an unknown property number,
    ///         "Invalid property type" for one that the node doesn't have, "invalid array size" for a wrong
    ///         length, and without a message for an attribute of a kind that a file can't keep.
    /// @throws Qel::Exception::TemplateSpecializationNotDefined for a value of the wrong type, and always for
    ///         ShapeSwitch on a shape.
    ///
    /// Properties before the failing one stay set, and the current node has moved.
    void setNodeData(unsigned int id, const NodeProperties& properties,
                     const Attributes& attributes = emptyAttributes());

    /// Merges paths into the tree: adds the nodes that are missing and finds those that exist. Leaves the
    /// last node of the last path current.
    ///
    /// A path begins with the separator and the root's name. One that ends in the separator names a group,
    /// any other a shape with its geometry. A path of only the root's name makes a node of that name below
    /// the root.
    ///
    /// @param separator Begins each path, as a whole; within a path, each of its characters separates names.
    /// @return one id for each path, in order: of the group, or of the shape's geometry; 0 for an empty path.
    /// @throws Qel::Exception::InvalidObjectState "File not open." if the model is Empty and there is a path.
    /// @throws Qel::Exception::InvalidArguments "Relative paths not supported" for a path that does not begin
    ///         with the separator.
    /// @throws Qel::Exception::NotYetImplemented for a path below another root.
    ///
    /// Nodes of the paths before the failing one stay; merging the same paths again finds them.
    Array1d<unsigned int> addAssemblyComponents(const std::vector<std::string>& paths,
                                                const std::string& separator = defaultPathSeparator());

    /// The same for the keys of a map, in ascending order. The attributes of group paths are checked as by
    /// addNode() and then dropped; set them with setNodeData().
    ///
    /// @throws Qel::Exception::InvalidArguments also if an attribute is of a kind that a file can't keep; the
    ///         nodes of its path stay.
    Array1d<unsigned int> addAssemblyComponents(const std::map<std::string, Attributes>& paths,
                                                const std::string& separator = defaultPathSeparator());

    /// Writes an array once and attaches it to geometries, for one step or several. Leaves the last id
    /// current.
    ///
    /// The first geometry and step hold the numbers; all others refer to them. Ids of other kinds of nodes
    /// are skipped. A key (the name, and the step's name if it has one) that a geometry already has is
    /// overwritten. With no ids or no rows the call does nothing; with no steps it writes numbers that
    /// nothing refers to. The caller can reuse the array's memory as soon as the call returns.
    ///
    /// @tparam ArrayT    Array1d or Array2d of `float` or `unsigned int`. Array1d serves types of one column.
    /// @tparam IdsT      `unsigned int` for one node, `Array1d<unsigned int>` for several.
    /// @tparam StepsT    Step or StepList.
    /// @param type       What the numbers are; see DatasetType for the columns and the default name.
    /// @param data       One row for each node or element, row-major.
    /// @param ids        Geometries, as addNode() and addAssemblyComponents() return them.
    /// @param attributes Describe the dataset. A step's attributes are added to them; where both have a key,
    ///                   these win. "Category" = "Vibration" marks mode shapes. "Complex", "Contents",
    ///                   "DataSource", "DataType", "Structure" and keys that begin with "Link." are dropped.
    /// @throws Qel::Exception::InvalidArguments "Can't guess result name for specified type" or
    ///         "Can't guess result width for specified type"; without a message if the number of columns is
    ///         not the type's or if an attribute is of a kind that a file can't keep.
    /// @throws Qel::Exception::InvalidObjectState "File not open." if the model is Empty.
    /// @throws Qel::Exception::UnderflowError for a negative number of rows or ids.
    /// @throws Qel::Exception::KeyNotFound for an id that is not in the tree; that id is then current.
    /// @throws Qel::Exception::FileWriteException "Saving the buffer failed" if the file can't be positioned.
    /// @throws Qel::Exception::MemoryAllocationException if there is no memory for the numbers, or for
    ///         compressing a block that earlier calls have filled.
    ///
    /// After KeyNotFound and after a refused attribute the numbers are in the file, and the ids and steps
    /// before the failing one refer to them. After FileWriteException nothing refers to them.
    ///
    /// Arrays of earlier calls are lost if memory runs out while their block is compressed, here or in
    /// close(): with MemoryAllocationException, or without any exception if zlib itself gets no memory. The
    /// file does not always show the loss, because the numbers of later arrays can take the place of the lost
    /// ones. Save anew.
    ///
    /// @par Large arrays
    /// An array as large as a block of the file (209,715,200 bytes, see the environment above) fills one by itself.
    /// If that is the 19th block, numbers are lost without an exception. For a file of more than 3.7 GiB with such
    /// arrays, set `MOXWRITER_DEFAULT_BLOCK_SIZE` above the largest one before the first array is added;
    /// docs/large-models.md says what else bounds a model.
    ///
    /// @par Cost
    /// One pass over the numbers, whatever the number of ids and steps; full blocks are compressed and
    /// written on this thread.
    template <typename ArrayT, typename IdsT, typename StepsT>
    void addArrayProperty(DatasetType type, const ArrayT& data, const IdsT& ids, const StepsT& steps,
                          const Attributes& attributes = emptyAttributes());

    /// The same under a name of the caller's choice, which types without a default name need.
    template <typename ArrayT, typename IdsT, typename StepsT>
    void addArrayProperty(const std::string& name, DatasetType type, const ArrayT& data, const IdsT& ids,
                          const StepsT& steps, const Attributes& attributes = emptyAttributes());

private:
    static const Attributes& emptyAttributes();

    Database* database_;
};

} // namespace Qel::Mox2
