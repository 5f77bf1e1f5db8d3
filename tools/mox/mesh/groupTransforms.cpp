#include "groupTransforms.h"

namespace MoxTool {

namespace {

Eigen::Vector3d vectorOf(const std::array<float, 3>& values) {
    return {values[0], values[1], values[2]};
}

Eigen::Affine3d rotationOf(const std::array<float, 4>& axisAndAngle) {
    const Eigen::Vector3d axis(axisAndAngle[0], axisAndAngle[1], axisAndAngle[2]);
    if (axisAndAngle[3] == 0 || axis.isZero(0)) {
        return Eigen::Affine3d::Identity();
    }
    return Eigen::Affine3d(Eigen::AngleAxisd(axisAndAngle[3], axis.normalized()));
}

Eigen::Affine3d ownTransform(const MoxReader::Node& node) {
    const auto* group = node.group();
    if (group == nullptr) {
        return Eigen::Affine3d::Identity();
    }
    return Eigen::Translation3d(vectorOf(group->translation)) * rotationOf(group->rotation) *
           Eigen::Scaling(vectorOf(group->scale));
}

} // namespace

std::vector<Eigen::Affine3d> groupTransforms(const MoxReader::Model& model) {
    std::vector<Eigen::Affine3d> transforms;
    transforms.reserve(model.nodes().size());
    for (const auto& node : model.nodes()) {
        const auto own = ownTransform(node);
        transforms.push_back(node.parent == 0 ? own : transforms[node.parent - 1] * own);
    }
    return transforms;
}

} // namespace MoxTool
