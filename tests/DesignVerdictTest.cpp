// The verdicts of the design layer (design/Verdict.h): every Limitation that evaluateCrossSection,
// evaluateMember and designMember produce, that a limited check is "not verified" and never "fulfilled",
// that a failing one is "not fulfilled" whatever its limitations, the choice of 6.3.2.2 / 6.3.2.3 of
// EN 1993-1-1, the summary columns with the general method, and the batch against the member command.

#include "CommandRunner.h"

#include <design/MemberDesign.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace design;
using SteelDesign::Forces;
using SteelDesign::MomentDiagram;
using UT = SteelDesign::BucklingResults::UtilizationType;

namespace {

// A section, a steel and the requests of both checks, kept alive together.
struct Checked {
    std::unique_ptr<SDBSection> section;
    KaConstrSteel steel;
    CrossSectionRequest cross;
    MemberRequest member;

    Checked(const char* name, const char* grade, const Forces& forces, double length,
          LateralTorsionalMethod method = LateralTorsionalMethod::Automatic)
        : section(makeSection(name)), steel(*KaConstrSteel::fromName(grade))
    {
        cross.section = section.get();
        cross.steel = &steel;
        cross.forces = forces;
        member.section = section.get();
        member.steel = &steel;
        member.forces = forces;
        const double My = forces.getMy(), Mz = forces.getMz();
        member.moments = makeMoments({My, My, My}, MomentDiagram::Polygonal, {Mz, Mz, Mz}, MomentDiagram::Polygonal,
                                     std::nullopt, SteelDesign::ApplicationPoint::Center, 0.0);
        member.lengths = uniformLengths(length);
        member.method = method;
    }
    Checked(const Checked&) = delete;
    Checked& operator=(const Checked&) = delete;
};

enum class Check { CrossSection, Member, Design };

struct LimitationCase {
    const char* name;
    const char* section;
    const char* grade;
    Forces forces;
    double length;
    LateralTorsionalMethod method;
    Check check;
    Limitation flag;
    Verdict verdict;
};

std::string describeCase(const ::testing::TestParamInfo<LimitationCase>& info) { return info.param.name; }

} // namespace

// Each flag comes from the actions and the section that cause it, with the verdict it implies; a
// limited check is never fulfilled and its reason is printed.
class DesignVerdictLimitations : public ::testing::TestWithParam<LimitationCase> {};

TEST_P(DesignVerdictLimitations, FlagAndVerdict)
{
    const LimitationCase& c = GetParam();
    Checked s(c.section, c.grade, c.forces, c.length, c.method);
    std::uint32_t flags = 0;
    Verdict verdict = Verdict::Fulfilled;
    switch (c.check) {
    case Check::CrossSection: {
        const CrossSectionOutcome o = evaluateCrossSection(s.cross);
        flags = o.limitations;
        verdict = o.verdict;
        EXPECT_EQ(o.verdict, verdictOf(o.anyExceeded, o.limitations));
        break;
    }
    case Check::Member: {
        const MemberOutcome o = evaluateMember(s.member);
        flags = o.limitations;
        verdict = o.verdict;
        EXPECT_EQ(o.verdict, verdictOf(o.anyExceeded, o.limitations));
        break;
    }
    case Check::Design: {
        const DesignSummary d = designMember(s.cross, &s.member);
        flags = d.limitations;
        verdict = d.verdict;
        EXPECT_EQ(d.fulfilled, d.verdict == Verdict::Fulfilled);
        break;
    }
    }
    EXPECT_NE(flags & c.flag, 0u) << describeAll(flags);
    EXPECT_EQ(verdict, c.verdict) << describeAll(flags);
    EXPECT_NE(verdict, Verdict::Fulfilled);
    EXPECT_EQ(exitCodeOf(verdict), c.verdict == Verdict::NotFulfilled ? 1 : 3);
    EXPECT_NE(describeAll(flags).find(describe(c.flag)), std::string::npos);
}

using LTM = LateralTorsionalMethod;
INSTANTIATE_TEST_SUITE_P(
    EachCause, DesignVerdictLimitations,
    ::testing::Values(
        // IPE 330 in S355: web c/t = 271 / 7.5 = 36.1 > 42 eps = 34.2 (Table 5.2): class 4 in compression.
        LimitationCase{"Class4CrossSection", "IPE 330", "S355", Forces(-1477, 0, 0, 0, 0, 0), 0, LTM::Automatic,
                       Check::CrossSection, Class4, Verdict::NotVerified},
        // The same column 4 m long: Nb,Rd of the gross section is exceeded, so not fulfilled despite the flag.
        LimitationCase{"Class4MemberExceeded", "IPE 330", "S355", Forces(-1477, 0, 0, 0, 0, 0), 4, LTM::Automatic,
                       Check::Member, Class4, Verdict::NotFulfilled},
        LimitationCase{"Class4Design", "IPE 330", "S355", Forces(-1477, 0, 0, 0, 0, 0), 4, LTM::Automatic, Check::Design,
                       Class4, Verdict::NotFulfilled},
        // IPE 500 in S355 under shear alone: without a normal stress the web is classified as compressed.
        LimitationCase{"Class4ShearAlone", "IPE 500", "S355", Forces(0, 0, 0, 0, 0, 2000), 0, LTM::Automatic,
                       Check::CrossSection, Class4, Verdict::NotVerified},
        LimitationCase{"CrossSectionNotSupported", "SHS 200x200x10", "S355", Forces(-500, 0, 0, 0, 0, 0), 0,
                       LTM::Automatic, Check::CrossSection, CrossSectionNotSupported, Verdict::NotVerified},
        LimitationCase{"TensionWithBending", "IPE 300", "S235", Forces(100, 50, 0, 0, 0, 0), 4, LTM::Automatic,
                       Check::Member, TensionWithBending, Verdict::NotVerified},
        LimitationCase{"BendingAboutZOnly", "IPE 300", "S235", Forces(0, 0, 10, 0, 0, 0), 4, LTM::Automatic,
                       Check::Member, BendingAboutZOnly, Verdict::NotVerified},
        LimitationCase{"CompressionWithMzOnly", "IPE 300", "S235", Forces(-100, 0, 10, 0, 0, 0), 4, LTM::Automatic,
                       Check::Member, BendingAboutZOnly, Verdict::NotVerified},
        LimitationCase{"BiaxialBendingWithoutCompression", "IPE 300", "S235", Forces(0, 50, 5, 0, 0, 0), 4,
                       LTM::Automatic, Check::Member, BiaxialBendingWithoutCompression, Verdict::NotVerified},
        LimitationCase{"InteractionNeedsRolledMethod", "IPE 300", "S235", Forces(-100, 30, 0, 0, 0, 0), 4,
                       LTM::General, Check::Member, InteractionNeedsRolledMethod, Verdict::NotVerified},
        LimitationCase{"InteractionNeedsRolledMethodDesign", "IPE 300", "S235", Forces(-100, 30, 0, 0, 0, 0), 4,
                       LTM::General, Check::Design, InteractionNeedsRolledMethod, Verdict::NotVerified},
        // Overloaded by the general method: (6.62) exceeds 1.0, so not fulfilled whatever (6.61) says.
        LimitationCase{"InteractionExceededByGeneralMethod", "IPE 300", "S235", Forces(-900, 60, 0, 0, 0, 0), 6,
                       LTM::General, Check::Member, InteractionNeedsRolledMethod, Verdict::NotFulfilled}),
    describeCase);

// The same actions without the cause give no flag: the flags are not set for every member.
TEST(DesignVerdictScope, ActionsInsideTheMemberCheckGiveNoFlag)
{
    const Forces inside[] = {Forces(-100, 0, 0, 0, 0, 0), Forces(0, 50, 0, 0, 0, 0), Forces(-100, 30, 0, 0, 0, 0),
                             Forces(-100, 30, 5, 0, 0, 0), Forces(100, 0, 0, 0, 0, 0)};
    for (const Forces& f : inside) {
        EXPECT_EQ(memberScopeLimitations(f, 1, true), 0u) << f.getN() << " " << f.getMy() << " " << f.getMz();
        Checked s("IPE 300", "S235", f, 4.0, LTM::Rolled);
        const MemberOutcome o = evaluateMember(s.member);
        EXPECT_EQ(o.limitations, 0u) << describeAll(o.limitations);
    }
    EXPECT_EQ(memberScopeLimitations(Forces(-100, 0, 0, 0, 0, 0), 4, true), static_cast<std::uint32_t>(Class4));
    // Below the dispatcher's tolerance (1e-6) a force counts as zero.
    EXPECT_EQ(memberScopeLimitations(Forces(1e-7, 50, 0, 0, 0, 0), 1, true), 0u);
    EXPECT_EQ(memberScopeLimitations(Forces(-100, 30, 0, 0, 0, 0), 1, false),
              static_cast<std::uint32_t>(InteractionNeedsRolledMethod));
}

// Automatic: 6.3.2.3 for I sections (rolled, and welded as their equivalent), 6.3.2.2 for every other kind.
TEST(DesignVerdictMethod, AutomaticTakesTheRolledMethodForISectionsOnly)
{
    const struct {
        const char* section;
        bool rolled;
    } cases[] = {{"IPE 300", true}, {"HEB 300", true}, {"WI 1200x300x8x20", true},
                 {"RHS 250x150x8", false}, {"SHS 200x200x10", false}, {"CHS 219.1x8", false}};
    for (const auto& c : cases) {
        Checked s(c.section, "S355", Forces(0, 40, 0, 0, 0, 0), 4.0);
        EXPECT_EQ(usesRolledMethod(LTM::Automatic, *s.section), c.rolled) << c.section;
        EXPECT_TRUE(usesRolledMethod(LTM::Rolled, *s.section));
        EXPECT_FALSE(usesRolledMethod(LTM::General, *s.section));
        const MemberOutcome o = evaluateMember(s.member);
        EXPECT_EQ(o.rolledMethod, c.rolled) << c.section;
        // chiLT,mod and f of (6.58) exist only with 6.3.2.3.
        EXPECT_EQ(o.results.getChiLTmod().hasValue(), c.rolled) << c.section;
    }
}

TEST(DesignVerdictCodes, ExitCodesNamesAndReasons)
{
    EXPECT_EQ(exitCodeOf(Verdict::Fulfilled), 0);
    EXPECT_EQ(exitCodeOf(Verdict::NotFulfilled), 1);
    EXPECT_EQ(exitCodeOf(Verdict::NotVerified), 3);
    EXPECT_STREQ(toString(Verdict::Fulfilled), "fulfilled");
    EXPECT_STREQ(toString(Verdict::NotFulfilled), "not fulfilled");
    EXPECT_STREQ(toString(Verdict::NotVerified), "not verified");
    EXPECT_EQ(verdictOf(false, NoLimitation), Verdict::Fulfilled);
    EXPECT_EQ(verdictOf(false, Class4), Verdict::NotVerified);
    EXPECT_EQ(verdictOf(true, NoLimitation), Verdict::NotFulfilled);
    EXPECT_EQ(verdictOf(true, Class4 | TensionWithBending), Verdict::NotFulfilled);
    EXPECT_EQ(describeAll(0), "");
    EXPECT_EQ(describeAll(Class4), describe(Class4));
    EXPECT_EQ(describeAll(Class4 | BendingAboutZOnly),
              std::string(describe(Class4)) + "; " + describe(BendingAboutZOnly));
    std::uint32_t all = 0;
    std::string joined;
    for (std::uint32_t bit = 0; bit < limitationCount; ++bit) {
        const auto flag = static_cast<Limitation>(1u << bit);
        const std::string text = describe(flag);
        EXPECT_FALSE(text.empty()) << bit;
        all |= flag;
        joined += (joined.empty() ? "" : "; ") + text;
    }
    EXPECT_EQ(describeAll(all), joined);
    EXPECT_EQ(describeAll(all | (1u << 31)), joined);  // a bit without a meaning adds nothing
}

// describeAll joins the reasons with "; " (the batch's notVerified column): a reader splits them back only
// when no reason holds the separator itself.
TEST(DesignVerdictCodes, ReasonsSplitBackOnTheSeparator)
{
    std::uint32_t all = 0;
    for (std::uint32_t bit = 0; bit < limitationCount; ++bit) all |= 1u << bit;
    const std::string joined = describeAll(all);
    std::size_t parts = 1;
    for (std::size_t at = joined.find("; "); at != std::string::npos; at = joined.find("; ", at + 2)) ++parts;
    EXPECT_EQ(parts, limitationCount) << joined;
    for (std::uint32_t bit = 0; bit < limitationCount; ++bit) {
        const std::string text = describe(static_cast<Limitation>(1u << bit));
        EXPECT_EQ(text.find("; "), std::string::npos) << text;
    }
}

// With the general method, (6.61) divides by a zero MyRd (infinite); the summary's compression-bending
// column takes (6.62) instead, finite, and the governing utilization is never infinite.
TEST(DesignVerdictSummary, GeneralMethodReportsEquation662)
{
    for (const char* name : {"IPE 300", "HEA 300", "HEB 200", "IPE 500"}) {
        for (double N : {-100.0, -400.0}) {
            Checked s(name, "S235", Forces(N, 40, 0, 0, 0, 0), 5.0, LTM::General);
            const MemberOutcome raw = evaluateMember(s.member);
            ASSERT_TRUE(raw.results.getUtilization(UT::CompressionBendingAxisY).hasValue()) << name;
            EXPECT_FALSE(std::isfinite(raw.results.getUtilization(UT::CompressionBendingAxisY).value())) << name;
            const double z = raw.results.getUtilization(UT::CompressionBendingAxisZ).value();
            ASSERT_TRUE(std::isfinite(z)) << name;
            const DesignSummary d = designMember(s.cross, &s.member);
            ASSERT_TRUE(d.member[2].hasValue()) << name;
            EXPECT_EQ(d.member[2].value(), z) << name;
            EXPECT_TRUE(std::isfinite(d.governingUtilization)) << name << " " << d.governing;
            EXPECT_NE(d.limitations & InteractionNeedsRolledMethod, 0u);
            EXPECT_EQ(d.limitations & NonFiniteUtilization, 0u) << describeAll(d.limitations);
            EXPECT_NE(d.verdict, Verdict::Fulfilled);
        }
    }
}

// --- the batch against the member command ----------------------------------------------------------------------

namespace {

class TempCsv {
public:
    explicit TempCsv(const std::string& content)
        : path_(::testing::TempDir() + "steeldesign_verdict_" + std::to_string(getpid()) + ".csv")
    {
        std::ofstream(path_) << content;
    }
    ~TempCsv() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

std::vector<nlohmann::json> jsonLines(const std::string& text)
{
    std::vector<nlohmann::json> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] == '{') lines.push_back(nlohmann::json::parse(line));
    return lines;
}

// The largest of the present member utilizations of the command's JSON.
nlohmann::json largest(const nlohmann::json& u, std::initializer_list<const char*> names)
{
    nlohmann::json best;
    for (const char* n : names)
        if (!u[n].is_null() && (best.is_null() || u[n].get<double>() > best.get<double>())) best = u[n];
    return best;
}

} // namespace

TEST(DesignVerdictBatch, LengthColumnsEqualTheMemberCommandAndClass4IsNotVerified)
{
    const TempCsv csv("id,section,steel,N,My,Mz,Mt,Vy,Vz,length,lengthY,lengthZ,lengthLT,MyStart,MyMid,MyEnd,diagramY\n"
                      "split,IPE 300,S355,-300,80,0,0,0,20,0,6,3,2.5,80,40,0,polygonal\n"
                      "columnY,HEB 300,S235,-2000,0,0,0,0,0,0,8,5.6,,0,0,0,polygonal\n"
                      "slender,IPE 330,S355,-300,0,0,0,0,0,0,2,,,0,0,0,polygonal\n");
    const CommandRun batch = runSteeldesign("batch --rules library " + csv.path(), false);
    EXPECT_EQ(batch.exitCode, 3) << batch.output;  // fulfilled and not verified rows only
    const auto rows = jsonLines(batch.output);
    ASSERT_EQ(rows.size(), 3u) << batch.output;

    const struct {
        const char* arguments;
    } members[] = {
        {"member --rules library \"IPE 300\" --steel S355 --N -300 --My 80 --Vz 20 --lcr-y 6 --lcr-z 3 --l-lt 2.5 --moments-y 80,40,0"},
        {"member --rules library \"HEB 300\" --steel S235 --N -2000 --lcr-y 8 --lcr-z 5.6"},
    };
    for (std::size_t i = 0; i < 2; ++i) {
        const CommandRun r = runSteeldesign(std::string(members[i].arguments) + " --json", false);
        ASSERT_EQ(r.exitCode, 0) << r.output;
        const auto m = nlohmann::json::parse(r.output);
        const auto& u = m["utilizations"];
        const auto& b = rows[i]["utilizations"];
        EXPECT_EQ(b["memberCompression"], largest(u, {"CompressionAxisY", "CompressionAxisZ", "Compression"}));
        EXPECT_EQ(b["memberBending"], largest(u, {"BendingAxisY", "BendingAxisZ", "Bending"}));
        EXPECT_EQ(b["memberCompressionBending"],
                  largest(u, {"CompressionBendingAxisY", "CompressionBendingAxisZ", "CompressionBending"}));
        EXPECT_EQ(b["memberShearBuckling"], m["utilizationShearBuckling"]);
        EXPECT_EQ(rows[i]["verdict"], m["verdict"]);
        EXPECT_EQ(rows[i]["verdict"], "fulfilled");
    }
    // The lengths reached the rows: the IPE 300 with Lcr,z = 3 and LLT = 2.5 differs from 6 m throughout.
    const auto uniform = nlohmann::json::parse(
        runSteeldesign("member --rules library \"IPE 300\" --steel S355 --N -300 --My 80 --Vz 20 --length 6 --moments-y 80,40,0 --json",
                       false)
            .output);
    EXPECT_NE(rows[0]["utilizations"]["memberCompressionBending"], uniform["utilizations"]["CompressionBending"]);

    // Class 4 (IPE 330 in S355) checked only with gross properties: not verified, with the reason.
    const auto& slender = rows[2];
    EXPECT_EQ(slender["class"], 4);
    EXPECT_EQ(slender["verdict"], "not verified");
    EXPECT_EQ(slender["fulfilled"], false);
    ASSERT_TRUE(slender["notVerified"].is_string());
    EXPECT_NE(slender["notVerified"].get<std::string>().find("class 4"), std::string::npos);
    EXPECT_LT(slender["governingUtilization"].get<double>(), 1.0);
}

namespace {

// Shear with torsion (6.2.7(9)) is checked by the library in classes 1 and 2 only; in class 3 it records
// the shear utilization as 0. IPE 300, S355, Vz = 200 kN (Vc,z,Rd about 455 kN elastically, so about 0.44
// unchecked) with Mt = 0.5 kNm: never "fulfilled" in class 3, a plain verdict in class 1 and without one of
// the two actions.
struct ShearTorsionCase {
    bool elastic;
    double Mt, Vz, Vy;
    bool flagged;
};

class ShearWithTorsion : public ::testing::TestWithParam<ShearTorsionCase> {};

TEST_P(ShearWithTorsion, Class3IsNotVerifiedWhereTheShearCheckDidNotRun)
{
    const ShearTorsionCase c = GetParam();
    auto section = makeSection("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const CrossSectionRequest request{section.get(), &steel, Forces(0.0, 50.0, 0.0, c.Mt, c.Vy, c.Vz), 0.0, c.elastic};
    const CrossSectionOutcome outcome = evaluateCrossSection(request);
    EXPECT_EQ((outcome.limitations & ShearWithTorsionNotChecked) != 0, c.flagged);
    if (c.flagged) {
        EXPECT_EQ(outcome.results.getUtilization(SteelDesign::VerificationResults::Shear).valueOr(-1.0), 0.0);
        EXPECT_EQ(outcome.verdict, Verdict::NotVerified);
        EXPECT_EQ(designMember(request, nullptr).verdict, Verdict::NotVerified);
    } else {
        EXPECT_EQ(outcome.verdict, Verdict::Fulfilled);
    }
}

INSTANTIATE_TEST_SUITE_P(Ipe300, ShearWithTorsion,
                         ::testing::Values(ShearTorsionCase{true, 0.5, 200.0, 0.0, true},
                                           ShearTorsionCase{true, 0.5, 0.0, 40.0, true},
                                           ShearTorsionCase{true, -0.5, -200.0, 0.0, true},
                                           ShearTorsionCase{false, 0.5, 200.0, 0.0, false},
                                           ShearTorsionCase{true, 0.0, 200.0, 0.0, false},
                                           ShearTorsionCase{true, 0.5, 0.0, 0.0, false}));

} // namespace
