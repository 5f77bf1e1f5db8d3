#include <Qel/Exception/Exception.h>

#include <utility>

namespace Qel::Exception {

Base::~Base() = default;

const char* Base::what() const noexcept {
    return nullptr;
}

int Base::code() const noexcept {
    return 1;
}

Exception::Exception(std::string text) : message_(std::move(text)) {}

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
    return message_.empty() ? description() : message_.c_str();
}

const char* Exception::description() const noexcept {
    return "Unknown Exception";
}

#define QEL_EXCEPTION_ROW(Class, number, fixedText)                                                          \
    Class::Class(std::string text) : Exception(std::move(text)) {}                                           \
    Class::~Class() = default;                                                                               \
    int Class::code() const noexcept {                                                                       \
        return number;                                                                                       \
    }                                                                                                        \
    const char* Class::description() const noexcept {                                                        \
        return fixedText;                                                                                    \
    }

// Applications tell failures apart by these numbers: gaps stay gaps, and the first class keeps its spelling.
QEL_EXCEPTION_ROW(MiscelleneousException, 2, "Miscelleneous exception")
QEL_EXCEPTION_ROW(InvalidArguments, 3, "Invalid arguments")
QEL_EXCEPTION_ROW(FileOpenException, 5, "File open exception")
QEL_EXCEPTION_ROW(FileWriteException, 7, "File write exception")
QEL_EXCEPTION_ROW(OutOfBounds, 11, "Out of bounds error")
QEL_EXCEPTION_ROW(OverflowError, 12, "Overflow error")
QEL_EXCEPTION_ROW(UnderflowError, 13, "Underflow error")
QEL_EXCEPTION_ROW(KeyNotFound, 14, "Key not found")
QEL_EXCEPTION_ROW(MemoryAllocationException, 16, "Memory allocation error")
QEL_EXCEPTION_ROW(InvalidObjectState, 17, "Invalid object state")
QEL_EXCEPTION_ROW(TemplateSpecializationNotDefined, 19, "Template specialization not defined")
QEL_EXCEPTION_ROW(NotYetImplemented, 20, "Not yet implemented")

#undef QEL_EXCEPTION_ROW

} // namespace Qel::Exception
