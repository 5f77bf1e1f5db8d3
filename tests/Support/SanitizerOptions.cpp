// Lets allocations fail under the address sanitizer as they do without it; otherwise it ends the process.
extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
