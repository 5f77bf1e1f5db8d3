#pragma once

#include <string>

/// Each of these saves a model that shows one thing; see tests/golden/README.md.
namespace Golden {

void saveEmptyModel(const std::string& path);
void saveRootShape(const std::string& path);
void saveGroups(const std::string& path);
void saveMaterials(const std::string& path);
void saveAttributes(const std::string& path);
void saveTypes(const std::string& path);
void saveMesh(const std::string& path);
void saveSteps(const std::string& path);
void saveLinks(const std::string& path);
void saveNames(const std::string& path);
void saveNumbers(const std::string& path);
void saveNodeSets(const std::string& path);
void saveSmallBlocks(const std::string& path);
void saveIndexBlock(const std::string& path);
void saveLowBlocks(const std::string& path);

} // namespace Golden
