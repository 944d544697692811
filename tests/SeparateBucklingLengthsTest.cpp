// The buckling lengths per axis of BucklingResistance: with equal lengths the constructor of three
// lengths gives, value for value, what the constructor of one length gives, over the catalogue and many
// load cases; a length of its own reaches only its own checks.

#include <SteelDesign/BucklingResistance.h>
#include <SteelDesign/SectionInitializer.h>

#include <design/BucklingLengths.h>
#include <design/MemberCheck.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>
#include <KaMath.h>
#include <SectionCatalogue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

using namespace SteelDesign;
using U = BucklingResults::UtilizationType;
using K = BucklingResults::InteractionFactorkxx;
using P = BucklingResults::SectionParts;

namespace {

// Bitwise equality of two doubles (so that NaN equals NaN and -0 differs from 0).
bool same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
bool same(const kat::Nullable<double>& a, const kat::Nullable<double>& b)
{
    return a.hasValue() == b.hasValue() && (!a.hasValue() || same(a.value(), b.value()));
}
template <typename T>
bool sameEnum(const kat::Nullable<T>& a, const kat::Nullable<T>& b)
{
    return a.hasValue() == b.hasValue() && (!a.hasValue() || a.value() == b.value());
}

// Every getter of the record, compared; the name of the first that differs, or "".
std::string firstDifference(const BucklingResults& a, const BucklingResults& b)
{
    for (std::size_t t = 0; t < BucklingResults::utilizationTypeCount; ++t) {
        const auto type = static_cast<U>(t);
        if (!same(a.getUtilization(type), b.getUtilization(type))) return "Utilization " + std::to_string(t);
        if (!same(a.getBucklingResistance(type), b.getBucklingResistance(type))) return "BucklingResistance";
    }
    for (Axis axis : {Axis::y, Axis::z}) {
        if (!same(a.getChi(axis), b.getChi(axis))) return "Chi";
        if (!same(a.getLambda(axis), b.getLambda(axis))) return "Lambda";
        if (!same(a.getNcr(axis), b.getNcr(axis))) return "Ncr";
        if (!same(a.getMRk(axis), b.getMRk(axis))) return "MRk";
        if (!same(a.getCm(axis), b.getCm(axis))) return "Cm";
        if (!sameEnum(a.getBucklingCurveCompression(axis), b.getBucklingCurveCompression(axis))) return "curve";
    }
    for (K k : {K::kyy, K::kzz, K::kyz, K::kzy})
        if (!same(a.getInteractionFactor(k), b.getInteractionFactor(k))) return "InteractionFactor";
    for (P p : {P::Web, P::Flange, P::Total})
        if (!same(a.getVbRd(p), b.getVbRd(p))) return "VbRd";
    if (!sameEnum(a.getBucklingCurveBending(), b.getBucklingCurveBending())) return "BucklingCurveBending";
    const std::pair<const char*, kat::Nullable<double> (BucklingResults::*)() const> optionals[] = {
        {"ChiLT", &BucklingResults::getChiLT},
        {"ChiLTmod", &BucklingResults::getChiLTmod},
        {"ChiW", &BucklingResults::getChiW},
        {"CorrectionFactor", &BucklingResults::getCorrectionFactor},
        {"LambdaW", &BucklingResults::getLambdaW},
        {"Phi", &BucklingResults::getPhi},
        {"ReduceFactor", &BucklingResults::getReduceFactor},
        {"ShearFieldStiffness", &BucklingResults::getShearFieldStiffness},
        {"UtilizationShearBuckling", &BucklingResults::getUtilizationShearBuckling}};
    for (const auto& [name, getter] : optionals)
        if (!same((a.*getter)(), (b.*getter)())) return name;
    const std::pair<const char*, double (BucklingResults::*)() const> plain[] = {
        {"Alpha", &BucklingResults::getAlpha},         {"Beta", &BucklingResults::getBeta},
        {"CriticalMoment", &BucklingResults::getCriticalMoment}, {"LambdaLT0", &BucklingResults::getLambdaLT0},
        {"LambdaLT", &BucklingResults::getLambdaLT},   {"Lcr", &BucklingResults::getLcr},
        {"NRk", &BucklingResults::getNRk},             {"Zp", &BucklingResults::getZp}};
    for (const auto& [name, getter] : plain)
        if (!same((a.*getter)(), (b.*getter)())) return name;
    if (a.getClass() != b.getClass()) return "Class";
    if (a.getErrorCode() != b.getErrorCode()) return "ErrorCode";
    if (a.getShearBucklingErrorCode() != b.getShearBucklingErrorCode()) return "ShearBucklingErrorCode";
    return "";
}

struct Load {
    double n, my, mz, vz;  // fractions of Npl, Mpl,y, Mpl,z, Vpl,z
    std::vector<double> moments;
    MomentDiagram diagram;
};

} // namespace

TEST(SeparateBucklingLengths, EqualLengthsGiveTheOneLengthResultsValueForValue)
{
    const Load loads[] = {
        {-0.4, 0, 0, 0, {0, 0, 0}, MomentDiagram::Polygonal},          // pure compression
        {0, 0.6, 0, 0.3, {0.6, 0.3, 0}, MomentDiagram::Polygonal},     // bending, straight line
        {0, 0.5, 0, 0.2, {0, 0.5, 0}, MomentDiagram::Parabolic},       // bending, span moment
        {-0.2, 0.4, 0, 0.1, {-0.4, 0.2, -0.4}, MomentDiagram::Parabolic},  // hogging ends
        {-0.3, 0.3, 0.1, 0.2, {0.3, 0.3, 0.3}, MomentDiagram::Polygonal},  // compression, My and Mz
        {0.2, 0.3, 0, 0.4, {0.3, 0.1, -0.3}, MomentDiagram::Polygonal},    // tension with bending
        {0, 0, 0.3, 0.6, {0, 0, 0}, MomentDiagram::Polygonal},             // Mz and shear only
    };
    std::vector<std::string> names;
    for (const char* family : {"IPE", "HEA", "HEB", "HEM", "UPE", "RHS", "CHS"}) {
        const auto all = SDBCatalogue::names(family);
        for (std::size_t i = 0; i < all.size(); i += 3) names.push_back(all[i]);
    }
    names.push_back("L 100x100x10");
    int compared = 0;
    for (const std::string& name : names) {
        auto section = SDBCatalogue::find(name);
        ASSERT_TRUE(section) << name;
        for (const char* grade : {"S235", "S355", "S460"}) {
            KaConstrSteel steel = *KaConstrSteel::fromName(grade);
            const double fy = steel.getFyk(0.01);
            for (const Load& load : loads) {
                const double My = load.my * section->getWply() * fy, Mz = load.mz * section->getWplz() * fy;
                const Forces forces(load.n * section->getA() * fy, My, Mz, 0,
                                    0, load.vz * section->getAvz() * fy / std::sqrt(3.0));
                std::vector<double> moments;
                for (double m : load.moments) moments.push_back(m * section->getWply() * fy);
                for (ApplicationPoint point : {ApplicationPoint::Center, ApplicationPoint::Top}) {
                    const MomentDistribution distribution(moments, load.diagram, {Mz, Mz, Mz}, MomentDiagram::Polygonal,
                                                          std::fabs(My), point, 0.0);
                    for (bool rolled : {false, true}) {
                        const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify,
                                                      rolled);
                        for (double L : {0.0, 2.5, 7.0}) {
                            for (const auto& [cTheta, S] : {std::pair{0.0, 0.0}, std::pair{50.0, 2000.0}}) {
                                BucklingResults one, three;
                                const BucklingResistance a(one, section.get(), init, forces, distribution, 1.1, L,
                                                           cTheta, S, rolled, !rolled);
                                const BucklingResistance b(three, section.get(), init, forces, distribution, 1.1,
                                                           BucklingResistance::BucklingLengths{L, L, L}, cTheta, S,
                                                           rolled, !rolled);
                                a.verifyAllResistance();
                                a.verifyShearBuckling();
                                b.verifyAllResistance();
                                b.verifyShearBuckling();
                                EXPECT_EQ(a.calculateElasticCriticalMoment(), b.calculateElasticCriticalMoment());
                                const std::string diff = firstDifference(one, three);
                                ASSERT_EQ(diff, "") << name << " " << grade << " L " << L;
                                ++compared;
                            }
                        }
                    }
                }
            }
        }
    }
    EXPECT_GT(compared, 5000);
}

// HEB 300 in S235, Lcr,y = 8.0 m, Lcr,z = 5.6 m (a column braced about z): published Iy = 25170 cm4,
// Iz = 8563 cm4 (EN 10365): Ncr,y = pi^2 * 210e6 * 25170e-8 / 8.0^2 = 8151 kN, Ncr,z = pi^2 * 210e6 *
// 8563e-8 / 5.6^2 = 5659 kN.
TEST(SeparateBucklingLengths, EachAxisTakesItsOwnLength)
{
    auto section = SDBCatalogue::find("HEB 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    const Forces forces(-2000, 0, 0, 0, 0, 0);
    const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, true);
    const MomentDistribution none({0, 0, 0}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal, 0, {}, 0);
    BucklingResults r;
    BucklingResistance(r, section.get(), init, forces, none, 1.0, BucklingResistance::BucklingLengths{8.0, 5.6, 5.6}, 0,
                       0, false, false)
        .verifyAllResistance();
    const double pi2E = KaMath::Pi * KaMath::Pi * 210e6;
    EXPECT_NEAR(r.getNcr(Axis::y), pi2E * section->getIy() / 64.0, 1e-9);
    EXPECT_NEAR(r.getNcr(Axis::z), pi2E * section->getIz() / (5.6 * 5.6), 1e-9);
    EXPECT_NEAR(r.getNcr(Axis::y), 8151.0, 8151.0 * 0.005);
    EXPECT_NEAR(r.getNcr(Axis::z), 5657.0, 5657.0 * 0.005);
}

// Changing one length changes only what reads it: Lcr,y the values about y, Lcr,z those about z, LLT the
// critical moment (equal to the one-length critical moment at L = LLT); the web panel of shear buckling
// follows Lcr,y.
TEST(SeparateBucklingLengths, OneLengthReachesOnlyItsOwnChecks)
{
    auto section = design::makeSection("WI 1200x300x8x20");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-300, 400, 0, 0, 0, 600);
    const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, true);
    const MomentDistribution m({400, 200, 0}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal, 400, {}, 0);
    auto run = [&](double y, double z, double lt) {
        BucklingResults r;
        const BucklingResistance v(r, section.get(), init, forces, m, 1.0, BucklingResistance::BucklingLengths{y, z, lt},
                                   0, 0, false, false);
        v.verifyAllResistance();
        v.verifyShearBuckling();
        return r;
    };
    // hw = 1160 mm: the panel length a = min(3 hw, Lcr,y) = Lcr,y below 3.48 m.
    const BucklingResults base = run(2, 3, 2);
    const BucklingResults y = run(3, 3, 2), z = run(2, 4, 2), lt = run(2, 3, 3);
    EXPECT_NE(y.getNcr(Axis::y), base.getNcr(Axis::y));
    EXPECT_EQ(y.getNcr(Axis::z), base.getNcr(Axis::z));
    EXPECT_EQ(y.getCriticalMoment(), base.getCriticalMoment());
    EXPECT_NE(y.getVbRd(P::Flange).value(), base.getVbRd(P::Flange).value());  // a = min(3 hw, Lcr,y)
    EXPECT_EQ(z.getNcr(Axis::y), base.getNcr(Axis::y));
    EXPECT_NE(z.getNcr(Axis::z), base.getNcr(Axis::z));
    EXPECT_EQ(z.getCriticalMoment(), base.getCriticalMoment());
    EXPECT_EQ(lt.getNcr(Axis::y), base.getNcr(Axis::y));
    EXPECT_EQ(lt.getNcr(Axis::z), base.getNcr(Axis::z));
    EXPECT_NE(lt.getCriticalMoment(), base.getCriticalMoment());
    BucklingResults one;
    BucklingResistance(one, section.get(), init, forces, m, 1.0, 3.0, 0, 0, false, false).verifyAllResistance();
    EXPECT_EQ(lt.getCriticalMoment(), one.getCriticalMoment());
}

TEST(SeparateBucklingLengths, DefaultsOfTheLengths)
{
    using design::resolveLengths;
    auto eq = [](design::BucklingLengths l, double y, double z, double lt) {
        return l.y == y && l.z == z && l.lateralTorsional == lt;
    };
    EXPECT_TRUE(eq(resolveLengths(5.0, {}, {}, {}), 5, 5, 5));
    EXPECT_TRUE(eq(resolveLengths(5.0, 8.0, {}, {}), 8, 5, 5));
    EXPECT_TRUE(eq(resolveLengths({}, 8.0, {}, {}), 8, 8, 8));
    EXPECT_TRUE(eq(resolveLengths({}, 8.0, 5.6, {}), 8, 5.6, 5.6));
    EXPECT_TRUE(eq(resolveLengths({}, 8.0, 5.6, 2.0), 8, 5.6, 2));
    EXPECT_TRUE(eq(resolveLengths({}, {}, {}, {}), 0, 0, 0));
    EXPECT_FALSE(design::anyLength(resolveLengths({}, {}, {}, {})));
}
