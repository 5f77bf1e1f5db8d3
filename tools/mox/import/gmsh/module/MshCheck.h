#pragma once

#include "MshNumbers.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace MoxTool {

/// Reads through a Gmsh mesh file before the Gmsh library does, since the library overlooks some damage and
/// crashes on other damage.
///
/// Every section must have an end. In files of version 2 and 4.1, moreover, the sections of nodes and
/// elements must hold as many numbers as they say, and elements must refer to existing nodes.
class MshCheck {
public:
    /// The number of nodes of an element type; 0 or an exception for a type that does not exist.
    using NodesOfType = std::function<int(int type)>;

    MshCheck(const std::string& path, NodesOfType nodesOfType);

    /// To be called once.
    /// @throws Failure if the file is damaged or cut off.
    void run();

    // What run() has found.

    /// The version of the format, as the file has it.
    const std::string& version() const { return formatVersion_; }
    const std::vector<std::string>& sections() const { return sectionNames_; }
    /// 0 if they were not counted.
    std::uint64_t nodeCount() const { return nodeTags_.size(); }

private:
    void readSections();
    void readFormat();
    void skipTo(const std::string& end);
    bool isVersion2() const { return formatVersion_.starts_with("2"); }
    bool isVersion41() const { return formatVersion_ == "4.1"; }

    MshNumbers numbers();
    void readNodes2();
    void readElements2();
    void readElements2(MshNumbers& numbers, std::size_t count);
    std::size_t readElementBlock2(MshNumbers& source);
    void readNodes41();
    void readElements41();
    void addNode(std::uint64_t tag);
    void checkNode(std::uint64_t tag) const;
    void finishNodes();
    std::size_t nodesOf(int type) const;
    std::size_t countLine();

    std::string path_;
    NodesOfType nodesOfType_;
    std::ifstream file_;
    MshNumbers::Form form_ = MshNumbers::Form::Words;
    std::string formatVersion_;
    std::vector<std::string> sectionNames_;
    std::vector<std::uint64_t> nodeTags_; // sorted, once the section is read
};

} // namespace MoxTool
