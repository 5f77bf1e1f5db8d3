#include "Qel/Mox/StreamContent.h"
#include "Support/Bytes.h"

#include <Qel/Mox/ModifierInfo.h>
#include <Qel/Mox/ResultAttributes.h>
#include <Qel/Mox/VariableType.h>
#include <Qel/Tnf/Index.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using QelMox::ModifierInfo;
using Support::Bytes;
using Support::ByteVector;

class Records : public testing::Test {
protected:
    template <typename T>
    ByteVector written(const T& value) {
        index.Put("name", value);
        return Support::streamOf(index, "name");
    }

    QelTnf::Index index;
};

TEST_F(Records, VariableTypeTakesFourBytes) {
    EXPECT_EQ(written(QelMox::VariableType::FourthSixB), (ByteVector{28, 0, 0, 0}));
}

TEST_F(Records, ModifierInfoIsItsSizeItsVersionAndSevenTexts) {
    const ModifierInfo info{.CollectHostInfo = 1, // Has no place in the record.
                            .SourceName = "a",
                            .SourceVersion = "bc",
                            .FormatVersion = "1.3",
                            .Date = "d",
                            .Computer = "e",
                            .User = "f",
                            .Comment = "g"};
    // 4 for the size, 7 for the version, 7 lengths of 4 and 10 characters.
    const ByteVector expected = Bytes()
                                    .u32(1)
                                    .u32(49)
                                    .text("0.1")
                                    .text("a")
                                    .text("bc")
                                    .text("1.3")
                                    .text("d")
                                    .text("e")
                                    .text("f")
                                    .text("g");
    EXPECT_EQ(written(std::vector<ModifierInfo>{info}), expected);
}

TEST_F(Records, ModifierInfosStandBehindTheirCount) {
    const ByteVector expected = Bytes().u32(2).u32(39).text("0.1").zeros(28).u32(39).text("0.1").zeros(28);
    EXPECT_EQ(written(std::vector<ModifierInfo>(2)), expected);
}

TEST_F(Records, NoResultAttributesAreACountOfZero) {
    EXPECT_EQ(written(std::vector<QelMox::ResultAttributes>()), (ByteVector{0, 0, 0, 0}));
}

} // namespace
