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

TEST(MoxShape, MaterialThatNobodyHasChangedIsTheDefaultOne) {
    QelMox::Shape changed("part");
    changed.GetMaterial().SetShininess(0.5F);
    const QelMox::Shape shape("part");
    EXPECT_EQ(shape.GetMaterial().GetShininess(), 0.2F);
    EXPECT_EQ(shape.GetMaterial().GetDiffuse(), (QelMox::Material::Color{0.8F, 0.8F, 0.8F, 1.0F}));
    EXPECT_EQ(shape.GetMaterial().GetName(), "");
}

TEST(MoxShape, MaterialKeepsAllChanges) {
    QelMox::Shape shape("part");
    shape.GetMaterial().SetTransparency(0.5F);
    shape.GetMaterial().SetShininess(0.75F);
    const QelMox::Shape& unchanging = shape;
    EXPECT_EQ(unchanging.GetMaterial().GetTransparency(), 0.5F);
    EXPECT_EQ(unchanging.GetMaterial().GetShininess(), 0.75F);
}

} // namespace
