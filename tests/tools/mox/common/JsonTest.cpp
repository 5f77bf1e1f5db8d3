#include "common/JsonStream.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <string>

using namespace MoxTool;

TEST(JsonValue, FloatPrintsAsItsOwnShortestText) {
    EXPECT_EQ(jsonNumber(0.1F).dump(), "0.1");
    EXPECT_EQ(jsonNumber(0.1).dump(), "0.1");
    EXPECT_EQ(jsonNumber(3.4028235e38F).dump(), "3.4028235e+38");
    EXPECT_EQ(jsonNumber(-0.0F).dump(), "-0.0");
}

TEST(JsonValue, NumberThatIsNotFiniteIsAText) {
    EXPECT_EQ(jsonNumber(std::numeric_limits<float>::quiet_NaN()).dump(), "\"nan\"");
    EXPECT_EQ(jsonNumber(-std::numeric_limits<double>::infinity()).dump(), "\"-inf\"");
}

TEST(JsonValue, TextThatIsNoUtf8ShowsItsBytes) {
    EXPECT_EQ(jsonText("ü\n").dump(), "\"ü\\n\"");
    EXPECT_EQ(jsonText("a\xFF").dump(), R"({"bytes":"61ff"})");
}

TEST(JsonStream, OpensLinesForContainersAndOneForEachValue) {
    testing::internal::CaptureStdout();
    JsonStream json(stdout);
    json.beginObject();
    json.key("a");
    json.value(1);
    json.key("b");
    json.beginArray();
    json.rawValue("[1,2]");
    json.beginObject();
    json.endObject();
    json.endArray();
    json.key("c");
    json.beginArray();
    json.endArray();
    json.endObject();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), R"({
  "a": 1,
  "b": [
    [1,2],
    {}
  ],
  "c": []
}
)");
}

TEST(JsonStream, AppendsToATextLikewise) {
    std::string text = "before ";
    JsonStream json(text);
    json.beginArray();
    json.value(1);
    json.endArray();
    EXPECT_EQ(text, "before [\n  1\n]\n");
}
