#pragma once

namespace Qel::Base {

/// What operations are applied to.
class Database {
public:
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    virtual ~Database() = default;

    // Kept though nothing calls it; see docs/oddities.md.
    virtual void close() {}
};

} // namespace Qel::Base
