#pragma once

namespace MoxPython {

/// Makes the failures of the library, and those of the standard library that it passes on, the exceptions of
/// moxwriter/_errors.py, in the module that calls this.
void translateErrors();

} // namespace MoxPython
