// What a program does with failures: by class, by number, with their origin.

#include <Qel/Exception/Exception.h>
#include <Qel/Mox2/Model.h>

#include <boost/exception/get_error_info.hpp>
#include <boost/throw_exception.hpp>

#include <exception>
#include <iostream>

namespace {

using namespace Qel::Mox2;

void save(const char* path) {
    Model model;
    model.saveTo(path, SaverOptions());
    model.addNode(Group, "Assembly");
    model.addArrayProperty("Pressure", NodeVector, Array1d<float>(8, 0.0F), 1U,
                           Step{}); // a vector has 3 columns
    model.close();
}

// [catch]
int report(const char* path) {
    try {
        save(path);
        return 0;
    } catch (const Qel::Exception::FileOpenException&) {
        std::cerr << path << ": the file exists, and is kept\n"; // one class, as any other exception
    } catch (const Qel::Exception::Exception& error) {           // all of the library
        std::cerr << path << ": " << error.what() << " (" << error.code();
        if (const char* const* const origin = boost::get_error_info<boost::throw_file>(error)) {
            std::cerr << ", from " << *origin;
        }
        std::cerr << ")\n";
    } catch (const std::exception& error) { // std::bad_alloc, for example
        std::cerr << path << ": " << error.what() << '\n';
    }
    return 1;
}
// [/catch]

} // namespace

int main(int argc, char** argv) {
    return report(argc > 1 ? argv[1] : "failures.mox");
}
