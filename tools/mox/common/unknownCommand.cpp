#include "unknownCommand.h"

#include "closestWord.h"
#include "visibleText.h"

#include <fmt/format.h>

namespace MoxTool {

std::string unknownCommand(const CommandHelp& program, const std::string& name) {
    return fmt::format("there is no command \"{}\"{}", visibleText(name),
                       didYouMean(name, program.commandNames()));
}

} // namespace MoxTool
