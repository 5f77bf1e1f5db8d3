#include "Tolerance.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MoxTool {

double Tolerance::excess(double a, double b) const {
    if (a == b || (std::isnan(a) && std::isnan(b))) {
        return 0;
    }
    if (!std::isfinite(a) || !std::isfinite(b)) {
        return std::numeric_limits<double>::infinity();
    }
    const double distance = std::fabs(a - b);
    const double allowed = std::max(absolute, relative * std::max(std::fabs(a), std::fabs(b)));
    if (distance <= allowed) {
        return 0;
    }
    return absolute == 0 && relative == 0 ? distance : distance / allowed;
}

} // namespace MoxTool
