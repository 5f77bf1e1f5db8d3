#pragma once

namespace Qel::Base {

/// An operation that changes a database. Made for one call: it holds copies of the call's arguments, is
/// applied once, and keeps its result, if there is one, in a field.
template <typename Db>
class Modifier {
public:
    Modifier() = default;
    Modifier(const Modifier&) = delete;
    Modifier& operator=(const Modifier&) = delete;
    virtual ~Modifier() = default;

    // Kept though nothing calls it; see docs/oddities.md.
    virtual void update(Db&) {}
};

} // namespace Qel::Base
