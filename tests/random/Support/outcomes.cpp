#include "random/Support/outcomes.h"

#include <utility>

namespace RandomUse {

namespace {

Outcome failure(std::string exception, int code, std::string text, std::string file, std::string function) {
    return {{}, std::move(exception), code, std::move(text), std::move(file), std::move(function)};
}

Outcome invalidArguments(const std::string& text, const std::string& file, const std::string& function) {
    return failure("InvalidArguments", 3, text, file, function);
}

Outcome invalidState(const std::string& text, const std::string& assertion) {
    return failure("InvalidObjectState", 17, text, "Qel/Mox2/Database", "Qel::Mox2::Database::" + assertion);
}

} // namespace

Outcome nothing() {
    return {};
}

Outcome returned(std::vector<unsigned int> ids) {
    Outcome outcome;
    outcome.ids = std::move(ids);
    return outcome;
}

Outcome fileNotOpen() {
    return invalidState("File not open.", "assertOpenedForWriting");
}

Outcome notInitialized() {
    return invalidState("Not initialized", "assertNotEmpty");
}

Outcome notEmpty() {
    return invalidState("Not Empty", "assertEmpty");
}

Outcome fileExists() {
    return failure("FileOpenException", 5, "File exists.", "Qel/Tnf/TnFile",
                   "QelTnf::TnFile::OpenFileForWriting");
}

Outcome unableToOpen(const std::string& path) {
    return failure("MiscelleneousException", 2, "Unable to open file \"" + path + "\"", "Qel/Tnf/TnFile",
                   "QelTnf::TnFile::OpenFile(");
}

Outcome savingTheBufferFailed() {
    return failure("FileWriteException", 7, "Saving the buffer failed", "Qel/Tnf/Index",
                   "QelTnf::Index::WriteBufferToFileStream");
}

Outcome invalidRootType() {
    return invalidArguments("Invalid node type for root node", "Qel/Mox2/Adder/Node",
                            "Qel::Mox2::Adder::Node::addRootNode");
}

Outcome invalidNodeType() {
    return invalidArguments("Invalid node type", "Qel/Mox2/Adder/Node",
                            "Qel::Mox2::Adder::Node::addNonRootNode");
}

Outcome currentNodeUnknown() {
    return failure("KeyNotFound", 14, "Key not found", "Qel/Adt/AdtTree", "GetCurrentNode");
}

Outcome outOfBounds(const std::string& operation) {
    return failure("OutOfBounds", 11, "Out of bounds error", "Qel/Mox2/Modifier/" + operation,
                   "Qel::Mox2::Modifier::" + operation + "::update");
}

Outcome invalidStringPosition() {
    return failure("std::out_of_range", 0, "invalid string position", "", "");
}

Outcome invalidProperties() {
    return invalidArguments("Invalid properties", "Qel/Mox2/Modifier/NodeData",
                            "Qel::Mox2::Modifier::NodeData::update");
}

Outcome invalidPropertyType() {
    return invalidArguments("Invalid property type", "Qel/Mox2/Modifier/NodeData",
                            "Qel::Mox2::Modifier::NodeData::notNull");
}

Outcome valueOfAnotherType() {
    return failure("TemplateSpecializationNotDefined", 19, "Template specialization not defined",
                   "Qel/Variant/Visitor/ValueGetter", "Qel::Variant::Visitor::ValueGetter");
}

Outcome invalidArraySize(const std::string& nodeClass, const std::string& setter) {
    return invalidArguments("invalid array size", "Qel/Mox/" + nodeClass,
                            "QelMox::" + nodeClass + "::" + setter);
}

Outcome attributeRefused() {
    return invalidArguments("Invalid arguments", "Qel/Mox2/Helper/Attributes",
                            "Qel::Mox2::Helper::Attributes::AttributeValueGetter");
}

Outcome relativePath() {
    return invalidArguments("Relative paths not supported", "Qel/Mox2/Adder/Components",
                            "Qel::Mox2::Adder::Components");
}

Outcome otherRoot() {
    return failure("NotYetImplemented", 20, "Not yet implemented", "Qel/Mox2/Adder/Components",
                   "Qel::Mox2::Adder::Components");
}

Outcome noName() {
    return invalidArguments("Can't guess result name for specified type", "Qel/Mox2/ArrayProperty",
                            "Qel::Mox2::ArrayProperty");
}

Outcome noWidth() {
    return invalidArguments("Can't guess result width for specified type", "Qel/Mox2/ArrayProperty",
                            "Qel::Mox2::ArrayProperty");
}

Outcome negativeCount() {
    return failure("UnderflowError", 13, "Underflow error", "Qel/Mox2/Adder/ArrayProperty",
                   "Qel::Mox2::Adder::ArrayProperty");
}

Outcome otherWidth() {
    return invalidArguments("Invalid arguments", "Qel/Mox2/Adder/ArrayProperty",
                            "Qel::Mox2::Adder::ArrayProperty");
}

Outcome noMemory() {
    return failure("std::bad_alloc", 0, "", "", "");
}

} // namespace RandomUse
