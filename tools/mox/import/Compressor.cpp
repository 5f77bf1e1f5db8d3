#include "Compressor.h"

#ifdef MOX_HAS_DEFLATE
#include <MoxWriterDeflate/compressor.h>
#endif

namespace MoxTool::Compressor {

namespace {

constexpr const char* Zlib = "zlib";
constexpr const char* Deflate = "deflate";

} // namespace

#ifdef MOX_HAS_DEFLATE

std::string preferred() {
    return Deflate;
}

void choose(const std::string& compressor) {
    moxwriter_set_compressor(compressor == Deflate ? MOXWRITER_COMPRESSOR_DEFLATE
                                                   : MOXWRITER_COMPRESSOR_ZLIB);
}

std::string used() {
    const bool isDeflate =
        moxwriter_compressor() == MOXWRITER_COMPRESSOR_DEFLATE && moxwriter_deflate_calls() != 0;
    return isDeflate ? Deflate : Zlib;
}

#else

std::string preferred() {
    return Zlib;
}

void choose(const std::string&) {}

std::string used() {
    return Zlib;
}

#endif

std::string problemWith(const std::string& compressor) {
    if (compressor == preferred() || compressor == Zlib) {
        return {};
    }
    return compressor == Deflate ? "mox was built without libdeflate, so there is zlib alone"
                                 : "there is no '" + compressor + "'; there are zlib and deflate";
}

} // namespace MoxTool::Compressor
