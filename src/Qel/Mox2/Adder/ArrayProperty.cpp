#include <Qel/Mox2/Adder/ArrayProperty.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>
#include <Qel/Mox2/Helper/Attributes.h>

#include <limits>
#include <utility>

namespace Qel::Mox2::Adder {

using Helper::Attributes::toAttributeList;

// The ids are assigned, not copy-constructed: that would fail for an array of negative size, which update()
// is to refuse.
template <typename PropertyT, typename IdsT, typename StepsT>
ArrayProperty<PropertyT, IdsT, StepsT>::ArrayProperty(PropertyT property, const IdsT& ids,
                                                      const StepsT& steps)
    : property_(std::move(property)), steps_(steps) {
    ids_ = ids;
}

template <typename PropertyT, typename IdsT, typename StepsT>
void ArrayProperty<PropertyT, IdsT, StepsT>::update(Database& database) {
    constexpr Eigen::Index largestCount = std::numeric_limits<std::int32_t>::max();
    database.assertOpenedForWriting();
    database.assertNotEmpty();
    const Eigen::Index rows = property_.data->rows();
    if (ids_.size() == 0 || rows == 0) {
        return;
    }
    if (ids_.size() < 0 || rows < 0) {
        QEL_THROW(Exception::UnderflowError());
    }
    if (ids_.size() > largestCount || rows > largestCount) {
        QEL_THROW(Exception::OverflowError());
    }
    // Only the low 32 bits of the number of columns count. A one-dimensional array has one column.
    if (static_cast<std::uint32_t>(property_.data->cols()) != property_.width) {
        QEL_THROW(Exception::InvalidArguments());
    }
    QelMox::Tree& tree = database.tree();
    const std::uint64_t position =
        tree.WriteStreamDataset(property_.data->data(), static_cast<std::uint32_t>(rows), property_.width);
    record(tree, position, PropertyT::geomTypeFrom(property_.type));
}

template <typename PropertyT, typename IdsT, typename StepsT>
void ArrayProperty<PropertyT, IdsT, StepsT>::record(QelMox::Tree& tree, std::uint64_t position,
                                                    QelMox::VariableType variableType) const {
    const QelUtil::AttributeList propertyAttributes = toAttributeList(property_.attributes);
    Holder holder;
    for (const unsigned int id : ids_) {
        for (const StepData& step : steps_) {
            const std::string key = keyOf(step);
            QelUtil::AttributeList attributes = propertyAttributes;
            attributes.merge(toAttributeList(step.attributes));

            tree.PutCurrentId(id);
            auto* const geometry = dynamic_cast<QelMox::Geometry*>(tree.GetCurrentNode().data);
            if (geometry == nullptr) {
                continue;
            }
            // Room for the position is made before the entry, and the attributes come last: even when memory
            // runs out, every entry has its position and its numbers, without which the model could never be
            // closed.
            std::uint64_t& place = geometry->positions[key];
            const std::uint64_t index = geometry->FindOrAddDataset(key);
            QelMox::DatasetEntry& entry = geometry->GetDataset(index);
            describeNumbers(entry, variableType);
            place = position;
            entry.SetAttributes(attributes);
            // No node has the id 0; an entry there could be neither a link nor the target of one.
            if (id != 0) {
                linkTo(holder, tree, id, index);
            }
        }
    }
}

template <typename PropertyT, typename IdsT, typename StepsT>
std::string ArrayProperty<PropertyT, IdsT, StepsT>::keyOf(const StepData& step) const {
    return step.name.empty() ? property_.name : property_.name + QelMox::Format::StepSeparator + step.name;
}

template <typename PropertyT, typename IdsT, typename StepsT>
void ArrayProperty<PropertyT, IdsT, StepsT>::describeNumbers(QelMox::DatasetEntry& entry,
                                                             QelMox::VariableType variableType) const {
    const auto rows = static_cast<std::uint32_t>(property_.data->rows());
    entry.variableType = variableType;
    entry.values = QelMox::NumericArray();
    entry.values.data = property_.data->data();
    entry.values.sizeInBytes = std::uint64_t{property_.width} * rows * sizeof(*property_.data->data());
    entry.values.width = property_.width;
    entry.values.elementTag = PropertyT::Traits::elementTag;
}

// An entry that has become a link stays one, even when its key is used again.
template <typename PropertyT, typename IdsT, typename StepsT>
void ArrayProperty<PropertyT, IdsT, StepsT>::linkTo(Holder& holder, QelMox::Tree& tree, unsigned int id,
                                                    std::uint64_t index) {
    if (holder.first) {
        holder = {.first = false, .nodeId = id, .index = static_cast<unsigned int>(index)};
        return;
    }
    tree.SetCurrentId(id);
    QelMox::DatasetEntry& entry =
        dynamic_cast<QelMox::Geometry&>(*tree.GetCurrentNode().data).GetDataset(index);
    entry.isLink = true;
    entry.linkNodeId = holder.nodeId;
    entry.linkIndex = holder.index;
    entry.attributes.clear();
}

template class ArrayProperty<ColumnProperty<unsigned int>, IdArray, std::vector<StepData>>;
template class ArrayProperty<ColumnProperty<float>, IdArray, std::vector<StepData>>;
template class ArrayProperty<TableProperty<unsigned int>, IdArray, std::vector<StepData>>;
template class ArrayProperty<TableProperty<float>, IdArray, std::vector<StepData>>;

} // namespace Qel::Mox2::Adder
