#include "MoxReader/RawIndex.h"

#include "MoxReader/IndexScanner.h"

namespace MoxReader {

RawIndex scanIndex(Source& source) {
    return IndexScanner(source).scan();
}

} // namespace MoxReader
