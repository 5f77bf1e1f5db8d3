#include <Qel/Mox/Shape.h>

#include <gtest/gtest.h>

namespace {

TEST(MoxShape, NamesItsTypeAndVersion) {
    const QelMox::Shape shape("part");
    EXPECT_EQ(shape.GetName(), "part");
    EXPECT_EQ(shape.GetTypeName(), "Shape");
    EXPECT_EQ(shape.GetVersion(), "0.2");
}

TEST(MoxShape, MaterialHasNoName) {
    EXPECT_EQ(QelMox::Shape("part").GetMaterial().GetName(), "");
}

TEST(MoxShape, MaterialIsTheShapesOwn) {
    QelMox::Shape shape("part");
    const QelMox::Shape other("part");
    shape.GetMaterial().SetTransparency(0.5F);
    EXPECT_EQ(shape.GetMaterial().GetTransparency(), 0.5F);
    EXPECT_EQ(other.GetMaterial().GetTransparency(), 0.0F);
}

} // namespace
