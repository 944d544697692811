// The initializer keeps its plate thicknesses in place and its type key as a value; both must read as
// the vector and the string did, also when a handler runs again and the list outgrows its place.

#include <KaMaterial.h>
#include <SectionCatalogue.h>
#include <SteelDesign/SectionInitializer.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace SteelDesign;
using Kind = SectionInitializer::SectionKind;

TEST(SectionInitializerStorage, ThicknessesGrowPastTheirPlaceWhenTheHandlerRunsAgain)
{
    auto section = SDBCatalogue::get("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    SectionInitializer si(section.get(), &steel, Forces(-100, 50, 0, 0, 0, 0), VerificationControl::Classify, false);
    const std::vector<double> once = si.getThicknessVector();
    ASSERT_EQ(once.size(), 2u);  // web s, flange t
    EXPECT_NEAR(once[0], 0.0071, 1e-12);
    EXPECT_NEAR(once[1], 0.0107, 1e-12);
    ASSERT_EQ(si.getThicknesses().size(), 2u);
    EXPECT_EQ(si.getThicknesses()[1], once[1]);

    // Each further run appends the web and flange thickness again, as push_back on a vector does.
    EXPECT_TRUE(si.checkSection());
    EXPECT_TRUE(si.checkSection());
    const std::vector<double> thrice{once[0], once[1], once[0], once[1], once[0], once[1]};
    EXPECT_EQ(si.getThicknessVector(), thrice);
    EXPECT_EQ(std::vector<double>(si.getThicknesses().begin(), si.getThicknesses().end()), thrice);

    const SectionInitializer copy = si;
    EXPECT_EQ(copy.getThicknessVector(), thrice);
    SectionInitializer moved = std::move(si);
    EXPECT_EQ(moved.getThicknessVector(), thrice);
    SectionInitializer assigned = copy;
    assigned = std::move(moved);
    EXPECT_EQ(assigned.getThicknessVector(), thrice);
}

TEST(SectionInitializerStorage, TheKindFollowsTheTypeKey)
{
    KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    const Forces forces(-10, 0, 0, 0, 0, 0);
    auto kindOf = [&](SDBSection& section) {
        return SectionInitializer(&section, &steel, forces, VerificationControl::Classify, false).getSectionKind();
    };
    EXPECT_EQ(kindOf(*SDBCatalogue::get("IPE 300")), Kind::I);
    EXPECT_EQ(kindOf(*SDBCatalogue::get("UPE 200")), Kind::U);
    EXPECT_EQ(kindOf(*SDBCatalogue::get("CHS 168.3x5")), Kind::O);
    EXPECT_EQ(kindOf(*SDBCatalogue::get("SHS 100x100x5")), Kind::RH);

    // Another key on an I section: the kind is Other, as no key compares equal.
    SDBSectionI other(0.3, 0.15, 0.0071, 0.0107, 0.015);
    other.setTypeKey("IX");
    SectionInitializer si(&other, &steel, forces, VerificationControl::Classify, false);
    EXPECT_EQ(si.getSectionType(), "IX");
    EXPECT_EQ(si.getSectionKind(), Kind::Other);

    // A section without a type record: empty key, kind None.
    SDBSectionI none(0.3, 0.15, 0.0071, 0.0107, 0.015);
    none.clearType();
    SectionInitializer sn(&none, &steel, forces, VerificationControl::Classify, false);
    EXPECT_TRUE(sn.getSectionType().empty());
    EXPECT_EQ(sn.getSectionKind(), Kind::None);
}
