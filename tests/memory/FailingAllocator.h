#pragma once

namespace Memory {

/// Makes one allocation of the library fail, or one and all that follow it, and counts what is allocated.
///
/// The program's `operator new` goes through here, and so do `malloc` and its kin in all that is linked into the
/// program. What other shared libraries ask for themselves, zlib and the C library, doesn't fail.
class FailingAllocator {
public:
    enum class Mode { Once, FromThenOn };

    /// From now on counts allocations; the one of this number, from 1, fails.
    static void arm(unsigned int number, Mode mode);
    /// From now on nothing fails.
    static void disarm();
    /// Goes on counting, and failing, where disarm() ended it.
    static void resume();

    /// Whether an allocation has failed since arm().
    static bool hasFailed();
    /// The allocations that have not been freed.
    static long long live();
    /// How often blocks have been handed to zlib.
    static unsigned int compressions();

    // For the functions that stand in for the allocating ones.
    static bool isToFail();
    static void countAllocation(const void* memory);
    static void countRelease(const void* memory);
    static void countCompression();
};

} // namespace Memory
