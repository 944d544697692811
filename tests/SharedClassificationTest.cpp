// designMember classifies a member once for its cross-section check and its member checks. The
// classification made with the member's option of the method for rolled sections must give the
// cross-section check the very numbers of its own classification, and the member checks those of
// theirs: compared bit for bit over the rolled I and H sections, hollow sections, a welded girder, three
// grades and load cases from pure shear to compression with biaxial bending.

#include <design/CrossSectionCheck.h>
#include <design/MemberCheck.h>
#include <design/MemberDesign.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>
#include <SectionCatalogue.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

using namespace SteelDesign;

namespace {

bool bits(const kat::Nullable<double>& a, const kat::Nullable<double>& b)
{
    if (a.hasValue() != b.hasValue()) return false;
    return !a.hasValue() || std::memcmp(&a.value(), &b.value(), sizeof(double)) == 0;
}

std::vector<std::string> sectionNames()
{
    std::vector<std::string> names;
    for (const char* family : {"IPE", "HEA", "HEB", "HEM"}) {
        const std::vector<std::string> all = SDBCatalogue::names(family);
        for (std::size_t i = 0; i < all.size(); i += 3) names.push_back(all[i]);  // every third size
    }
    for (const char* other : {"RHS 250x150x8", "SHS 100x100x5", "CHS 219.1x6.3", "UPE 200", "WI 1200x300x8x20"})
        names.push_back(other);
    return names;
}

struct Load {
    double N, My, Mz, Vz;
};

TEST(SharedClassification, GivesBothChecksTheNumbersOfTheirOwnClassification)
{
    const Load loads[] = {{0, 0, 0, 400},    {-300, 0, 0, 0},   {-300, 80, 0, 60}, {-1500, 250, 0, 120},
                          {-200, 60, 15, 40}, {150, 90, 0, 50},  {0, 120, 0, 80},  {-3000, 20, 5, 10}};
    int compared = 0;
    for (const std::string& name : sectionNames()) {
        std::string error;
        std::unique_ptr<SDBSection> section = design::makeSection(name, error);
        ASSERT_TRUE(section) << name << ": " << error;
        for (const char* grade : {"S235", "S355", "S460"}) {
            auto steel = KaConstrSteel::fromName(grade);
            for (const Load& load : loads) {
                for (auto method : {design::LateralTorsionalMethod::Automatic, design::LateralTorsionalMethod::General}) {
                    const Forces forces(load.N, load.My, load.Mz, 0.0, 0.0, load.Vz);
                    const design::CrossSectionRequest cross{section.get(), &*steel, forces, 0.0, false};
                    design::MemberRequest member;
                    member.section = section.get();
                    member.steel = &*steel;
                    member.forces = forces;
                    member.moments = design::makeMoments({0.0, load.My / 2, load.My}, MomentDiagram::Polygonal,
                                                         {load.Mz, load.Mz, load.Mz}, MomentDiagram::Polygonal,
                                                         std::nullopt, ApplicationPoint::Center, 0.0);
                    member.lengths = {6.0, 3.0, 3.0};
                    member.method = method;
                    const SectionInitializer classified(section.get(), &*steel, forces, VerificationControl::Classify,
                                                        design::usesRolledMethod(method, *section));

                    const auto own = design::evaluateCrossSection(cross);
                    const auto shared = design::evaluateCrossSection(cross, &classified);
                    for (int t = 0; t < VerificationResults::utilizationTypeCount; ++t) {
                        const auto type = static_cast<VerificationResults::UtilizationType>(t);
                        EXPECT_TRUE(bits(own.results.getUtilization(type), shared.results.getUtilization(type)))
                            << name << " " << grade << " N=" << load.N << " " << VerificationResults::nameOf(type);
                    }
                    EXPECT_EQ(own.limitations, shared.limitations) << name;
                    EXPECT_EQ(own.initializer.getClass(), shared.initializer.getClass()) << name;

                    const auto ownMember = design::evaluateMember(member);
                    const auto sharedMember = design::evaluateMember(member, &classified);
                    for (std::size_t t = 0; t < BucklingResults::utilizationTypeCount; ++t) {
                        const auto type = static_cast<BucklingResults::UtilizationType>(t);
                        EXPECT_TRUE(bits(ownMember.results.getUtilization(type), sharedMember.results.getUtilization(type)))
                            << name << " " << grade << " N=" << load.N << " type " << t;
                    }
                    EXPECT_TRUE(bits(ownMember.results.getUtilizationShearBuckling(),
                                     sharedMember.results.getUtilizationShearBuckling())) << name;
                    EXPECT_EQ(ownMember.limitations, sharedMember.limitations) << name;
                    ++compared;
                }
            }
        }
    }
    EXPECT_GT(compared, 1000);
}

} // namespace
