#include "Commands.h"

#include "import/ImportCommand.h"

namespace MoxTool {

namespace {

using Maker = std::unique_ptr<Command> (*)();

template <typename CommandT>
std::unique_ptr<Command> make() {
    return std::make_unique<CommandT>();
}

constexpr Maker Makers[] = {
    make<ImportCommand>,
};

} // namespace

std::vector<std::unique_ptr<Command>> makeCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    for (const auto maker : Makers)
        commands.push_back(maker());
    return commands;
}

} // namespace MoxTool
