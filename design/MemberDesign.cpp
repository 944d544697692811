#include "MemberDesign.h"

#include <cmath>
#include <initializer_list>
#include <limits>

namespace design {

using namespace SteelDesign;

namespace {

using BT = BucklingResults::UtilizationType;

// Ranks a utilization; a value that is not a number counts as the largest (it is never fulfilled).
double rank(double u) { return std::isnan(u) ? std::numeric_limits<double>::infinity() : u; }

// The largest present utilization of the types, or absent.
kat::Nullable<double> largestOf(const BucklingResults& results, std::initializer_list<BT> types)
{
    kat::Nullable<double> largest;
    for (BT type : types) {
        const kat::Nullable<double> u = results.getUtilization(type);
        if (u.hasValue() && (!largest.hasValue() || rank(u.value()) > rank(largest.value()))) largest = u.value();
    }
    return largest;
}

} // namespace

const std::vector<std::string>& utilizationNames()
{
    static const std::vector<std::string> names{
        "Axial",        "Torsion",           "Bending",           "Shear",          "AxialBending",
        "ShearBending", "AxialShearBending", "memberCompression", "memberBending", "memberCompressionBending",
        "memberShearBuckling"};
    return names;
}

DesignSummary designMember(const CrossSectionRequest& crossRequest, const MemberRequest* memberRequest)
{
    DesignSummary r;
    r.section = crossRequest.section->getName();
    r.steel = crossRequest.steel->getName();

    const CrossSectionOutcome cross = evaluateCrossSection(crossRequest);
    r.sectionClass = cross.initializer.getClass();
    r.errorCode = static_cast<int>(cross.initializer.getErrorCode());
    for (std::size_t i = 0; i < 7; ++i) r.crossSection[i] = cross.results.getUtilization(crossSectionSummary[i]);
    bool exceeded = cross.anyExceeded;
    std::uint32_t limitations = cross.limitations;

    if (memberRequest) {
        r.memberChecked = true;
        const MemberOutcome member = evaluateMember(*memberRequest);
        const BucklingResults& m = member.results;
        r.rolledMethod = member.rolledMethod;
        r.memberErrorCode = static_cast<int>(m.getErrorCode());
        r.shearBucklingErrorCode = static_cast<int>(m.getShearBucklingErrorCode());
        r.member[0] = largestOf(m, {BT::CompressionAxisY, BT::CompressionAxisZ, BT::Compression});
        r.member[1] = largestOf(m, {BT::BendingAxisY, BT::BendingAxisZ, BT::Bending});
        r.member[2] = member.limitations & InteractionNeedsRolledMethod
                          ? m.getUtilization(BT::CompressionBendingAxisZ)
                          : largestOf(m, {BT::CompressionBendingAxisY, BT::CompressionBendingAxisZ,
                                          BT::CompressionBending});
        r.member[3] = m.getUtilizationShearBuckling();
        exceeded = exceeded || member.anyExceeded;
        limitations |= member.limitations;
    }
    r.limitations = limitations;
    r.verdict = verdictOf(exceeded, limitations);
    r.fulfilled = r.verdict == Verdict::Fulfilled;

    const auto& names = utilizationNames();
    bool any = false;
    auto consider = [&](const kat::Nullable<double>& u, const std::string& name) {
        if (u.hasValue() && (!any || rank(u.value()) > rank(r.governingUtilization))) {
            any = true;
            r.governing = name;
            r.governingUtilization = u.value();
        }
    };
    for (std::size_t i = 0; i < 7; ++i) consider(r.crossSection[i], names[i]);
    for (std::size_t i = 0; i < 4; ++i) consider(r.member[i], names[7 + i]);
    return r;
}

} // namespace design
