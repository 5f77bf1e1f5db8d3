#include "ExodusContent.h"

#include "cellKinds.h"
#include "exodus/ExodusFile.h"

namespace {

class ExodusReading {
public:
    explicit ExodusReading(const std::string& path) : file_(path) {}

    ModelContent read() {
        content_.title = file_.counts().title;
        content_.dimension = file_.dimension();
        for (const auto& record : file_.qaRecords()) {
            content_.qaRecords.push_back({record.program, record.version, record.date, record.time});
        }
        readNodes();
        for (const auto& block : file_.blocks()) {
            readBlock(block);
        }
        readNodalVariables();
        readElementVariables();
        readSteps();
        return content_;
    }

private:
    void readNodes() {
        const auto count = file_.counts().num_nodes;
        content_.zones = {static_cast<std::size_t>(count)};
        content_.nodeIds = file_.idMap(EX_NODE_MAP, count);
        content_.points.assign(3 * content_.zones[0], 0);
        for (int axis = 0; axis < file_.dimension(); ++axis) {
            const auto coordinates = file_.coordinates(axis);
            for (std::size_t node = 0; node < coordinates.size(); ++node) {
                content_.points[3 * node + static_cast<std::size_t>(axis)] = coordinates[node];
            }
        }
    }

    void readBlock(const MoxTool::ExodusBlock& source) {
        BlockContent block;
        block.id = source.id;
        block.name = source.name;
        block.type = source.elementType;
        block.vtkCell = vtkCellOf(block.type, source.nodesPerElement);
        block.lengths.assign(static_cast<std::size_t>(source.elementCount), source.nodesPerElement);
        if (cellKind(block.vtkCell).nodes == 0) {
            const auto lengths = file_.nodesOfEachElement(source);
            block.lengths.assign(lengths.begin(), lengths.end());
        }
        for (const auto node : file_.connectivity(source)) {
            block.nodes.push_back(node - 1);
        }
        const auto ids = file_.idMap(EX_ELEM_MAP, file_.counts().num_elem);
        block.elementIds.assign(ids.begin() + source.firstElement,
                                ids.begin() + source.firstElement + source.elementCount);
        content_.blocks.push_back(block);
    }

    void readNodalVariables() {
        const auto names = file_.variableNames(EX_NODAL);
        for (std::size_t place = 0; place < names.size(); ++place) {
            VariableContent variable{true, names[place], false, {}};
            for (std::size_t step = 0; step < file_.times().size(); ++step) {
                variable.values[{step, 0}] = file_.values(EX_NODAL, place, 1, step, file_.counts().num_nodes);
            }
            content_.variables.push_back(variable);
        }
    }

    void readElementVariables() {
        const auto names = file_.variableNames(EX_ELEM_BLOCK);
        const auto table = file_.elementTruthTable(names.size());
        for (std::size_t place = 0; place < names.size(); ++place) {
            VariableContent variable{false, names[place], false, {}};
            for (std::size_t i = 0; i < file_.blocks().size(); ++i) {
                const auto& block = file_.blocks()[i];
                for (std::size_t step = 0; step < file_.times().size(); ++step) {
                    if (table[i * names.size() + place] != 0) {
                        variable.values[{step, i}] =
                            file_.values(EX_ELEM_BLOCK, place, block.id, step, block.elementCount);
                    }
                }
            }
            content_.variables.push_back(variable);
        }
    }

    void readSteps() {
        content_.globalNames = file_.variableNames(EX_GLOBAL);
        for (const auto time : file_.times()) {
            const auto step = content_.steps.size();
            content_.steps.push_back({"Step " + std::to_string(step + 1), time});
            if (!content_.globalNames.empty()) {
                content_.globals.push_back(file_.globalValues(step, content_.globalNames.size()));
            }
        }
    }

    const MoxTool::ExodusFile file_;
    ModelContent content_;
};

} // namespace

bool canReadExodus() {
    return true;
}

ModelContent readExodus(const std::string& path) {
    return ExodusReading(path).read();
}
