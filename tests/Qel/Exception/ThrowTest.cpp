#include <Qel/Exception/Throw.h>

#include <boost/exception/get_error_info.hpp>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr int ThrowLine = __LINE__ + 3;

void throwWithMessage(long) {
    QEL_THROW(Qel::Exception::InvalidObjectState("Not initialized"));
}

void throwWithoutMessage() {
    QEL_THROW(Qel::Exception::KeyNotFound());
}

/// The wrapped exception that throwWithMessage() throws.
boost::wrapexcept<Qel::Exception::InvalidObjectState> caughtWithMessage() {
    try {
        throwWithMessage(0);
    } catch (const boost::wrapexcept<Qel::Exception::InvalidObjectState>& caught) {
        return caught;
    }
    throw std::logic_error("nothing was thrown");
}

template <typename Info>
typename Info::value_type infoOf(const boost::exception& caught) {
    return *boost::get_error_info<Info>(caught);
}

TEST(Throw, RecordsTheFileFromQelOnWithoutExtension) {
    EXPECT_STREQ(infoOf<boost::throw_file>(caughtWithMessage()), "Qel/Exception/ThrowTest");
}

TEST(Throw, RecordsTheFullSignatureOfTheFunction) {
    const std::string_view function = infoOf<boost::throw_function>(caughtWithMessage());
    EXPECT_TRUE(function.starts_with("void ")) << function;
    EXPECT_NE(function.find("throwWithMessage(long"), std::string_view::npos) << function;
}

TEST(Throw, RecordsTheLine) {
    EXPECT_EQ(infoOf<boost::throw_line>(caughtWithMessage()), ThrowLine);
}

// clang-format off
void throwAtTheLeftOrAtTheRight(bool left) {
    if (left) { QEL_THROW(Qel::Exception::KeyNotFound()); }             QEL_THROW(Qel::Exception::KeyNotFound());
}
// clang-format on

boost::source_location placeOf(bool left) {
    try {
        throwAtTheLeftOrAtTheRight(left);
    } catch (const boost::exception& caught) {
        return boost::get_throw_location(caught);
    }
    return boost::source_location();
}

// Compilers differ in which character of the statement gives its column.
TEST(Throw, RecordsTheColumn) {
    const auto column = boost::get_throw_location(caughtWithMessage()).column();
    EXPECT_GE(column, 5U);
    EXPECT_LE(column, 68U);
    EXPECT_EQ(placeOf(true).line(), placeOf(false).line());
    EXPECT_EQ(placeOf(false).column() - placeOf(true).column(), 56U);
}

TEST(Throw, TextNeverHoldsThePlace) {
    EXPECT_STREQ(caughtWithMessage().what(), "Not initialized");
    EXPECT_EQ(caughtWithMessage().code(), 17);
}

TEST(Throw, WithoutAMessageTheTextIsTheDescription) {
    try {
        throwWithoutMessage();
        FAIL() << "nothing was thrown";
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "Key not found");
    }
}

TEST(Throw, CloneAndRethrowKeepMessageAndPlace) {
    const std::unique_ptr<const boost::exception_detail::clone_base> clone(caughtWithMessage().clone());
    try {
        clone->rethrow();
        FAIL() << "nothing was thrown";
    } catch (const Qel::Exception::InvalidObjectState& caught) {
        EXPECT_STREQ(caught.what(), "Not initialized");
        EXPECT_STREQ(infoOf<boost::throw_file>(caught), "Qel/Exception/ThrowTest");
        EXPECT_EQ(infoOf<boost::throw_line>(caught), ThrowLine);
        const std::string_view function = infoOf<boost::throw_function>(caught);
        EXPECT_NE(function.find("throwWithMessage(long"), std::string_view::npos) << function;
        EXPECT_EQ(boost::get_throw_location(caught).column(),
                  boost::get_throw_location(caughtWithMessage()).column());
    }
}

} // namespace
