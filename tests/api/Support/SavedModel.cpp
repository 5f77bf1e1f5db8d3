#include "api/Support/SavedModel.h"

#include <stdexcept>

namespace Api {

namespace {

template <typename Content>
const Content& required(const Content* content) {
    if (content == nullptr) {
        throw std::logic_error("the node is of another kind");
    }
    return *content;
}

} // namespace

SavedModel::SavedModel(const std::string& path)
    : opened_(path), tree_(MoxReader::readModel(opened_)), heavy_(opened_, tree_) {}

const MoxReader::Group& SavedModel::group(std::uint32_t id) const {
    return required(node(id).group());
}

const MoxReader::Material& SavedModel::material(std::uint32_t id) const {
    return required(node(id).shape()).material;
}

const std::vector<MoxReader::Dataset>& SavedModel::datasets(std::uint32_t id) const {
    return required(node(id).geometry()).datasets;
}

std::vector<std::uint8_t> SavedModel::stream(std::string_view name) const {
    MoxReader::StreamReader reader = opened_.stream(name);
    return reader.readBytes(reader.size());
}

} // namespace Api
