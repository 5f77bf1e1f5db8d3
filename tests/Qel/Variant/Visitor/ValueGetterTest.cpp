#include <Qel/Variant/Visitor/ValueGetter.h>

#include "Support/Thrown.h"

#include <Qel/Mox2/PropertyMap.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace {

using Qel::Exception::TemplateSpecializationNotDefined;
using Qel::Mox2::PropertyValue;
using Qel::Variant::Visitor::getValue;
using Support::Thrown;
using Support::throws;
using Floats = std::vector<float>;

const Thrown NotDefined = {19, "Template specialization not defined", "Qel/Variant/Visitor/ValueGetter",
                           "Qel::Variant::Visitor::ValueGetter"};

template <typename T>
testing::AssertionResult isRefusedAs(const PropertyValue& value) {
    return throws<TemplateSpecializationNotDefined>(NotDefined, [&] { getValue<T>(value); });
}

TEST(ValueGetter, FloatIsReadFromAFloatAlone) {
    EXPECT_EQ(getValue<float>(PropertyValue(1.5F)), 1.5F);
    EXPECT_TRUE(isRefusedAs<float>(1));
    EXPECT_TRUE(isRefusedAs<float>(std::string("1")));
    EXPECT_TRUE(isRefusedAs<float>(std::vector<int>{1}));
    EXPECT_TRUE(isRefusedAs<float>(Floats{1}));
}

TEST(ValueGetter, VectorOfFloatsIsReadFromAVectorOfFloatsAlone) {
    EXPECT_EQ(getValue<Floats>(PropertyValue(Floats{1, 2})), (Floats{1, 2}));
    EXPECT_TRUE(isRefusedAs<Floats>(1));
    EXPECT_TRUE(isRefusedAs<Floats>(1.5F));
    EXPECT_TRUE(isRefusedAs<Floats>(std::string("1")));
    EXPECT_TRUE(isRefusedAs<Floats>(std::vector<int>{1}));
}

TEST(ValueGetter, BoolIsReadFromNothing) {
    EXPECT_TRUE(isRefusedAs<bool>(1));
    EXPECT_TRUE(isRefusedAs<bool>(1.0F));
    EXPECT_TRUE(isRefusedAs<bool>(std::string("true")));
    EXPECT_TRUE(isRefusedAs<bool>(std::vector<int>{1}));
    EXPECT_TRUE(isRefusedAs<bool>(Floats{1}));
}

TEST(ValueGetter, VectorIsReturnedAsACopy) {
    PropertyValue value(Floats{1, 2});
    Floats copy = getValue<Floats>(value);
    copy[0] = 9;
    EXPECT_EQ(std::get<Floats>(value)[0], 1.0F);
}

// Throws when constructed, which deprives a variant of its value.
struct Fickle {
    Fickle() = default;
    explicit Fickle(int) { throw std::runtime_error("no construction"); }
    Fickle(const Fickle&) {}
};

TEST(ValueGetter, VariantThatLostItsValueIsBadAccess) {
    std::variant<float, Fickle> value = 1.5F;
    EXPECT_THROW(value.emplace<Fickle>(1), std::runtime_error);
    ASSERT_TRUE(value.valueless_by_exception());
    try {
        getValue<float>(value);
        FAIL() << "nothing was thrown";
    } catch (const std::bad_variant_access& caught) {
        EXPECT_STREQ(caught.what(), "bad variant access");
    }
}

} // namespace
