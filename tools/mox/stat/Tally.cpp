#include "Tally.h"

namespace MoxTool {

Tally& Tally::operator+=(const Tally& other) {
    count += other.count;
    links += other.links;
    content += other.content;
    stored += other.stored;
    shared += other.shared;
    return *this;
}

} // namespace MoxTool
