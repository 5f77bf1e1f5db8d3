#pragma once

#include <Qel/Base/Extractor.h>
#include <Qel/Base/SaveTarget.h>

#include <utility>

namespace Qel::Base {

/// An operation that opens a database for saving.
template <typename Db, typename Options>
class Saver : public Extractor<Db, void> {
public:
    Saver(SaveTarget saveTarget, Options saveOptions)
        : target(std::move(saveTarget)), options(std::move(saveOptions)) {}

    // Kept though nothing calls it; see docs/oddities.md.
    void extract(Db&) override {}
    // Kept though nothing calls it; see docs/oddities.md.
    virtual void save() {}

protected:
    SaveTarget target;
    Options options;
};

} // namespace Qel::Base
