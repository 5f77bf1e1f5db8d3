#pragma once

namespace Memory {

/// Makes one allocation of the library fail, or one and all that follow it, and counts what is allocated.
///
/// The program's `operator new` goes through here, and so do `malloc` and its kin in everything that is
/// linked into the program. What shared libraries such as zlib and the C library allocate for themselves
/// doesn't fail; but each step of inflating can, as if zlib had met a lack of memory in it.
class FailingAllocator {
public:
    enum class Mode { Once, FromThenOn };

    /// Starts counting allocations; the one with this number, counted from 1, fails.
    static void arm(unsigned int number, Mode mode);
    /// From now on no allocation fails.
    static void disarm();
    /// Goes on counting, and failing, where disarm() stopped.
    static void resume();

    /// Whether an allocation has failed since arm().
    static bool hasFailed();
    /// The allocations that have not been freed.
    static long long live();
    /// How often blocks have been handed to zlib.
    static unsigned int compressions();

    // For the functions that replace the allocating ones.
    static bool isToFail();
    static void countAllocation(const void* memory);
    static void countRelease(const void* memory);
    static void countCompression();
};

} // namespace Memory
