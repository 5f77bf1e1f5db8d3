#include <Qel/Mox2/DatasetType.h>

#include <gtest/gtest.h>

namespace {

TEST(DatasetType, NumbersAreThoseOfTheInterface) {
    EXPECT_EQ(int{Qel::Mox2::Connectivity0}, 0);
    EXPECT_EQ(int{Qel::Mox2::Connectivity1}, 1);
    EXPECT_EQ(int{Qel::Mox2::Connectivity2}, 2);
    EXPECT_EQ(int{Qel::Mox2::Polylength0}, 3);
    EXPECT_EQ(int{Qel::Mox2::Polylength1}, 4);
    EXPECT_EQ(int{Qel::Mox2::Polylength2}, 5);
    EXPECT_EQ(int{Qel::Mox2::PartElements0}, 6);
    EXPECT_EQ(int{Qel::Mox2::PartElements1}, 7);
    EXPECT_EQ(int{Qel::Mox2::PartElements2}, 8);
    EXPECT_EQ(int{Qel::Mox2::Coordinates}, 9);
    EXPECT_EQ(int{Qel::Mox2::NodeScalar}, 10);
    EXPECT_EQ(int{Qel::Mox2::NodeVector}, 11);
    EXPECT_EQ(int{Qel::Mox2::NodeSixA}, 12);
    EXPECT_EQ(int{Qel::Mox2::NodeSixB}, 13);
    EXPECT_EQ(int{Qel::Mox2::ElementScalar}, 14);
    EXPECT_EQ(int{Qel::Mox2::ElementVector}, 15);
    EXPECT_EQ(int{Qel::Mox2::ElementSixA}, 16);
    EXPECT_EQ(int{Qel::Mox2::ElementSixB}, 17);
    EXPECT_EQ(int{Qel::Mox2::ThirdScalar}, 18);
    EXPECT_EQ(int{Qel::Mox2::ThirdVector}, 19);
    EXPECT_EQ(int{Qel::Mox2::ThirdSixA}, 20);
    EXPECT_EQ(int{Qel::Mox2::ThirdSixB}, 21);
    EXPECT_EQ(int{Qel::Mox2::FourthScalarA}, 22);
    EXPECT_EQ(int{Qel::Mox2::FourthScalarB}, 23);
    EXPECT_EQ(int{Qel::Mox2::FourthVector}, 24);
    EXPECT_EQ(int{Qel::Mox2::FourthSixA}, 25);
    EXPECT_EQ(int{Qel::Mox2::FourthSixB}, 26);
    EXPECT_EQ(int{Qel::Mox2::NodeIds}, 27);
    EXPECT_EQ(int{Qel::Mox2::ElementIds}, 28);
    EXPECT_EQ(int{Qel::Mox2::DisplacementVector}, 29);
    EXPECT_EQ(int{Qel::Mox2::DisplacementSix}, 30);
}

} // namespace
