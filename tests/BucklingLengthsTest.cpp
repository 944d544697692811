// The buckling lengths per axis of BucklingResistance (EN 1993-1-1 6.3.1.3, 6.3.2.2; EN 1993-1-5 5.4):
// the constructor of three lengths with equal lengths gives, getter for getter and bit for bit, what the
// constructor of one length gives, over every rolled I and H section of the catalogue and many load
// cases; a length of its own reaches only its own checks; design::resolveLengths fills the defaults.

#include <SteelDesign/BucklingResistance.h>
#include <SteelDesign/SectionInitializer.h>

#include <design/BucklingLengths.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>
#include <KaMath.h>
#include <SectionCatalogue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace SteelDesign;
using U = BucklingResults::UtilizationType;
using K = BucklingResults::InteractionFactorkxx;
using P = BucklingResults::SectionParts;
using Lengths = BucklingResistance::BucklingLengths;

namespace {

// Bitwise: NaN equals NaN, -0 differs from +0.
bool bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
template <typename T>
bool bits(const kat::Nullable<T>& a, const kat::Nullable<T>& b)
{
    if (a.hasValue() != b.hasValue()) return false;
    if (!a.hasValue()) return true;
    if constexpr (std::is_same_v<T, double>) return bits(a.value(), b.value());
    else return a.value() == b.value();
}

// The getters of the record that differ, by name ("" when none).
std::string differences(const BucklingResults& a, const BucklingResults& b)
{
    std::string out;
    auto check = [&](bool equal, const std::string& name) {
        if (!equal) out += name + " ";
    };
    for (std::size_t t = 0; t < BucklingResults::utilizationTypeCount; ++t) {
        const auto type = static_cast<U>(t);
        check(bits(a.getUtilization(type), b.getUtilization(type)), std::string("u.") + toString(type));
        check(bits(a.getBucklingResistance(type), b.getBucklingResistance(type)), std::string("R.") + toString(type));
    }
    for (Axis axis : {Axis::y, Axis::z}) {
        const std::string s = axis == Axis::y ? ".y" : ".z";
        check(bits(a.getChi(axis), b.getChi(axis)), "Chi" + s);
        check(bits(a.getLambda(axis), b.getLambda(axis)), "Lambda" + s);
        check(bits(a.getNcr(axis), b.getNcr(axis)), "Ncr" + s);
        check(bits(a.getMRk(axis), b.getMRk(axis)), "MRk" + s);
        check(bits(a.getCm(axis), b.getCm(axis)), "Cm" + s);
        check(bits(a.getBucklingCurveCompression(axis), b.getBucklingCurveCompression(axis)), "curve" + s);
    }
    for (K k : {K::kyy, K::kzz, K::kyz, K::kzy})
        check(bits(a.getInteractionFactor(k), b.getInteractionFactor(k)), toString(k));
    for (P p : {P::Web, P::Flange, P::Total}) check(bits(a.getVbRd(p), b.getVbRd(p)), std::string("VbRd.") + toString(p));
    check(bits(a.getBucklingCurveBending(), b.getBucklingCurveBending()), "curveLT");
    using Optional = kat::Nullable<double> (BucklingResults::*)() const;
    const std::pair<const char*, Optional> optionals[] = {
        {"ChiLT", &BucklingResults::getChiLT},       {"ChiLTmod", &BucklingResults::getChiLTmod},
        {"ChiW", &BucklingResults::getChiW},         {"CorrectionFactor", &BucklingResults::getCorrectionFactor},
        {"LambdaW", &BucklingResults::getLambdaW},   {"Phi", &BucklingResults::getPhi},
        {"ReduceFactor", &BucklingResults::getReduceFactor},
        {"ShearFieldStiffness", &BucklingResults::getShearFieldStiffness},
        {"UtilizationShearBuckling", &BucklingResults::getUtilizationShearBuckling}};
    for (const auto& [name, getter] : optionals) check(bits((a.*getter)(), (b.*getter)()), name);
    using Plain = double (BucklingResults::*)() const;
    const std::pair<const char*, Plain> plain[] = {
        {"Alpha", &BucklingResults::getAlpha},         {"Beta", &BucklingResults::getBeta},
        {"CriticalMoment", &BucklingResults::getCriticalMoment}, {"LambdaLT0", &BucklingResults::getLambdaLT0},
        {"LambdaLT", &BucklingResults::getLambdaLT},   {"Lcr", &BucklingResults::getLcr},
        {"NRk", &BucklingResults::getNRk},             {"Zp", &BucklingResults::getZp}};
    for (const auto& [name, getter] : plain) check(bits((a.*getter)(), (b.*getter)()), name);
    check(a.getClass() == b.getClass(), "Class");
    check(a.getErrorCode() == b.getErrorCode(), "ErrorCode");
    check(a.getShearBucklingErrorCode() == b.getShearBucklingErrorCode(), "ShearBucklingErrorCode");
    return out;
}

// A load case as fractions of Npl, Mpl,y, Mpl,z and Vpl,z; the diagram about y as fractions of Mpl,y.
struct Load {
    const char* name;
    double n, my, mz, vz;
    double m1, mm, m2;
    MomentDiagram diagram;
};

const Load loads[] = {
    {"compression", -0.4, 0, 0, 0, 0, 0, 0, MomentDiagram::Polygonal},
    {"uniform My", 0, 0.6, 0, 0.1, 0.6, 0.6, 0.6, MomentDiagram::Polygonal},
    {"straight line My", 0, 0.6, 0, 0.3, 0.6, 0.3, 0, MomentDiagram::Polygonal},
    {"reversed My", 0, 0.5, 0, 0.3, 0.5, 0, -0.5, MomentDiagram::Polygonal},
    {"point load My", 0, 0.5, 0, 0.4, 0, 0.5, 0, MomentDiagram::Polygonal},
    {"uniform load My", 0, 0.5, 0, 0.2, 0, 0.5, 0, MomentDiagram::Parabolic},
    {"N and My uniform", -0.3, 0.3, 0, 0.1, 0.3, 0.3, 0.3, MomentDiagram::Polygonal},
    {"N and My hogging ends", -0.2, 0.4, 0, 0.3, -0.4, 0.2, -0.4, MomentDiagram::Parabolic},
    {"N and My reversed", -0.25, 0.4, 0, 0.2, 0.4, 0, -0.4, MomentDiagram::Polygonal},
    {"N, My and Mz", -0.3, 0.3, 0.1, 0.2, 0.3, 0.15, 0, MomentDiagram::Polygonal},
    {"My and Mz", 0, 0.4, 0.1, 0.2, 0.4, 0.4, 0.4, MomentDiagram::Polygonal},
    {"tension with My", 0.2, 0.3, 0, 0.4, 0.3, 0.1, -0.3, MomentDiagram::Polygonal},
    {"N with Mz only", -0.2, 0, 0.2, 0, 0, 0, 0, MomentDiagram::Polygonal},
    {"Mz and Vz", 0, 0, 0.3, 0.6, 0, 0, 0, MomentDiagram::Polygonal},
};

std::vector<std::string> equivalenceSections()
{
    std::vector<std::string> names;
    for (const char* family : {"IPE", "HEA", "HEB", "HEM"})
        for (const std::string& name : SDBCatalogue::names(family)) names.push_back(name);
    for (const char* other : {"RHS 100x50x4", "RHS 250x150x8", "RHS 450x250x12", "SHS 100x100x5", "SHS 300x300x10",
                              "CHS 88.9x4", "CHS 323.9x8", "UPE 200", "UPE 400", "L 100x100x10", "L 200x200x20",
                              "WI 1200x300x8x20", "WI 1500x400x10x25", "WI 900x300x10x25/250x20"})
        names.push_back(other);
    return names;
}

// Both entry points of the member checks.
void runAll(const BucklingResistance& v)
{
    v.verifyAllResistance();
    v.verifyShearBuckling();
}

} // namespace

TEST(BucklingLengthsEquivalence, EqualLengthsReproduceTheOneLengthConstructorBitForBit)
{
    int cases = 0, lateralTorsional = 0, interaction = 0, shearBuckling = 0;
    for (const std::string& name : equivalenceSections()) {
        const std::unique_ptr<SDBSection> section = design::makeSection(name);
        ASSERT_TRUE(section) << name;
        for (const char* grade : {"S235", "S355", "S460"}) {
            KaConstrSteel steel = *KaConstrSteel::fromName(grade);
            const double fy = steel.getFyk(0.01);
            for (const Load& load : loads) {
                const double Mply = section->getWply() * fy, Mplz = section->getWplz() * fy;
                const Forces forces(load.n * section->getA() * fy, load.my * Mply, load.mz * Mplz, 0, 0,
                                    load.vz * section->getAvz() * fy / std::sqrt(3.0));
                const double Mz = forces.getMz();
                for (ApplicationPoint point : {ApplicationPoint::Center, ApplicationPoint::Top, ApplicationPoint::Bottom}) {
                    const MomentDistribution moments({load.m1 * Mply, load.mm * Mply, load.m2 * Mply}, load.diagram,
                                                     {Mz, Mz, Mz}, MomentDiagram::Polygonal,
                                                     std::fabs(load.my) * Mply, point, 0.0);
                    for (bool rolled : {false, true}) {
                        const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify,
                                                      rolled);
                        for (double L : {0.0, 2.5, 7.0}) {
                            for (const auto& [cTheta, S] : {std::pair{0.0, 0.0}, std::pair{50.0, 2000.0}}) {
                                BucklingResults one, three;
                                const BucklingResistance a(one, section.get(), init, forces, moments, 1.1, L, cTheta, S,
                                                           rolled, !rolled);
                                const BucklingResistance b(three, section.get(), init, forces, moments, 1.1,
                                                           Lengths{L, L, L}, cTheta, S, rolled, !rolled);
                                runAll(a);
                                runAll(b);
                                ASSERT_EQ(differences(one, three), "")
                                    << name << " " << grade << " " << load.name << " L = " << L << " rolled " << rolled
                                    << " C_theta " << cTheta;
                                ++cases;
                                lateralTorsional += one.getChiLT().hasValue();
                                interaction += one.getUtilization(U::CompressionBending).hasValue();
                                shearBuckling += one.getShearBucklingErrorCode() == ErrorCode::NoError;
                            }
                        }
                    }
                }
            }
        }
    }
    // 104 sections x 3 steels x 14 loads x 3 load points x 2 x 3 lengths x 2 = 157,248.
    EXPECT_GT(cases, 100000);
    // The product reaches lateral-torsional buckling, the interaction and shear buckling.
    EXPECT_GT(lateralTorsional, 10000);
    EXPECT_GT(interaction, 10000);
    EXPECT_GT(shearBuckling, 1000);
}

// The comparison itself sees a difference: two lengths differ in Ncr, chi and more.
TEST(BucklingLengthsEquivalence, TheComparisonSeesADifferentLength)
{
    const auto section = SDBCatalogue::get("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    const Forces forces(-200, 50, 0, 0, 0, 0);
    const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, true);
    const MomentDistribution m({50, 50, 50}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal, 50,
                               ApplicationPoint::Center, 0);
    BucklingResults a, b, c;
    runAll(BucklingResistance(a, section.get(), init, forces, m, 1.0, 4.0, 0, 0, false, false));
    runAll(BucklingResistance(b, section.get(), init, forces, m, 1.0, Lengths{4.0, 4.0, 4.5}, 0, 0, false, false));
    runAll(BucklingResistance(c, section.get(), init, forces, m, 1.0, Lengths{4.0, 4.5, 4.0}, 0, 0, false, false));
    const std::string lt = differences(a, b), z = differences(a, c);
    EXPECT_NE(lt.find("CriticalMoment"), std::string::npos) << lt;
    EXPECT_EQ(lt.find("Ncr"), std::string::npos) << lt;
    EXPECT_NE(z.find("Ncr.z"), std::string::npos) << z;
    EXPECT_EQ(z.find("Ncr.y"), std::string::npos) << z;
    EXPECT_EQ(z.find("CriticalMoment"), std::string::npos) << z;
}

// HEB 300 in S235, Lcr,y = 8.0 m, Lcr,z = 5.6 m (a column braced at 0.7 of its height about z).
// Published (EN 10365 / producers' tables): A = 149.1 cm2, Iy = 25170 cm4, Iz = 8563 cm4; E = 210000 N/mm2.
//   pi^2 E             = 9.869604 * 210e6              = 2.072617e9 kN/m2
//   Ncr,y = pi^2 E Iy / 8.0^2 = 2.072617e9 * 25170e-8 / 64    = 521,677.7 / 64    = 8151.2 kN
//   Ncr,z = pi^2 E Iz / 5.6^2 = 2.072617e9 * 8563e-8 / 31.36  = 177,478.2 / 31.36 = 5659.4 kN
//   NRk   = A fy = 149.1e-4 * 235000 = 3503.9 kN
//   lam_y = sqrt(3503.9 / 8151.2) = 0.65564, curve b (h/b = 1.0 <= 1.2, tf = 19 mm, Table 6.2):
//           Phi = 0.5 (1 + 0.34 (0.65564 - 0.2) + 0.42986) = 0.79239, chi_y = 1 / (0.79239 + sqrt(0.62788 -
//           0.42986)) = 1 / 1.23738 = 0.80816
//   lam_z = sqrt(3503.9 / 5659.4) = 0.78684, curve c: Phi = 0.5 (1 + 0.49 (0.58684) + 0.61912) = 0.95334,
//           chi_z = 1 / (0.95334 + sqrt(0.90885 - 0.61912)) = 1 / 1.49160 = 0.67042
TEST(BucklingLengthsHandComputed, Heb300ColumnWithLcrY8AndLcrZ5p6)
{
    const auto section = SDBCatalogue::get("HEB 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    const Forces forces(-2000, 0, 0, 0, 0, 0);
    const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, true);
    const MomentDistribution none({0, 0, 0}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal, 0,
                                  ApplicationPoint::Center, 0);
    BucklingResults r;
    runAll(BucklingResistance(r, section.get(), init, forces, none, 1.0, Lengths{8.0, 5.6, 5.6}, 0, 0, false, false));
    const double pi2E = KaMath::Pi * KaMath::Pi * 210e6;
    EXPECT_NEAR(r.getNcr(Axis::y), pi2E * section->getIy() / 64.0, 1e-9);
    EXPECT_NEAR(r.getNcr(Axis::z), pi2E * section->getIz() / (5.6 * 5.6), 1e-9);
    auto within = [](double value, double published) { return std::fabs(value / published - 1.0) < 0.005; };
    EXPECT_TRUE(within(r.getNcr(Axis::y), 8151.2)) << r.getNcr(Axis::y);
    EXPECT_TRUE(within(r.getNcr(Axis::z), 5659.4)) << r.getNcr(Axis::z);
    EXPECT_TRUE(within(r.getNRk(), 3503.9)) << r.getNRk();
    EXPECT_TRUE(within(r.getLambda(Axis::y), 0.65564)) << r.getLambda(Axis::y);
    EXPECT_TRUE(within(r.getLambda(Axis::z), 0.78684)) << r.getLambda(Axis::z);
    EXPECT_TRUE(within(r.getChi(Axis::y).value(), 0.80816)) << r.getChi(Axis::y).value();
    EXPECT_TRUE(within(r.getChi(Axis::z).value(), 0.67042)) << r.getChi(Axis::z).value();
    // Nb,Rd = chi NRk / gammaM1 per axis; the axis about z governs here.
    EXPECT_NEAR(r.getUtilization(U::CompressionAxisZ).value(), 2000.0 / (r.getChi(Axis::z).value() * r.getNRk()), 1e-12);
    EXPECT_EQ(r.getUtilization(U::Compression).value(), r.getUtilization(U::CompressionAxisZ).value());
}

// With lengths {Ly, Lz, LLT}: every value about y is that of the one-length constructor at L = Ly, every
// value about z that at L = Lz, and the critical moment that at L = LLT; changing one length leaves the
// values of the other two bit for bit. Shear buckling's panel a = min(3 hw, Lcr,y) (EN 1993-1-5 5.4(1)).
class BucklingLengthsIsolation : public ::testing::TestWithParam<const char*> {};

TEST_P(BucklingLengthsIsolation, EachLengthReachesOnlyItsOwnChecks)
{
    const auto section = design::makeSection(GetParam());
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const double fy = steel.getFyk(0.01);
    const double N = -0.2 * section->getA() * fy, My = 0.3 * section->getWply() * fy;
    const Forces forces(N, My, 0, 0, 0, 0.3 * section->getAvz() * fy / std::sqrt(3.0));
    const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, true);
    const MomentDistribution m({My, 0.5 * My, 0}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal, My,
                               ApplicationPoint::Top, 0);
    auto three = [&](double y, double z, double lt) {
        BucklingResults r;
        runAll(BucklingResistance(r, section.get(), init, forces, m, 1.0, Lengths{y, z, lt}, 0, 0, false, false));
        return r;
    };
    auto one = [&](double L) {
        BucklingResults r;
        runAll(BucklingResistance(r, section.get(), init, forces, m, 1.0, L, 0, 0, false, false));
        return r;
    };
    const BucklingResults mixed = three(6.0, 2.5, 4.0), atY = one(6.0), atZ = one(2.5), atLT = one(4.0);
    for (Axis axis : {Axis::y, Axis::z}) {
        const BucklingResults& ref = axis == Axis::y ? atY : atZ;
        EXPECT_EQ(mixed.getNcr(axis), ref.getNcr(axis));
        EXPECT_EQ(mixed.getLambda(axis), ref.getLambda(axis));
        EXPECT_EQ(mixed.getChi(axis).value(), ref.getChi(axis).value());
    }
    EXPECT_EQ(mixed.getBucklingResistance(U::CompressionAxisY).value(), atY.getBucklingResistance(U::CompressionAxisY).value());
    EXPECT_EQ(mixed.getBucklingResistance(U::CompressionAxisZ).value(), atZ.getBucklingResistance(U::CompressionAxisZ).value());
    EXPECT_EQ(mixed.getCriticalMoment(), atLT.getCriticalMoment());
    EXPECT_EQ(mixed.getLambdaLT(), atLT.getLambdaLT());
    EXPECT_EQ(mixed.getChiLT().value(), atLT.getChiLT().value());

    // One length changed at a time.
    const BucklingResults yMoved = three(8.0, 2.5, 4.0), zMoved = three(6.0, 3.5, 4.0), ltMoved = three(6.0, 2.5, 5.0);
    EXPECT_LT(yMoved.getNcr(Axis::y), mixed.getNcr(Axis::y));
    EXPECT_LE(yMoved.getChi(Axis::y).value(), mixed.getChi(Axis::y).value());
    EXPECT_LT(zMoved.getNcr(Axis::z), mixed.getNcr(Axis::z));
    EXPECT_LT(ltMoved.getCriticalMoment(), mixed.getCriticalMoment());
    // The names of the getters that changed with each length (the shear parts follow Lcr,y only).
    const std::string y = differences(mixed, yMoved), z = differences(mixed, zMoved), lt = differences(mixed, ltMoved);
    for (const char* name : {"Ncr.z", "Lambda.z", "Chi.z", "CriticalMoment", "LambdaLT", "ChiLT"})
        EXPECT_EQ(y.find(name), std::string::npos) << name << " in " << y;
    for (const char* name : {"Ncr.y", "Lambda.y", "Chi.y", "CriticalMoment", "LambdaLT", "VbRd"})
        EXPECT_EQ(z.find(name), std::string::npos) << name << " in " << z;
    for (const char* name : {"Ncr.", "Lambda.", "Chi.", "VbRd"}) EXPECT_EQ(lt.find(name), std::string::npos) << name << " in " << lt;
    EXPECT_EQ(ltMoved.getCriticalMoment(), one(5.0).getCriticalMoment());
    for (P p : {P::Web, P::Flange, P::Total}) EXPECT_TRUE(bits(mixed.getVbRd(p), atY.getVbRd(p)));
}

INSTANTIATE_TEST_SUITE_P(Sections, BucklingLengthsIsolation,
                         ::testing::Values("IPE 300", "HEB 300", "HEA 1000", "WI 1200x300x8x20"));

// EN 1993-1-5 5.4(1): Vbf,Rd = bf tf^2 fyf (1 - (MEd / Mf,Rd)^2) / (c gammaM1) with
// c = a (0.25 + 1.6 bf tf^2 fyf / (t hw^2 fyw)) and a = min(3 hw, Lcr,y): without My, Vbf,Rd is in inverse
// proportion to a. WI 1200x300x8x20: hw = 1200 - 2 * 20 = 1160 mm, 3 hw = 3.48 m.
//   a = 2.0 m and 3.0 m: Vbf,Rd(2.0) / Vbf,Rd(3.0) = 3.0 / 2.0 = 1.5
//   Lcr,y = 7 and 10 m: a = 3.48 m both, Vbf,Rd equal
// Vbw,Rd (5.3(3), end posts only) does not depend on a.
// By hand for a = 2.0 m, S355 (fy = 355000 kN/m2, t = 8 mm, bf = 300 mm, tf = 20 mm):
//   1.6 bf tf^2 / (t hw^2) = 1.6 * 0.3 * 0.0004 / (0.008 * 1.3456) = 0.000192 / 0.0107648 = 0.0178359
//   c = 2.0 (0.25 + 0.0178359) = 0.535672 m
//   Vbf,Rd = 0.3 * 0.0004 * 355000 / 0.535672 = 42.6 / 0.535672 = 79.526 kN
TEST(BucklingLengthsShearBuckling, FlangeContributionFollowsLcrY)
{
    const auto section = design::makeSection("WI 1200x300x8x20");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(0, 0, 0, 0, 0, 800);
    const SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, false);
    const MomentDistribution m({0, 0, 0}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal, 0,
                               ApplicationPoint::Center, 0);
    auto run = [&](double y, double z, double lt) {
        BucklingResults r;
        runAll(BucklingResistance(r, section.get(), init, forces, m, 1.0, Lengths{y, z, lt}, 0, 0, false, false));
        EXPECT_EQ(r.getShearBucklingErrorCode(), ErrorCode::NoError);
        return r;
    };
    const BucklingResults a2 = run(2.0, 9.0, 9.0), a3 = run(3.0, 0.5, 1.0), a7 = run(7.0, 2.0, 2.0), a10 = run(10.0, 1.0, 7.0);
    const double f2 = a2.getVbRd(P::Flange).value(), f3 = a3.getVbRd(P::Flange).value();
    EXPECT_NEAR(f2, 79.526, 0.01);
    EXPECT_NEAR(f2 / f3, 1.5, 1e-12);
    EXPECT_EQ(a7.getVbRd(P::Flange).value(), a10.getVbRd(P::Flange).value());
    EXPECT_LT(a7.getVbRd(P::Flange).value(), f3);
    EXPECT_EQ(a2.getVbRd(P::Web).value(), a10.getVbRd(P::Web).value());
}

TEST(BucklingLengthsDefaults, ResolveLengthsFillsWhatIsNotGiven)
{
    using design::resolveLengths;
    struct Case {
        const char* name;
        std::optional<double> length, y, z, lt;
        double ey, ez, elt;
    };
    const Case cases[] = {
        {"length alone: all three", 5.0, {}, {}, {}, 5, 5, 5},
        {"length with Lcr,y: z and LT keep the length", 5.0, 8.0, {}, {}, 8, 5, 5},
        {"length with LLT", 5.0, {}, {}, 2.0, 5, 5, 2},
        {"Lcr,y only: z and LT follow it", {}, 8.0, {}, {}, 8, 8, 8},
        {"Lcr,z given: LT follows z", {}, 8.0, 5.6, {}, 8, 5.6, 5.6},
        {"Lcr,z alone: y is 0", {}, {}, 5.6, {}, 0, 5.6, 5.6},
        {"LLT given", {}, 8.0, 5.6, 2.0, 8, 5.6, 2},
        {"LLT alone", {}, {}, {}, 2.0, 0, 0, 2},
        {"nothing", {}, {}, {}, {}, 0, 0, 0},
    };
    for (const Case& c : cases) {
        const design::BucklingLengths l = resolveLengths(c.length, c.y, c.z, c.lt);
        EXPECT_EQ(l.y, c.ey) << c.name;
        EXPECT_EQ(l.z, c.ez) << c.name;
        EXPECT_EQ(l.lateralTorsional, c.elt) << c.name;
        EXPECT_EQ(design::anyLength(l), c.ey > 0 || c.ez > 0 || c.elt > 0) << c.name;
    }
    EXPECT_FALSE(design::anyLength(design::uniformLengths(0.0)));
    EXPECT_TRUE(design::anyLength(design::uniformLengths(0.1)));
}
