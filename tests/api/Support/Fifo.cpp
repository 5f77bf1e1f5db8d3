#include "api/Support/Fifo.h"

// The only platform-dependent code of this class.
#if defined(_WIN32)

namespace Api {

Fifo::Fifo(const std::string&) {}
Fifo::~Fifo() = default;

} // namespace Api

#else

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Api {

Fifo::Fifo(const std::string& path) {
    if (mkfifo(path.c_str(), S_IRUSR | S_IWUSR) == 0) {
        reader_ = open(path.c_str(), O_RDWR | O_NONBLOCK);
    }
}

Fifo::~Fifo() {
    if (isOpen()) {
        close(reader_);
    }
}

} // namespace Api

#endif
