#include <Qel/Mox2/Adder/ArrayProperty.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Format.h>
#include <Qel/Mox2/Helper/Attributes.h>

#include <limits>
#include <utility>

namespace Qel::Mox2::Adder {

using Helper::Attributes::toAttributeList;

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
    // Filled while the first id is recorded: the steps before one whose attributes are refused have entries.
    std::vector<StepContent> contents;
    Holder holder;
    for (const unsigned int id : ids_) {
        for (std::size_t i = 0; i < steps_.size(); ++i) {
            if (i == contents.size()) {
                contents.push_back(contentOf(steps_[i], propertyAttributes));
            }
            tree.PutCurrentId(id);
            auto* const geometry = dynamic_cast<QelMox::Geometry*>(tree.GetCurrentNode().data);
            if (geometry == nullptr) {
                continue;
            }
            // The attributes come last: even when memory runs out, every entry has its position and its numbers,
            // without which the model could never be closed.
            const std::uint64_t index = geometry->FindOrAddDataset(contents[i].key);
            QelMox::DatasetEntry& entry = geometry->GetDataset(index);
            describeNumbers(entry, variableType);
            entry.position = position;
            // No node has the id 0; an entry there could be neither a link nor the target of one.
            if (id == 0 || holder.first) {
                entry.SetAttributes(contents[i].attributes);
            } else {
                entry.LinkTo(holder.nodeId, holder.index, contents[i].attributes);
            }
            if (id != 0 && holder.first) {
                holder = {.first = false, .nodeId = id, .index = static_cast<unsigned int>(index)};
            }
        }
    }
}

template <typename PropertyT, typename IdsT, typename StepsT>
auto ArrayProperty<PropertyT, IdsT, StepsT>::contentOf(const StepData& step,
                                                       const QelUtil::AttributeList& propertyAttributes) const
    -> StepContent {
    StepContent content{keyOf(step), propertyAttributes};
    content.attributes.merge(toAttributeList(step.attributes));
    return content;
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

template class ArrayProperty<ColumnProperty<unsigned int>, IdArray, std::vector<StepData>>;
template class ArrayProperty<ColumnProperty<float>, IdArray, std::vector<StepData>>;
template class ArrayProperty<TableProperty<unsigned int>, IdArray, std::vector<StepData>>;
template class ArrayProperty<TableProperty<float>, IdArray, std::vector<StepData>>;

} // namespace Qel::Mox2::Adder
