// A program outside the tree that links both libraries and names only the first: saves a model, and fails unless its
// blocks were compressed by libdeflate.

#include <Qel/Mox2/Model.h>

#include <dlfcn.h>

int main(int, char** arguments) {
    Qel::Mox2::Model model;
    model.saveTo(arguments[1], {});
    model.addNode(Qel::Mox2::Group, "root");
    model.close();
    using Calls = unsigned long long (*)();
    const auto calls = reinterpret_cast<Calls>(dlsym(RTLD_DEFAULT, "moxwriter_deflate_calls"));
    return calls != nullptr && calls() != 0 ? 0 : 1;
}
