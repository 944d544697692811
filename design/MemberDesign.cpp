#include "MemberDesign.h"

#include <cmath>
#include <initializer_list>
#include <limits>
#include <optional>

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

bool sameForces(const Forces& a, const Forces& b)
{
    return a.getN() == b.getN() && a.getMy() == b.getMy() && a.getMz() == b.getMz() && a.getMt() == b.getMt() &&
           a.getVy() == b.getVy() && a.getVz() == b.getVz();
}

// The summary of the checks done: utilizations, verdict, governing one, departures.
void summarize(const CrossSectionRequest& crossRequest, const CrossSectionOutcome& cross,
               const MemberRequest* memberRequest, const MemberOutcome* memberOutcome, DesignSummary& r,
               Departures* details)
{
    r.sectionClass = cross.initializer.getClass();
    r.errorCode = static_cast<int>(cross.initializer.getErrorCode());
    for (std::size_t i = 0; i < 7; ++i) r.crossSection[i] = cross.results.getUtilization(crossSectionSummary[i]);
    bool exceeded = cross.anyExceeded;
    std::uint32_t limitations = cross.limitations;

    if (memberOutcome) {
        r.memberChecked = true;
        const MemberOutcome& member = *memberOutcome;
        const BucklingResults& m = member.results;
        r.rolledMethod = member.rolledMethod;
        r.memberErrorCode = static_cast<int>(m.getErrorCode());
        r.shearBucklingErrorCode = static_cast<int>(m.getShearBucklingErrorCode());
        r.member = memberSummary(member);
        exceeded = exceeded || member.anyExceeded;
        limitations |= member.limitations;
    }
    r.limitations = limitations;
    r.verdict = verdictOf(exceeded, limitations);
    r.fulfilled = r.verdict == Verdict::Fulfilled;

    const auto& names = utilizationNames();
    bool any = false;
    std::size_t governing = 0;
    auto consider = [&](const kat::Nullable<double>& u, std::size_t index) {
        if (u.hasValue() && (!any || rank(u.value()) > rank(r.governingUtilization))) {
            any = true;
            governing = index;
            r.governingUtilization = u.value();
        }
    };
    for (std::size_t i = 0; i < 7; ++i) consider(r.crossSection[i], i);
    for (std::size_t i = 0; i < 4; ++i) consider(r.member[i], 7 + i);
    if (any) r.governing = names[governing];

    std::array<kat::Nullable<double>, 11> library;
    for (std::size_t i = 0; i < 7; ++i) library[i] = r.crossSection[i];
    for (std::size_t i = 0; i < 4; ++i) library[7 + i] = r.member[i];
    const Departures departures = findDepartures(&crossRequest, &cross, memberRequest, memberOutcome, library);
    for (const Departure& d : departures) r.departures |= 1u << static_cast<unsigned>(d.rule);
    r.enGoverning = departures.largestEn();
    if (details) *details = departures;
}

} // namespace

std::array<kat::Nullable<double>, 4> memberSummary(const MemberOutcome& member)
{
    const BucklingResults& m = member.results;
    std::array<kat::Nullable<double>, 4> out;
    out[0] = largestOf(m, {BT::CompressionAxisY, BT::CompressionAxisZ, BT::Compression});
    out[1] = largestOf(m, {BT::BendingAxisY, BT::BendingAxisZ, BT::Bending});
    out[2] = member.limitations & InteractionNeedsRolledMethod
                 ? m.getUtilization(BT::CompressionBendingAxisZ)
                 : largestOf(m, {BT::CompressionBendingAxisY, BT::CompressionBendingAxisZ, BT::CompressionBending});
    out[3] = m.getUtilizationShearBuckling();
    return out;
}

const std::vector<std::string>& utilizationNames()
{
    static const std::vector<std::string> names{
        "Axial",        "Torsion",           "Bending",           "Shear",          "AxialBending",
        "ShearBending", "AxialShearBending", "memberCompression", "memberBending", "memberCompressionBending",
        "memberShearBuckling"};
    return names;
}

CheckTitle checkTitle(std::string_view name)
{
    static constexpr std::pair<std::string_view, CheckTitle> titles[] = {
        {"Axial", {"Axial force", "6.2.3, 6.2.4"}},
        {"Torsion", {"Torsion", "6.2.7"}},
        {"Bending", {"Bending", "6.2.5"}},
        {"Shear", {"Shear", "6.2.6"}},
        {"AxialBending", {"Bending and axial force", "6.2.9"}},
        {"ShearBending", {"Bending and shear", "6.2.8"}},
        {"AxialShearBending", {"Bending, shear and axial force", "6.2.8, 6.2.9"}},
        {"memberCompression", {"Flexural, torsional and torsional-flexural buckling", "6.3.1"}},
        {"memberBending", {"Lateral-torsional buckling", "6.3.2"}},
        {"memberCompressionBending", {"Buckling with bending (6.61), (6.62)", "6.3.3"}},
        {"memberShearBuckling", {"Shear buckling", "EN 1993-1-5 5"}},
    };
    for (const auto& [key, title] : titles)
        if (key == name) return title;
    return {name, ""};
}

std::string departureNames(std::uint32_t departures)
{
    std::string out;
    for (const DepartureInfo& info : departureTable()) {
        if ((departures & (1u << static_cast<unsigned>(info.rule))) == 0) continue;
        if (!out.empty()) out += ';';
        out += info.name;
    }
    return out;
}

DesignSummary designMember(const CrossSectionRequest& crossRequest, const MemberRequest* memberRequest,
                           Departures* details, Rules rules)
{
    DesignSummary r;
    designMember(crossRequest, memberRequest, r, details, rules);
    return r;
}

void applyEnRules(const EnEvaluation& en, DesignSummary& r)
{
    r.rules = Rules::En;
    r.libraryVerdict = r.verdict;
    r.libraryGoverning = r.governing.empty() ? kat::Nullable<double>() : kat::Nullable<double>(r.governingUtilization);
    r.sectionClass = en.sectionClass;
    for (std::size_t i = 0; i < 7; ++i) r.crossSection[i] = en.utilizations[i];
    for (std::size_t i = 0; i < 4; ++i) r.member[i] = en.utilizations[7 + i];
    r.limitations = en.limitations;
    r.verdict = en.verdict;
    r.fulfilled = r.verdict == Verdict::Fulfilled;
    r.governing.clear();
    r.governingUtilization = 0.0;
    if (en.governing >= 0) {
        r.governing = utilizationNames()[static_cast<std::size_t>(en.governing)];
        r.governingUtilization = en.governingUtilization;
    }
}

void designMember(const CrossSectionRequest& crossRequest, const MemberRequest* memberRequest, DesignSummary& r,
                  Departures* details, Rules rules)
{
    r.rules = Rules::Library;
    r.libraryGoverning = kat::Nullable<double>();
    r.libraryVerdict = Verdict::NotVerified;
    r.section = crossRequest.section->getName();
    r.steel = crossRequest.steel->getName();
    // Every other field is set below or reset here: r may hold the summary of another member.
    r.memberChecked = false;
    r.rolledMethod = false;
    r.memberErrorCode = 0;
    r.shearBucklingErrorCode = 0;
    r.member = {};
    r.governing.clear();
    r.governingUtilization = 0.0;
    r.departures = 0;

    // A member checked under the forces of its cross-section check is classified once for both: the
    // classification is that of the same section, steel, forces and control, and the option of the method
    // for rolled sections (which sets only the curve of lateral-torsional buckling) is never read by the
    // cross-section checks. The initializer is made in place in the cross-section outcome and copied into
    // the member outcome before either check runs (a check may use its initializer as scratch).
    const bool shared = memberRequest && memberRequest->section == crossRequest.section &&
                        memberRequest->steel == crossRequest.steel && memberRequest->elastic == crossRequest.elastic &&
                        sameForces(memberRequest->forces, crossRequest.forces);
    CrossSectionOutcome cross{
        SectionInitializer(crossRequest.section, crossRequest.steel, crossRequest.forces,
                           crossRequest.elastic ? VerificationControl::Elastic : VerificationControl::Classify,
                           shared && usesRolledMethod(memberRequest->method, *memberRequest->section)),
        VerificationResults()};
    if (!memberRequest) {
        completeCrossSection(crossRequest, cross);
        summarize(crossRequest, cross, nullptr, nullptr, r, details);
        if (rules == Rules::En) {
            EnEvaluation en;
            evaluateEn(crossRequest, cross.gammaM0, nullptr, 0.0, en);
            applyEnRules(en, r);
        }
        return;
    }
    MemberOutcome member{shared ? cross.initializer
                                : SectionInitializer(memberRequest->section, memberRequest->steel, memberRequest->forces,
                                                     memberRequest->elastic ? VerificationControl::Elastic
                                                                            : VerificationControl::Classify,
                                                     usesRolledMethod(memberRequest->method, *memberRequest->section)),
                         BucklingResults()};
    completeCrossSection(crossRequest, cross);
    completeMember(*memberRequest, member);
    summarize(crossRequest, cross, memberRequest, &member, r, details);
    if (rules == Rules::En) {
        EnEvaluation en;
        evaluateEn(crossRequest, cross.gammaM0, memberRequest, member.numericalMcr, en);
        applyEnRules(en, r);
    }
}

} // namespace design
