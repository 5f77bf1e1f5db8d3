#include "Compressor.h"

#include <MoxWriterDeflate/compressor.h>

#include <dlfcn.h>
#include <zlib.h>

#include <atomic>
#include <stdexcept>

namespace MoxPython::Compressor {

namespace {

using Compress = int (*)(Bytef*, uLongf*, const Bytef*, uLong, int);

// moxwriter-deflate by its functions.
struct DeflateLibrary {
    Compress compress;
    void (*choose)(MoxWriterCompressor);
    MoxWriterCompressor (*chosen)();
    unsigned long long (*calls)();
};

template <typename FunctionT>
void find(void* library, const char* name, FunctionT& function) {
    function = reinterpret_cast<FunctionT>(dlsym(library, name));
}

DeflateLibrary functionsOf(void* library) {
    DeflateLibrary functions{};
    find(library, "compress2", functions.compress);
    find(library, "moxwriter_set_compressor", functions.choose);
    find(library, "moxwriter_compressor", functions.chosen);
    find(library, "moxwriter_deflate_calls", functions.calls);
    return functions;
}

// Never unloaded.
const DeflateLibrary& loaded() {
    static const DeflateLibrary library = [] {
        void* const handle = dlopen("libmoxwriter-deflate.so.1", RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) {
            throw std::runtime_error(std::string("the compressor \"deflate\" is not installed: ") +
                                     dlerror());
        }
        return functionsOf(handle);
    }();
    return library;
}

std::atomic<Compress> deflate = nullptr; // null while zlib is chosen
std::atomic<bool> isLoaded = false;

bool isPreloaded(const DeflateLibrary& all) {
    return all.choose != nullptr && all.chosen != nullptr && all.calls != nullptr;
}

} // namespace

extern "C" int __real_compress2(Bytef* dest, uLongf* destLen, const Bytef* source, uLong sourceLen,
                                int level);
extern "C" int __wrap_compress2(Bytef* dest, uLongf* destLen, const Bytef* source, uLong sourceLen,
                                int level);

extern "C" int __wrap_compress2(Bytef* dest, uLongf* destLen, const Bytef* source, uLong sourceLen,
                                int level) {
    const Compress chosen = deflate.load();
    return chosen != nullptr ? chosen(dest, destLen, source, sourceLen, level)
                             : __real_compress2(dest, destLen, source, sourceLen, level);
}

void choose(const std::string& name) {
    if (name == "deflate") {
        const DeflateLibrary& library = loaded();
        isLoaded = true;
        library.choose(MOXWRITER_COMPRESSOR_DEFLATE);
        deflate = library.compress;
    } else if (name == "zlib") {
        deflate = nullptr;
        if (const auto all = functionsOf(RTLD_DEFAULT); isPreloaded(all)) {
            all.choose(MOXWRITER_COMPRESSOR_ZLIB);
        }
    } else {
        throw std::invalid_argument("there is no compressor '" + name + "'; there are 'zlib' and 'deflate'");
    }
}

std::string current() {
    const auto all = functionsOf(RTLD_DEFAULT);
    const bool preloaded = isPreloaded(all) && all.chosen() == MOXWRITER_COMPRESSOR_DEFLATE;
    return deflate.load() != nullptr || preloaded ? "deflate" : "zlib";
}

std::uint64_t deflateCalls() {
    if (isLoaded) {
        return loaded().calls();
    }
    const auto all = functionsOf(RTLD_DEFAULT);
    return isPreloaded(all) ? all.calls() : 0;
}

} // namespace MoxPython::Compressor
