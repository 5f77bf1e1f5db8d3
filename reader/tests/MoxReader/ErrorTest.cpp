#include "MoxReader/Error.h"

#include <gtest/gtest.h>

using MoxReader::Error;
using MoxReader::ErrorCode;

TEST(Error, TextNamesTheReasonAndThePlace) {
    const Error error(ErrorCode::BadValue,
                      {.fileOffset = 12, .blockId = 3, .name = "Light Data", .streamOffset = 40});
    EXPECT_STREQ(
        "a truth value is neither 0 nor 1 (block 3, \"Light Data\", stream offset 40, file offset 12)",
        error.what());
}

TEST(Error, TextWithoutAPlaceIsTheReasonAlone) {
    EXPECT_STREQ("the first eight bytes are not the signature of this format",
                 Error(ErrorCode::BadSignature).what());
}

TEST(Error, NamesAreThoseOfTheEnumerators) {
    EXPECT_EQ("OpenFailed", MoxReader::errorName(ErrorCode::OpenFailed));
    EXPECT_EQ("BadDatasetSize", MoxReader::errorName(ErrorCode::BadDatasetSize));
}

TEST(Error, RecordsAreNamedFromTheInside) {
    const auto inner = Error(ErrorCode::EndOfStream).inRecord("dataset 3");
    const auto outer = inner.inRecord("node 5");
    EXPECT_EQ("dataset 3", inner.place().record);
    EXPECT_EQ("dataset 3 of node 5", outer.place().record);
    EXPECT_EQ(ErrorCode::EndOfStream, outer.code());
}
