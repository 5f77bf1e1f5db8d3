#pragma once

#include <Qel/Base/Database.h>
#include <Qel/Mox/Tree.h>

#include <memory>

namespace Qel::Mox2 {

/// The state behind a Model: Empty, or Open with a tree.
class Database final : public Base::Database {
public:
    Database() = default;
    ~Database() override;

    /// Saves the tree if there is one, and makes the database Empty. If the save throws, it stays Open.
    void close() override;

    /// Makes the database Open with a new tree, which has no file yet.
    QelMox::Tree& open();

    /// @throws Exception::InvalidObjectState "Not Empty" if there is a tree.
    void assertEmpty() const;
    /// @throws Exception::InvalidObjectState "Not initialized" if there is no tree.
    void assertNotEmpty() const;
    /// @throws Exception::InvalidObjectState "File not open." if there is no tree,
    ///         "File not opened in write mode" if there is one that is not to be written.
    void assertOpenedForWriting() const;

    /// @pre The database is not Empty.
    QelMox::Tree& tree() const { return *tree_; }

private:
    // Lets tests bring about the state that no operation leads to.
    friend struct DatabasePeer;

    std::shared_ptr<QelMox::Tree> tree_;
    bool openedForReading_ = false;
    bool openedForWriting_ = false;
    unsigned int modeWord_ = ClosedMode;

    static constexpr unsigned int ClosedMode = 1;
};

} // namespace Qel::Mox2
