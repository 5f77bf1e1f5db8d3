#include "CommandLine.h"

#include <fmt/core.h>

#include <cstdio>
#include <exception>

namespace Examples {
namespace {

int complain(const CLI::App& app, const char* reason, int exitCode) {
    fmt::print(stderr, "{}: {}\n", app.get_name(), reason);
    return exitCode;
}

} // namespace

int run(CLI::App& app, int argc, char** argv, const std::function<void()>& work) {
    try {
        app.parse(argc, argv);
        work();
        return 0;
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return complain(app, error.what(), 2);
    } catch (const std::exception& error) {
        return complain(app, error.what(), 1);
    }
}

} // namespace Examples
