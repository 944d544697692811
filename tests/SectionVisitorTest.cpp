#include <SDBSection.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

// Records which overload ran; returns the slot number + 100 so that accept() is seen to pass it on.
class SlotRecorder : public SDBSectionVisitor {
public:
    int slot = -1;
    bool analyser = false;  // an analysing visitor returns 0 for the kinds it ignores
    int visit(SDBSectionZ*) override { return record(0); }
    int visit(SDBSectionWZ*) override { return record(1); }
    int visit(SDBSectionWU*) override { return record(2); }
    int visit(SDBSectionUpstandBeam*) override { return record(3); }
    int visit(SDBSectionU*) override { return record(4); }
    int visit(SDBSectionThick*) override { return record(5); }
    int visit(SDBSectionT*) override { return record(6); }
    int visit(SDBSectionSpring*) override { return record(7); }
    int visit(SDBSectionRH*) override { return record(8); }
    int visit(SDBSectionR*) override { return record(9); }
    int visit(SDBSectionPolygon*) override { return record(10); }
    int visit(SDBSectionO*) override { return record(11); }
    int visit(SDBSectionL*) override { return record(12); }
    int visit(SDBSectionIX*) override { return record(13); }
    int visit(SDBSectionI*) override { return record(14); }
    int visit(SDBSectionDownstandBeam*) override { return record(15); }
    int visit(SDBSectionCircle*) override { return record(16); }
    int visit(SDBSectionC*) override { return record(17); }
    int visit(SDBSectionBeamPoly*) override { return record(18); }
    int visit(SDBSectionAsPoint*) override { return record(19); }
    int visit(SDBSectionAsLine*) override { return record(20); }

private:
    int record(int s)
    {
        slot = s;
        return analyser ? 0 : 100 + s;
    }
};

// The analysing-visitor convention: 1 for a handled kind, 0 otherwise. Handles I and O only.
class HandlesIAndO : public SlotRecorder {
public:
    HandlesIAndO() { analyser = true; }
    int visit(SDBSectionI*) override { return 1; }
    int visit(SDBSectionO*) override { return 1; }
};

struct KindCase {
    std::string name;
    int slot;
    std::shared_ptr<SDBSection> (*make)();
};

std::vector<KindCase> allKinds()
{
    return {
        {"Z", 0, [] { return std::shared_ptr<SDBSection>(new SDBSectionZ(0.2, 0.08, 0.006, 0.01, 0.008)); }},
        {"WZ", 1, [] { return std::shared_ptr<SDBSection>(new SDBSectionWZ(0.3, 0.1, 0.006, 0.01)); }},
        {"WU", 2, [] { return std::shared_ptr<SDBSection>(new SDBSectionWU(0.3, 0.1, 0.006, 0.01)); }},
        {"UpstandBeam", 3, [] { return std::shared_ptr<SDBSection>(new SDBSectionUpstandBeam()); }},
        {"U", 4, [] { return std::shared_ptr<SDBSection>(new SDBSectionU(0.2, 0.08, 0.006, 0.011, 0.013)); }},
        {"Thick", 5, [] { return std::shared_ptr<SDBSection>(new SDBSectionThick()); }},
        {"T", 6, [] { return std::shared_ptr<SDBSection>(new SDBSectionT(0.1, 0.1, 0.011, 0.011, 0.011)); }},
        {"Spring", 7, [] { return std::shared_ptr<SDBSection>(new SDBSectionSpring()); }},
        {"RH", 8, [] { return std::shared_ptr<SDBSection>(new SDBSectionRH(0.2, 0.1, 0.008, 0.008, 0.012, true)); }},
        {"R", 9, [] { return std::shared_ptr<SDBSection>(new SDBSectionR(0.2, 0.1)); }},
        {"Polygon", 10, [] { return std::shared_ptr<SDBSection>(new SDBSectionPolygon()); }},
        {"O", 11, [] { return std::shared_ptr<SDBSection>(new SDBSectionO(0.2191, 0.008, true)); }},
        {"L", 12, [] { return std::shared_ptr<SDBSection>(new SDBSectionL(0.1, 0.1, 0.01, 0.012)); }},
        {"IX", 13, [] { return std::shared_ptr<SDBSection>(new SDBSectionIX()); }},
        {"I", 14, [] { return std::shared_ptr<SDBSection>(new SDBSectionI(0.3, 0.15, 0.0071, 0.0107, 0.015)); }},
        {"DownstandBeam", 15, [] { return std::shared_ptr<SDBSection>(new SDBSectionDownstandBeam()); }},
        {"Circle", 16, [] { return std::shared_ptr<SDBSection>(new SDBSectionCircle(0.05)); }},
        {"C", 17, [] { return std::shared_ptr<SDBSection>(new SDBSectionC(0.2, 0.07, 0.002, 0.1)); }},
        {"BeamPoly", 18, [] { return std::shared_ptr<SDBSection>(new SDBSectionBeamPoly()); }},
        {"AsPoint", 19, [] { return std::shared_ptr<SDBSection>(new SDBSectionAsPoint()); }},
        {"AsLine", 20, [] { return std::shared_ptr<SDBSection>(new SDBSectionAsLine()); }},
    };
}

class EveryKind : public ::testing::TestWithParam<KindCase> {};

INSTANTIATE_TEST_SUITE_P(SectionKinds, EveryKind, ::testing::ValuesIn(allKinds()),
                         [](const auto& info) { return info.param.name; });

} // namespace

TEST_P(EveryKind, AcceptReachesItsOwnOverloadAndReturnsItsValue)
{
    auto section = GetParam().make();
    SlotRecorder recorder;
    EXPECT_EQ(section->accept(&recorder), 100 + GetParam().slot);
    EXPECT_EQ(recorder.slot, GetParam().slot);

    HandlesIAndO analyser;
    const bool handled = GetParam().name == "I" || GetParam().name == "O";
    EXPECT_EQ(section->accept(&analyser), handled ? 1 : 0);
}

TEST(SectionType, KindsCarryTheirKeyAndATypeCanBeAbsent)
{
    SDBSectionI i(0.3, 0.15, 0.0071, 0.0107, 0.015);
    ASSERT_NE(i.getType(), nullptr);
    EXPECT_EQ(i.getType()->getKey(), SDBKey::I);
    EXPECT_TRUE(i.isRolled());
    i.clearType();
    EXPECT_EQ(i.getType(), nullptr);

    SDBSectionO o(0.1143, 0.005, false);
    EXPECT_EQ(o.getType()->getKey(), SDBKey::O);
    EXPECT_FALSE(o.isHotRolled());
    SDBSectionWU wu(0.3, 0.1, 0.006, 0.01);
    EXPECT_EQ(wu.getFlangeWidth(), 0.1);
    EXPECT_EQ(wu.getT(), 0.01);
    EXPECT_FALSE(wu.isRolled());
}

TEST(SectionType, SecondFlangeIsFlaggedOnlyWhenGiven)
{
    const SDBSectionI rolled(0.3, 0.15, 0.0071, 0.0107, 0.015);
    EXPECT_FALSE(rolled.getB2Set());
    EXPECT_FALSE(rolled.getT2Set());
    const SDBSectionI welded(0.5, 0.3, 0.01, 0.02, 0.0, 0.2, 0.015);
    EXPECT_TRUE(welded.getB2Set());
    EXPECT_TRUE(welded.getT2Set());
    EXPECT_EQ(welded.getB2(), 0.2);
    EXPECT_EQ(welded.getT2(), 0.015);
}
