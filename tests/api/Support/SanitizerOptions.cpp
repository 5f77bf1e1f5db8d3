// A request for more memory than there can be is answered as without a sanitizer, so that the arrays' own
// answer to it can be tested.
extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
