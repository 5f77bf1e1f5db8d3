#pragma once

namespace MoxTool {

/// How far apart two numbers may be and still count as equal:
///
///     |a - b| <= max(absolute, relative * max(|a|, |b|))
///
/// The absolute part makes the test work near zero, where a relative part alone allows nothing. Not-a-number
/// equals not-a-number, an infinity equals only itself, and -0 equals 0.
struct Tolerance {
    double absolute = 0; ///< Finite, not negative.
    double relative = 0; ///< Likewise.

    bool areEqual(double a, double b) const { return excess(a, b) == 0; }

    /// How bad a difference is, for comparing differences with each other: 0 for equal numbers; otherwise the
    /// distance as a multiple of what is allowed, or the distance itself where the tolerance is zero;
    /// infinite where one number is not finite.
    double excess(double a, double b) const;
};

} // namespace MoxTool
