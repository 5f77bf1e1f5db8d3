#pragma once

#include <string>

namespace QelMox {

/// The payload of a node of the tree. Each class names its type and the version of its record; from these
/// texts in the file a reader knows what follows.
class Node {
public:
    explicit Node(std::string name);
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    virtual ~Node();

    virtual std::string GetTypeName() const;
    virtual std::string GetVersion() const;
    virtual bool GetFlag() const;
    // These do nothing; they keep their places in the order of the virtual operations.
    // Kept though nothing calls it; see docs/oddities.md.
    virtual void Reserved4() {}
    virtual void Reserved5() {}
    virtual void Reserved6() {}
    virtual void Reserved7() {}

    const std::string& GetName() const { return name_; }

private:
    const std::string name_;
};

} // namespace QelMox
