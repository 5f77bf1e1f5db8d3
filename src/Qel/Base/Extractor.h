#pragma once

namespace Qel::Base {

/// An operation that queries a database. Made for one call, like a Modifier.
template <typename Db, typename T>
class Extractor {
public:
    Extractor() = default;
    Extractor(const Extractor&) = delete;
    Extractor& operator=(const Extractor&) = delete;
    virtual ~Extractor() = default;

    // Kept though nothing calls it; see docs/oddities.md.
    virtual T extract(Db&) { return T(); }
};

} // namespace Qel::Base
