// The Gmsh library frees some of what it allocates for each kind of prism wrongly, and some never; sanitizers
// would blame the tests for that.
extern "C" const char* __asan_default_options();
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __asan_default_options() {
    return "alloc_dealloc_mismatch=0";
}

extern "C" const char* __lsan_default_suppressions() {
    return "leak:ClosureGen::getFaceClosurePrism\n";
}
