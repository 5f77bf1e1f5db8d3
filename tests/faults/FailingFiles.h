#pragma once

#include <functional>

namespace Faults {

/// Makes one of the library's calls of the file system fail, or one and all of its kind that follow it.
///
/// The linker sends the calls of the library's objects here. Those of other libraries, and of the test itself
/// while nothing is armed, pass.
class FailingFiles {
public:
    enum class Call { Open, Write, Seek, Close };
    enum class Mode { Once, FromThenOn };
    enum class Fault {
        Nothing,   ///< Nothing is done, and the call fails.
        Half,      ///< The first half of a write is done, and the call fails.
        BrokenOff, ///< As Half, by a signal.
        Killed     ///< The process ends after the first half of a write.
    };
    struct Plan {
        Call call;
        unsigned int number; ///< Of the first call that fails, counted from 1.
        Mode mode;
        Fault fault;
    };

    static void arm(const Plan& plan);
    static void disarm();
    /// Whether a call has failed since arm().
    static bool hasFailed();

    // For the functions that replace those of the C library.
    static bool isToFail(Call call);
    static Fault fault();
};

} // namespace Faults
