#pragma once

#include <Qel/Util/Export.h>

#include <boost/exception/exception.hpp>

#include <exception>
#include <string>

/// The failures that the library reports.
///
/// Every exception of the library is thrown as `boost::wrapexcept<Class>`. It can be caught as its class, as
/// Exception, as Base, as `std::exception` or as `boost::exception`; through the last, the error infos
/// `boost::throw_file`, `boost::throw_function` and `boost::throw_line` give the place of origin. The file is
/// given as the path of the class that threw, from `Qel/` on and without extension.
///
/// Exceptions of the standard library (`std::bad_alloc` and the like) pass through the library unchanged.
namespace Qel::Exception {

/// The interface that all exceptions of the library share.
class MOXWRITER_EXPORT Base {
public:
    Base() = default;
    /// Copies nothing but the class.
    Base(const Base&) = default;
    /// Likewise.
    Base& operator=(const Base&) = default;
    virtual ~Base();

    /// A null pointer here; every derived class returns the text of the failure.
    virtual const char* what() const noexcept;

    /// The number of the class. Numbers are fixed and have gaps; Base and Exception themselves return 1.
    virtual int code() const noexcept;
};

/// The common class of all failures: a message, or else the fixed description of the class.
class MOXWRITER_EXPORT Exception : public virtual Base,
                                   public virtual std::exception,
                                   public virtual boost::exception {
public:
    Exception() = default;
    /// Takes the message that what() returns; an empty one stands for description().
    explicit Exception(std::string text);
    /// Copies the message and what Boost has added.
    Exception(const Exception&) = default;
    /// Likewise.
    Exception& operator=(const Exception&) = default;
    ~Exception() override;

    /// The message if there is one, else description(). Valid as long as the object lives. Never contains the
    /// place of origin.
    const char* what() const noexcept override;

    /// The fixed text of the class.
    virtual const char* description() const noexcept;

private:
    std::string message_;
};

// Declares one concrete class. Codes and descriptions are in one table, in Exception.cpp.
#define QEL_EXCEPTION_CLASS(Class)                                                                           \
    class MOXWRITER_EXPORT Class : public Exception {                                                        \
    public:                                                                                                  \
        Class() = default;                                                                                   \
        explicit Class(std::string text);                                                                    \
        Class(const Class&) = default;                                                                       \
        Class& operator=(const Class&) = default;                                                            \
        ~Class() override;                                                                                   \
        int code() const noexcept override;                                                                  \
        const char* description() const noexcept override;                                                   \
    }

/// A failure that has no class of its own: a file that can't be opened, a stream in use. Code 2.
QEL_EXCEPTION_CLASS(MiscelleneousException);
/// An argument that the call does not accept: a wrong type, length, path or property. Code 3.
QEL_EXCEPTION_CLASS(InvalidArguments);
/// The output file exists and must not be replaced. Code 5.
QEL_EXCEPTION_CLASS(FileOpenException);
/// The output file can't be positioned or is at its end. Code 7.
QEL_EXCEPTION_CLASS(FileWriteException);
/// A node id or a position beyond those that exist. Code 11.
QEL_EXCEPTION_CLASS(OutOfBounds);
/// A count above 2,147,483,647. Code 12.
QEL_EXCEPTION_CLASS(OverflowError);
/// A negative count. Code 13.
QEL_EXCEPTION_CLASS(UnderflowError);
/// An id or a key that is not there. Code 14.
QEL_EXCEPTION_CLASS(KeyNotFound);
/// No memory for a block of the file. Code 16.
QEL_EXCEPTION_CLASS(MemoryAllocationException);
/// A call that the model's state does not allow. Code 17.
QEL_EXCEPTION_CLASS(InvalidObjectState);
/// A property value of the wrong type. Code 19.
QEL_EXCEPTION_CLASS(TemplateSpecializationNotDefined);
/// A request that the library does not serve, such as a second root. Code 20.
QEL_EXCEPTION_CLASS(NotYetImplemented);

#undef QEL_EXCEPTION_CLASS

} // namespace Qel::Exception
