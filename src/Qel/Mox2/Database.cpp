#include <Qel/Mox2/Database.h>

#include <Qel/Exception/Throw.h>
#include <Qel/Mox/Geometry.h>

namespace Qel::Mox2 {

// A save that fails here ends the process: destructors don't throw.
Database::~Database() {
    Database::close();
}

void Database::close() {
    if (tree == nullptr) {
        return;
    }
    if (openedForWriting) {
        tree->SaveFile(tree->File, std::string());
    }
    tree->File.CloseFile();
    for (const auto& node : tree->GetNodes()) {
        if (auto* const geometry = dynamic_cast<QelMox::Geometry*>(node.data)) {
            geometry->positions.clear();
        }
    }
    tree.reset();
    modeWord = ClosedMode;
    openedForReading = false;
    openedForWriting = false;
}

QelMox::Tree& Database::open() {
    openedForReading = false;
    openedForWriting = true;
    tree = std::make_shared<QelMox::Tree>();
    return *tree;
}

void Database::assertEmpty() const {
    if (tree != nullptr) {
        QEL_THROW(Exception::InvalidObjectState("Not Empty"));
    }
}

void Database::assertNotEmpty() const {
    if (tree == nullptr) {
        QEL_THROW(Exception::InvalidObjectState("Not initialized"));
    }
}

void Database::assertOpenedForWriting() const {
    if (tree == nullptr) {
        QEL_THROW(Exception::InvalidObjectState("File not open."));
    }
    if (!openedForWriting) {
        QEL_THROW(Exception::InvalidObjectState("File not opened in write mode"));
    }
}

} // namespace Qel::Mox2
