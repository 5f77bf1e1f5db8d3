#include <Qel/Mox2/Database.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Geometry.h>

namespace Qel::Mox2 {

// A save that fails here ends the process: destructors don't throw.
Database::~Database() {
    Database::close();
}

void Database::close() {
    if (tree_ == nullptr) {
        return;
    }
    if (openedForWriting_) {
        tree_->SaveFile(tree_->File, std::string());
    }
    tree_->File.CloseFile();
    for (const auto& node : tree_->GetNodes()) {
        if (auto* const geometry = dynamic_cast<QelMox::Geometry*>(node.data)) {
            geometry->ForgetPositions();
        }
    }
    tree_.reset();
    modeWord_ = ClosedMode;
    openedForReading_ = false;
    openedForWriting_ = false;
}

QelMox::Tree& Database::open() {
    openedForReading_ = false;
    openedForWriting_ = true;
    tree_ = std::make_shared<QelMox::Tree>();
    return *tree_;
}

void Database::assertEmpty() const {
    if (tree_ != nullptr) {
        QEL_THROW(Exception::InvalidObjectState("Not Empty"));
    }
}

void Database::assertNotEmpty() const {
    if (tree_ == nullptr) {
        QEL_THROW(Exception::InvalidObjectState("Not initialized"));
    }
}

void Database::assertOpenedForWriting() const {
    if (tree_ == nullptr) {
        QEL_THROW(Exception::InvalidObjectState("File not open."));
    }
    if (!openedForWriting_) {
        QEL_THROW(Exception::InvalidObjectState("File not opened in write mode"));
    }
}

} // namespace Qel::Mox2
