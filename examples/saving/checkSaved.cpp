#include "checkSaved.h"

#include <MoxReader/BlockContent.h>
#include <MoxReader/Error.h>
#include <MoxReader/File.h>
#include <MoxReader/Model.h>

#include <stdexcept>
#include <string>

namespace Examples {

// [check]
void checkSaved(const std::filesystem::path& path) {
    const MoxReader::File file(path);
    if (file.index().isDisplaced()) {
        throw std::runtime_error(
            "blocks lie over others; set MOXWRITER_DEFAULT_BLOCK_SIZE above the largest array");
    }
    if (file.index().end != file.size()) {
        throw std::runtime_error("the file is not as long as its blocks; is the disk full?");
    }
    for (const MoxReader::BlockRecord& block : file.blocks()) {
        if (const auto damage = MoxReader::readBlockContent(file.source(), block).damage) {
            throw std::runtime_error("block " + std::to_string(block.id) +
                                     " is damaged: " + std::string(MoxReader::errorText(*damage)));
        }
    }
    MoxReader::readModel(file);
}
// [/check]

} // namespace Examples
