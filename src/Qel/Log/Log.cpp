#include <Qel/Log/Log.h>

namespace Qel::Log {

LogSystem& processLog() {
    static LogSystem system;
    return system;
}

} // namespace Qel::Log
