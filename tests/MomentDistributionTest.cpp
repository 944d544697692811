#include <SteelDesign/MomentDistribution.h>

#include <gtest/gtest.h>

using namespace SteelDesign;

TEST(MomentDistribution, ConstructorOrderAndAxisSelection)
{
    const MomentDistribution m({1.0, 2.0, 3.0}, MomentDiagram::Parabolic, {4.0, 5.0, 6.0}, MomentDiagram::Polygonal,
                               7.0, ApplicationPoint::Top, 8.0);
    EXPECT_EQ(m.getMomentWerte(Axis::y), (std::vector<double>{1.0, 2.0, 3.0}));
    EXPECT_EQ(m.getMomentWerte(Axis::z), (std::vector<double>{4.0, 5.0, 6.0}));
    EXPECT_EQ(m.getMomentDiagram(Axis::y), MomentDiagram::Parabolic);
    EXPECT_EQ(m.getMomentDiagram(Axis::z), MomentDiagram::Polygonal);
    EXPECT_EQ(m.getMaxMomentValue(), 7.0);
    EXPECT_EQ(m.getApplicationPoint(), ApplicationPoint::Top);
    EXPECT_EQ(m.getMcr(), 8.0);
    // Any axis value other than y answers for z.
    EXPECT_EQ(m.getMomentWerte(static_cast<Axis>(2)), m.getMomentWerte(Axis::z));
    EXPECT_EQ(m.getMomentDiagram(static_cast<Axis>(-1)), MomentDiagram::Polygonal);
    EXPECT_EQ(m.getMomentWert(Axis::z, 1), 5.0);
}

TEST(MomentDistribution, DefaultIsEmptyAndMissingValuesReadZero)
{
    const MomentDistribution m;
    EXPECT_TRUE(m.getMomentWerte(Axis::y).empty());
    EXPECT_TRUE(m.getMomentWerte(Axis::z).empty());
    EXPECT_EQ(m.getMomentDiagram(Axis::y), MomentDiagram::Polygonal);
    EXPECT_EQ(m.getApplicationPoint(), ApplicationPoint::Center);
    EXPECT_EQ(m.getMaxMomentValue(), 0.0);
    EXPECT_EQ(m.getMcr(), 0.0);
    EXPECT_EQ(m.getMomentWert(Axis::y, 0), 0.0);
    EXPECT_EQ(m.getMomentWert(Axis::y, 2), 0.0);
}
