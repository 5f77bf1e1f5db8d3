#pragma once

namespace Qel::Base {

/// What operations are applied to.
class Database {
public:
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    virtual ~Database() = default;

    virtual void close() {}
};

} // namespace Qel::Base
