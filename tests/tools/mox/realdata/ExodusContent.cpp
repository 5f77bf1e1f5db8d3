#include "ExodusContent.h"

#include "cellKinds.h"
#include "exodus/ExodusFile.h"

namespace {

class ExodusReading {
public:
    explicit ExodusReading(const std::string& path) : file(path) {}

    ModelContent read() {
        content.title = file.counts().title;
        content.dimension = file.dimension();
        for (const auto& record : file.qaRecords()) {
            content.qaRecords.push_back({record.program, record.version, record.date, record.time});
        }
        readNodes();
        for (const auto& block : file.blocks()) {
            readBlock(block);
        }
        readNodalVariables();
        readElementVariables();
        readSteps();
        return content;
    }

private:
    void readNodes() {
        const auto count = file.counts().num_nodes;
        content.zones = {static_cast<std::size_t>(count)};
        content.nodeIds = file.idMap(EX_NODE_MAP, count);
        content.points.assign(3 * content.zones[0], 0);
        for (int axis = 0; axis < file.dimension(); ++axis) {
            const auto coordinates = file.coordinates(axis);
            for (std::size_t node = 0; node < coordinates.size(); ++node) {
                content.points[3 * node + static_cast<std::size_t>(axis)] = coordinates[node];
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
            const auto lengths = file.nodesOfEachElement(source);
            block.lengths.assign(lengths.begin(), lengths.end());
        }
        for (const auto node : file.connectivity(source)) {
            block.nodes.push_back(node - 1);
        }
        const auto ids = file.idMap(EX_ELEM_MAP, file.counts().num_elem);
        block.elementIds.assign(ids.begin() + source.firstElement,
                                ids.begin() + source.firstElement + source.elementCount);
        content.blocks.push_back(block);
    }

    void readNodalVariables() {
        const auto names = file.variableNames(EX_NODAL);
        for (std::size_t place = 0; place < names.size(); ++place) {
            VariableContent variable{true, names[place], false, {}};
            for (std::size_t step = 0; step < file.times().size(); ++step) {
                variable.values[{step, 0}] = file.values(EX_NODAL, place, 1, step, file.counts().num_nodes);
            }
            content.variables.push_back(variable);
        }
    }

    void readElementVariables() {
        const auto names = file.variableNames(EX_ELEM_BLOCK);
        const auto table = file.elementTruthTable(names.size());
        for (std::size_t place = 0; place < names.size(); ++place) {
            VariableContent variable{false, names[place], false, {}};
            for (std::size_t i = 0; i < file.blocks().size(); ++i) {
                const auto& block = file.blocks()[i];
                for (std::size_t step = 0; step < file.times().size(); ++step) {
                    if (table[i * names.size() + place] != 0) {
                        variable.values[{step, i}] =
                            file.values(EX_ELEM_BLOCK, place, block.id, step, block.elementCount);
                    }
                }
            }
            content.variables.push_back(variable);
        }
    }

    void readSteps() {
        content.globalNames = file.variableNames(EX_GLOBAL);
        for (const auto time : file.times()) {
            const auto step = content.steps.size();
            content.steps.push_back({"Step " + std::to_string(step + 1), time});
            if (!content.globalNames.empty()) {
                content.globals.push_back(file.globalValues(step, content.globalNames.size()));
            }
        }
    }

    const MoxTool::ExodusFile file;
    ModelContent content;
};

} // namespace

bool canReadExodus() {
    return true;
}

ModelContent readExodus(const std::string& path) {
    return ExodusReading(path).read();
}
