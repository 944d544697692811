#include "GoverningCheck.h"

#include "EnEvaluation.h"
#include "MemberDesign.h"

#include <cmath>
#include <limits>
#include <string_view>

namespace design {

int governingOf(const std::vector<CheckPair>& checks, Rules rules)
{
    int governing = -1;
    double largest = 0.0;
    for (std::size_t i = 0; i < checks.size(); ++i) {
        const kat::Nullable<double>& u = rules == Rules::En ? checks[i].en : checks[i].library;
        if (!u.hasValue()) continue;
        const double rank = std::isnan(u.value()) ? std::numeric_limits<double>::infinity() : u.value();
        if (governing < 0 || rank > largest) {
            governing = static_cast<int>(i);
            largest = rank;
        }
    }
    return governing;
}

Departures withEnValues(Departures departures, const std::vector<CheckPair>& checks, int enClass)
{
    for (std::size_t i = 0; i < departures.count; ++i) {
        Departure& d = departures.items[i];
        if (std::string_view(d.check) == "class") {
            d.en = enClass;
            continue;
        }
        for (const CheckPair& c : checks)
            if (c.name == d.check && c.en.hasValue()) d.en = c.en.value();
    }
    return departures;
}

RuledResult crossSectionRuled(const CrossSectionRequest& request, const CrossSectionOutcome& outcome,
                              Rules rules, bool withTrace)
{
    EnEvaluation en;
    EnTraces traces;
    evaluateEn(request, outcome.gammaM0, nullptr, 0.0, en, withTrace ? &traces : nullptr);
    RuledResult r;
    r.rules = rules;
    r.enClass = en.sectionClass;
    r.enVerdict = en.verdict;
    r.enLimitations = en.limitations;
    r.enTrace = std::move(traces.crossSection);
    const auto& names = utilizationNames();
    r.checks.reserve(7);
    for (std::size_t i = 0; i < 7; ++i)
        r.checks.push_back({names[i], en.utilizations[i], outcome.results.getUtilization(crossSectionSummary[i])});
    return r;
}

MemberRuled memberRuled(const MemberRequest& request, const MemberOutcome& outcome,
                        Rules rules, bool withTrace)
{
    const CrossSectionRequest cross{request.section, request.steel, request.forces, 0.0, request.elastic};
    EnEvaluation en;
    EnTraces traces;
    evaluateEn(cross, resolveGammaM0(0.0), &request, outcome.numericalMcr, en,
                       withTrace ? &traces : nullptr);
    MemberRuled m;
    RuledResult& r = m.ruled;
    r.rules = rules;
    r.enClass = en.member.sectionClass;
    r.enVerdict = memberVerdict(en.member);
    r.enLimitations = en.member.limitations;
    r.enTrace = std::move(traces.member);
    const auto& names = utilizationNames();
    const auto library = memberSummary(outcome);
    bool any = false;
    r.checks.reserve(4);
    for (std::size_t i = 0; i < 4; ++i) {
        r.checks.push_back({names[7 + i], en.member.utilization[i], library[i]});
        any = any || en.member.utilization[i].hasValue();
    }
    m.notApplicable = !any && en.member.limitations == 0;
    return m;
}

} // namespace design
