#include "CommandLine.h"
#include "Listing.h"

#include <MoxReader/Error.h>

#include <fmt/core.h>

#include <stdexcept>
#include <string>

namespace {

// Errors of the reader name the file only if it can't be opened.
void list(const std::string& path) {
    try {
        Examples::printListing(path);
    } catch (const MoxReader::Error& error) {
        if (!error.place().path.empty()) {
            throw;
        }
        throw std::runtime_error(fmt::format("{}: {}", path, error.what()));
    }
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app("Lists what a model file holds.", "listing");
    std::string path;
    app.add_option("file", path, "The file to list")->required();
    return Examples::run(app, argc, argv, [&] { list(path); });
}
