#include <Qel/Exception/Exception.h>

#include <boost/throw_exception.hpp>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <type_traits>

namespace {

using Qel::Exception::Base;
using Qel::Exception::Exception;

/// One of the twelve classes and its expected properties.
struct Row {
    const char* name;
    int code;
    std::string description;
    std::unique_ptr<Exception> (*make)();
    std::unique_ptr<Exception> (*makeWith)(const std::string& text);
    std::unique_ptr<Exception> (*copyOf)(const Exception& original);
    bool (*isCaughtAsItsClass)();
    void (*raise)();
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.name;
}

template <typename Class>
bool isCaughtAsItsClass() {
    try {
        boost::throw_exception(Class());
    } catch (const Class&) {
        return true;
    } catch (...) {
        return false;
    }
}

template <typename Class>
Row row(const char* name, int code, const char* description) {
    return {
        name,
        code,
        description,
        []() -> std::unique_ptr<Exception> { return std::make_unique<Class>(); },
        [](const std::string& text) -> std::unique_ptr<Exception> { return std::make_unique<Class>(text); },
        [](const Exception& original) -> std::unique_ptr<Exception> {
            return std::make_unique<Class>(dynamic_cast<const Class&>(original));
        },
        isCaughtAsItsClass<Class>,
        [] { boost::throw_exception(Class("raised")); }};
}

std::string nameOf(const testing::TestParamInfo<Row>& info) {
    return info.param.name;
}

#define ROW(Class, code, description) row<Qel::Exception::Class>(#Class, code, description)

class ConcreteException : public testing::TestWithParam<Row> {};

INSTANTIATE_TEST_SUITE_P(
    Table, ConcreteException,
    testing::Values(ROW(MiscelleneousException, 2, "Miscelleneous exception"),
                    ROW(InvalidArguments, 3, "Invalid arguments"),
                    ROW(FileOpenException, 5, "File open exception"),
                    ROW(FileWriteException, 7, "File write exception"),
                    ROW(OutOfBounds, 11, "Out of bounds error"), ROW(OverflowError, 12, "Overflow error"),
                    ROW(UnderflowError, 13, "Underflow error"), ROW(KeyNotFound, 14, "Key not found"),
                    ROW(MemoryAllocationException, 16, "Memory allocation error"),
                    ROW(InvalidObjectState, 17, "Invalid object state"),
                    ROW(TemplateSpecializationNotDefined, 19, "Template specialization not defined"),
                    ROW(NotYetImplemented, 20, "Not yet implemented")),
    nameOf);

TEST_P(ConcreteException, AnswersItsCodeThroughEveryBaseThatHasOne) {
    const auto exception = GetParam().make();
    EXPECT_EQ(exception->code(), GetParam().code);
    EXPECT_EQ(static_cast<const Base&>(*exception).code(), GetParam().code);
}

TEST_P(ConcreteException, WithoutAMessageGivesItsDescriptionThroughEveryBase) {
    const auto exception = GetParam().make();
    EXPECT_EQ(exception->description(), GetParam().description);
    EXPECT_EQ(exception->what(), GetParam().description);
    EXPECT_EQ(static_cast<const Base&>(*exception).what(), GetParam().description);
    EXPECT_EQ(static_cast<const std::exception&>(*exception).what(), GetParam().description);
}

TEST_P(ConcreteException, WithAnEmptyTextGivesItsDescription) {
    EXPECT_EQ(GetParam().makeWith("")->what(), GetParam().description);
}

TEST_P(ConcreteException, WithAMessageGivesThatThroughEveryBaseAndKeepsItsDescription) {
    const auto exception = GetParam().makeWith("a file is missing");
    EXPECT_STREQ(exception->what(), "a file is missing");
    EXPECT_STREQ(static_cast<const Base&>(*exception).what(), "a file is missing");
    EXPECT_STREQ(static_cast<const std::exception&>(*exception).what(), "a file is missing");
    EXPECT_EQ(exception->description(), GetParam().description);
}

TEST_P(ConcreteException, CopyOutlivesItsOriginalWithTheSameMessage) {
    auto original = GetParam().makeWith("a file is missing");
    const auto copy = GetParam().copyOf(*original);
    original.reset();
    EXPECT_STREQ(copy->what(), "a file is missing");
    EXPECT_EQ(copy->code(), GetParam().code);
}

TEST_P(ConcreteException, IsCaughtAsItsClassAndAsEachOfItsBases) {
    EXPECT_TRUE(GetParam().isCaughtAsItsClass());
    EXPECT_THROW(GetParam().raise(), Exception);
    EXPECT_THROW(GetParam().raise(), Base);
    EXPECT_THROW(GetParam().raise(), std::exception);
    EXPECT_THROW(GetParam().raise(), boost::exception);
}

TEST(Exception, BaseGivesNoTextAtAllAndAnswersCode1) {
    const Base base;
    EXPECT_EQ(base.what(), nullptr);
    EXPECT_EQ(base.code(), 1);
}

TEST(Exception, PlainOneIsUnknownAndAnswersTheCodeOfBase) {
    const Exception exception;
    EXPECT_STREQ(exception.what(), "Unknown Exception");
    EXPECT_STREQ(exception.description(), "Unknown Exception");
    EXPECT_EQ(exception.code(), 1);
}

TEST(Exception, PlainOneWithAMessageGivesThat) {
    EXPECT_STREQ(Exception("a file is missing").what(), "a file is missing");
}

TEST(Exception, AssignmentTakesTheMessage) {
    Qel::Exception::KeyNotFound exception("a file is missing");
    exception = Qel::Exception::KeyNotFound("a key is missing");
    EXPECT_STREQ(exception.what(), "a key is missing");
}

/// Two of the classes in one object.
class Both : public Qel::Exception::KeyNotFound, public Qel::Exception::OutOfBounds {
    using KeyNotFound::code;
    using KeyNotFound::description;

    int code() const noexcept override { return KeyNotFound::code(); }
    const char* what() const noexcept override { return KeyNotFound::what(); }
    const char* description() const noexcept override { return KeyNotFound::description(); }
};

TEST(Exception, HasVirtualBasesSoThatAnObjectHoldsOneOfEach) {
    EXPECT_TRUE((std::is_convertible_v<Both*, Base*>));
    EXPECT_TRUE((std::is_convertible_v<Both*, std::exception*>));
    EXPECT_TRUE((std::is_convertible_v<Both*, boost::exception*>));
}

TEST(Exception, ConcreteClassesDeriveFromItWithoutSharing) {
    EXPECT_FALSE((std::is_convertible_v<Both*, Exception*>));
}

TEST(Exception, WrappedObjectHoldsOneOfEachBase) {
    using Wrapped = boost::wrapexcept<Qel::Exception::KeyNotFound>;
    EXPECT_TRUE((std::is_convertible_v<Wrapped*, Exception*>));
    EXPECT_TRUE((std::is_convertible_v<Wrapped*, Base*>));
    EXPECT_TRUE((std::is_convertible_v<Wrapped*, std::exception*>));
    EXPECT_TRUE((std::is_convertible_v<Wrapped*, boost::exception*>));
    EXPECT_TRUE((std::is_convertible_v<Wrapped*, boost::exception_detail::clone_base*>));
}

} // namespace
