// The Gmsh library frees wrongly, and in part never, what it makes for each kind of prism that it meets;
// sanitizers would take that for ours.
extern "C" const char* __asan_default_options();
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __asan_default_options() {
    return "alloc_dealloc_mismatch=0";
}

extern "C" const char* __lsan_default_suppressions() {
    return "leak:ClosureGen::getFaceClosurePrism\n";
}
