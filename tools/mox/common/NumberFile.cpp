#include "NumberFile.h"

#include "requireNumbersFit.h"

#include <MoxReader/Format.h>

namespace MoxTool {

NumberFile::NumberFile(const std::string& name, bool noLimit)
    : name_(name), opened_(name), heavy_(opened_.file(), opened_.model()) {
    if (!noLimit) {
        requireNumbersFit(name_, model(), heavy_);
    }
}

const MoxReader::Dataset& NumberFile::holder(const MoxReader::Dataset& dataset) const {
    return *explainErrors(name_, [&] { return &model().resolve(dataset); });
}

Numbers NumberFile::read(const MoxReader::Dataset& dataset) {
    return explainErrors(name_, [&]() -> Numbers {
        if (model().resolve(dataset).elementTag == MoxReader::Format::UnsignedTag) {
            return heavy_.readUnsigned(dataset);
        }
        return heavy_.readFloats(dataset);
    });
}

std::vector<MoxReader::NodeSet> NumberFile::readSets(const MoxReader::NodeSets& descriptor) {
    return explainErrors(name_, [&] { return heavy_.readNodeSets(descriptor); });
}

} // namespace MoxTool
