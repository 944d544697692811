#include "ResultJson.h"

#include <design/EnEvaluation.h>
#include <design/MemberDesign.h>
#include <design/SectionNotation.h>
#include <design/ShearCentre.h>
#include <design/Verdict.h>

#include <KaMaterial.h>
#include <SDBSection.h>

#include <cmath>

namespace report {

namespace {

using namespace SteelDesign;
using R = VerificationResults;
using U = BucklingResults::UtilizationType;
using P = BucklingResults::SectionParts;
using K = BucklingResults::InteractionFactorkxx;

nlohmann::json finiteOrNull(double value) { return std::isfinite(value) ? nlohmann::json(value) : nlohmann::json(nullptr); }

nlohmann::json utilizationValue(const kat::Nullable<double>& u)
{
    return u.hasValue() && std::isfinite(u.value()) ? nlohmann::json(u.value()) : nlohmann::json(nullptr);
}

constexpr U memberTypes[] = {U::CompressionAxisY,        U::CompressionAxisZ,        U::Compression,
                          U::BendingAxisY,            U::BendingAxisZ,            U::Bending,
                          U::CompressionBendingAxisY, U::CompressionBendingAxisZ, U::CompressionBending};

} // namespace

nlohmann::json curveJson(SteelDesign::BucklingCurve curve)
{
    const std::string letter = SteelDesign::toString(curve);
    return letter.empty() ? nlohmann::json(nullptr) : nlohmann::json(letter);
}

nlohmann::json nullableJson(const kat::Nullable<double>& value)
{
    return value.hasValue() ? nlohmann::json(value.value()) : nlohmann::json(nullptr);
}

nlohmann::json departuresJson(const design::Departures& departures)
{
    nlohmann::json list = nlohmann::json::array();
    auto value = [](double v) { return std::isfinite(v) ? nlohmann::json(v) : nlohmann::json(nullptr); };
    for (const design::Departure& d : departures) {
        const design::DepartureInfo& info = design::infoOf(d.rule);
        list.push_back({{"rule", info.name},
                        {"clause", info.clause},
                        {"check", d.check},
                        {"library", value(d.library)},
                        {"en", value(d.en)}});
    }
    return list;
}

nlohmann::json traceJson(const std::vector<design::TraceLine>& lines)
{
    nlohmann::json list = nlohmann::json::array();
    for (const design::TraceLine& t : lines) {
        list.push_back({{"check", t.check},
                        {"clause", t.clause},
                        {"symbol", t.symbol},
                        {"formula", t.formula},
                        {"numbers", t.numbers},
                        {"result", t.result},
                        {"value", std::isfinite(t.value) ? nlohmann::json(t.value) : nlohmann::json(nullptr)},
                        {"status", design::toString(t.status)}});
    }
    return list;
}

nlohmann::json ruledJson(nlohmann::json library, const design::RuledResult& result, const design::Departures& departures,
                         bool withTrace)
{
    const bool en = result.rules == design::Rules::En;
    nlohmann::json checks = nlohmann::json::array();
    nlohmann::json enUtilizations = nlohmann::json::object();
    for (const design::CheckPair& c : result.checks) {
        checks.push_back({{"check", c.name}, {"en", utilizationValue(c.en)}, {"library", utilizationValue(c.library)}});
        enUtilizations[c.name] = utilizationValue(c.en);
    }
    const int governing = design::governingOf(result.checks, result.rules);
    auto governingValue = [&]() -> nlohmann::json {
        if (governing < 0) return nullptr;
        const design::CheckPair& c = result.checks[static_cast<std::size_t>(governing)];
        return utilizationValue(en ? c.en : c.library);
    };
    const nlohmann::json departuresList = departuresJson(design::withEnValues(departures, result.checks, result.enClass));
    if (!en) {
        nlohmann::json out = std::move(library);
        out["rules"] = design::toString(design::Rules::Library);
        out["governing"] = governing >= 0 ? nlohmann::json(result.checks[static_cast<std::size_t>(governing)].name)
                                          : nlohmann::json(nullptr);
        out["governingUtilization"] = governingValue();
        out["checks"] = checks;
        out["departures"] = departuresList;
        out["en"] = {{"class", result.enClass},
                     {"utilizations", enUtilizations},
                     {"verdict", design::toString(result.enVerdict)},
                     {"notVerified", result.enLimitations ? nlohmann::json(design::describeAll(result.enLimitations))
                                                          : nlohmann::json(nullptr)}};
        if (withTrace) out["en"]["trace"] = traceJson(result.enTrace);
        return out;
    }
    nlohmann::json out = library;
    out.erase("library");
    out["rules"] = design::toString(design::Rules::En);
    out["class"] = result.enClass;
    out["utilizations"] = enUtilizations;
    out["verdict"] = design::toString(result.enVerdict);
    out["fulfilled"] = result.enVerdict == design::Verdict::Fulfilled;
    out["notVerified"] =
        result.enLimitations ? nlohmann::json(design::describeAll(result.enLimitations)) : nlohmann::json(nullptr);
    out["governing"] = governing >= 0 ? nlohmann::json(result.checks[static_cast<std::size_t>(governing)].name)
                                      : nlohmann::json(nullptr);
    out["governingUtilization"] = governingValue();
    out["checks"] = checks;
    out["departures"] = departuresList;
    if (withTrace) out["trace"] = traceJson(result.enTrace);
    out["library"] = std::move(library);
    return out;
}

SectionDimensions sectionDimensions(const SDBSection& s)
{
    SectionDimensions d;
    if (auto* i = dynamic_cast<const SDBSectionI*>(&s)) {
        d = {i->getH(), i->getB(), i->getS(), i->getT(), i->getR1()};
        if (i->getB2Set() || i->getT2Set()) {
            d.hasSecondFlange = true;
            d.b2 = i->getB2();
            d.t2 = i->getT2();
        }
    } else if (auto* t = dynamic_cast<const SDBSectionT*>(&s)) {
        d = {t->getH(), t->getB(), t->getS(), t->getT(), t->getR1()};
    } else if (auto* u = dynamic_cast<const SDBSectionU*>(&s)) {
        d = {u->getH(), u->getB(), u->getS(), u->getT(), u->getR1()};
    } else if (auto* l = dynamic_cast<const SDBSectionL*>(&s)) {
        d = {l->getH(), l->getB(), l->getS(), l->getS(), l->getR1()};
    } else if (auto* rh = dynamic_cast<const SDBSectionRH*>(&s)) {
        d = {rh->getH(), rh->getB(), rh->getS(), rh->getT(), rh->getR1()};
        d.hasHotRolled = true;
        d.hotRolled = rh->isHotRolled();
    } else if (auto* o = dynamic_cast<const SDBSectionO*>(&s)) {
        d = {o->getD(), o->getD(), o->getT(), o->getT(), 0.0};
        d.hasHotRolled = true;
        d.hotRolled = o->isHotRolled();
    } else {
        d.h = s.getHeight();
        d.b = s.getWidth();
    }
    return d;
}

std::string sectionTypeKey(const SDBSection& s) { return s.getType() ? s.getType()->getKey() : std::string(); }

nlohmann::json sectionJson(const SDBSection& s)
{
    const SectionDimensions d = sectionDimensions(s);
    const SDBProperties& p = s.getProperties();
    nlohmann::json j;
    j["name"] = s.getName();
    j["kind"] = sectionTypeKey(s);
    j["typeKey"] = sectionTypeKey(s);
    j["rolled"] = s.isRolled();
    if (d.hasHotRolled) j["hotRolled"] = d.hotRolled;
    j["h"] = d.h;
    j["b"] = d.b;
    j["tw"] = d.tw;
    j["tf"] = d.tf;
    j["r"] = d.r;
    if (d.hasSecondFlange) {
        j["b2"] = d.b2;
        j["t2"] = d.t2;
    }
    j["A"] = p.A;
    j["Avy"] = p.Avy;
    j["Avz"] = p.Avz;
    j["Iy"] = p.Iy;
    j["Iz"] = p.Iz;
    j["It"] = p.It;
    j["Iw"] = p.Iw;
    j["Wely"] = p.Wely;
    j["Welz"] = p.Welz;
    j["Wply"] = p.Wply;
    j["Wplz"] = p.Wplz;
    j["ey"] = p.ey;
    j["ez"] = p.ez;
    const design::SectionAxes axes = design::sectionAxes(s);
    j["Iyz"] = p.Iyz;
    j["Iu"] = axes.principal.Iu;
    j["Iv"] = axes.principal.Iv;
    j["alpha"] = axes.alphaDegrees();
    j["ysc"] = axes.shearCentre.known ? nlohmann::json(axes.shearCentre.ysc) : nlohmann::json(nullptr);
    j["zsc"] = axes.shearCentre.known ? nlohmann::json(axes.shearCentre.zsc) : nlohmann::json(nullptr);
    j["i0"] = axes.shearCentre.known ? nlohmann::json(axes.i0) : nlohmann::json(nullptr);
    return j;
}

nlohmann::json checkJson(const SDBSection& section, const KaConstrSteel& steel, const design::CrossSectionRequest& request,
                         const design::CrossSectionOutcome& outcome, const design::Departures& departures, bool withTrace)
{
    using namespace SteelDesign;
    const SectionInitializer& init = outcome.initializer;
    const R& results = outcome.results;
    const bool allFulfilled = outcome.allFulfilled;
    const ErrorCode error = init.getErrorCode();
    const design::Verdict verdict = outcome.verdict;
    nlohmann::json utilizations = nlohmann::json::object();
    nlohmann::json fulfilled = nlohmann::json::object();
    for (int t = 0; t < R::utilizationTypeCount; ++t) {
        const auto type = static_cast<R::UtilizationType>(t);
        utilizations[R::nameOf(type)] = nullableJson(results.getUtilization(type));
        fulfilled[R::nameOf(type)] = results.isFulfilled(type);
    }
    nlohmann::json out = {
        {"section", section.getName()},
        {"steel", steel.getName()},
        {"class", init.getClass()},
        {"fy", init.getFy()},
        {"gammaM0", outcome.gammaM0},
        {"errorCode", static_cast<int>(error)},
        {"utilizations", utilizations},
        {"fulfilled", fulfilled},
        {"allFulfilled", allFulfilled},
        {"verdict", design::toString(verdict)},
        {"departures", departuresJson(departures)},
        {"enUtilization", nullableJson(departures.largestEn())},
        {"notVerified", outcome.limitations ? nlohmann::json(design::describeAll(outcome.limitations))
                                            : nlohmann::json(nullptr)},
        {"NRd", nullableJson(results.getNRd())},
        {"NRdLimit", nullableJson(results.getNRdLimit())},
        {"MRd", {{"y", results.getMRd(Axis::y).value()}, {"z", results.getMRd(Axis::z).value()}}},
        {"MRdLimit", {{"y", results.getMRdLimit(Axis::y).value()}, {"z", results.getMRdLimit(Axis::z).value()}}},
        {"VyRd", results.getResistanceVyRd()},
        {"VzRd", results.getResistanceVzRd()},
        {"VyTRd", results.getResistanceVyTRd()},
        {"VzTRd", results.getResistanceVzTRd()},
        {"alpha", results.getAlpha()},
        {"beta", results.getBeta()},
        {"requiredShearBending", results.getRequiredShearBending()},
        {"requiredAxialBending", results.getRequiredAxialBending()},
        {"requiredAxialShearBending", results.getRequiredAxialShearBending()},
        {"biaxialBending", results.getBiaxialBending()},
    };
    if (withTrace) out["trace"] = traceJson(design::traceCrossSection(request, outcome));
    return out;
}

nlohmann::json checkJson(const SDBSection& section, const KaConstrSteel& steel, const design::CrossSectionRequest& request,
                         const design::CrossSectionOutcome& outcome, const design::Departures& departures,
                         design::Rules rules, bool withTrace)
{
    return ruledJson(checkJson(section, steel, request, outcome, departures, withTrace),
                     design::crossSectionRuled(request, outcome, rules, withTrace), departures, withTrace);
}

std::span<const U> memberUtilizationTypes() { return memberTypes; }

MemberShown::MemberShown(const design::MemberOutcome& outcome)
    : r(outcome.results),
      // Nothing to verify: no utilization and nothing left out.
      notApplicable(!outcome.anyComputed && outcome.limitations == 0),
      unverified61((outcome.limitations & design::InteractionNeedsRolledMethod) != 0),
      flexural(r.getChi(Axis::y).hasValue()),
      lateralTorsional(r.getBucklingCurveBending().hasValue()),
      interaction(r.getUtilization(U::CompressionBendingAxisY).hasValue())
{
}

kat::Nullable<double> MemberShown::utilization(U type) const
{
    if (unverified61 && (type == U::CompressionBendingAxisY || type == U::CompressionBending)) return {};
    return r.getUtilization(type);
}

nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures, bool withTrace)
{
    const MemberShown shown(outcome);
    const BucklingResults& r = outcome.results;
    const design::BucklingLengths& lengths = request.lengths;
    const double fy = outcome.initializer.getFy();
    const bool notApplicable = shown.notApplicable, flexural = shown.flexural;
    const bool lateralTorsional = shown.lateralTorsional, interaction = shown.interaction;
    auto axes = [](double y, double z) { return nlohmann::json{{"y", finiteOrNull(y)}, {"z", finiteOrNull(z)}}; };
    auto nullAxes = nlohmann::json{{"y", nullptr}, {"z", nullptr}};
    auto opt = [](const kat::Nullable<double>& v) {
        return v.hasValue() ? finiteOrNull(v.value()) : nlohmann::json(nullptr);
    };
    nlohmann::json utilizations = nlohmann::json::object();
    for (U type : memberTypes) utilizations[toString(type)] = opt(shown.utilization(type));
    nlohmann::json out = {
        {"section", section.getName()},
        {"steel", steel.getName()},
        {"fy", fy},
        {"length",
         {{"y", lengths.y}, {"z", lengths.z}, {"LT", lengths.lateralTorsional}}},
        {"lateralTorsionalMethod", outcome.rolledMethod ? "6.3.2.3" : "6.3.2.2"},
        {"mcrMethod", design::toString(request.mcrMethod)},
        {"gammaM1", request.gammaM1},
        {"class", r.getClass()},
        {"errorCode", static_cast<int>(r.getErrorCode())},
        {"shearBucklingErrorCode", static_cast<int>(r.getShearBucklingErrorCode())},
        {"utilizations", utilizations},
        {"fulfilled", notApplicable ? nlohmann::json(nullptr)
                                    : nlohmann::json(outcome.verdict == design::Verdict::Fulfilled)},
        {"verdict", notApplicable ? "not applicable" : design::toString(outcome.verdict)},
        {"notVerified", outcome.limitations ? nlohmann::json(design::describeAll(outcome.limitations))
                                            : nlohmann::json(nullptr)},
        {"departures", departuresJson(departures)},
        {"Ncr", flexural ? axes(r.getNcr(Axis::y), r.getNcr(Axis::z)) : nullAxes},
        {"lambda", flexural ? axes(r.getLambda(Axis::y), r.getLambda(Axis::z)) : nullAxes},
        {"chi", {{"y", opt(r.getChi(Axis::y))}, {"z", opt(r.getChi(Axis::z))}}},
        {"curve",
         {{"y", flexural ? curveJson(r.getBucklingCurveCompression(Axis::y).value()) : nlohmann::json(nullptr)},
          {"z", flexural ? curveJson(r.getBucklingCurveCompression(Axis::z).value()) : nlohmann::json(nullptr)}}},
        {"NRk", flexural ? finiteOrNull(r.getNRk()) : nlohmann::json(nullptr)},
        {"NbRd",
         {{"y", opt(r.getBucklingResistance(U::CompressionAxisY))},
          {"z", opt(r.getBucklingResistance(U::CompressionAxisZ))}}},
        {"lambdaW", opt(r.getLambdaW())},
        {"chiW", opt(r.getChiW())},
        {"VbRd", {{"Web", opt(r.getVbRd(P::Web))}, {"Flange", opt(r.getVbRd(P::Flange))}, {"Total", opt(r.getVbRd(P::Total))}}},
        {"utilizationShearBuckling", opt(r.getUtilizationShearBuckling())},
        {"Mcr", lateralTorsional ? finiteOrNull(r.getCriticalMoment()) : nlohmann::json(nullptr)},
        {"zp", lateralTorsional ? finiteOrNull(r.getZp()) : nlohmann::json(nullptr)},
        {"lambdaLT", lateralTorsional ? finiteOrNull(r.getLambdaLT()) : nlohmann::json(nullptr)},
        {"lambdaLT0", r.getChiLT().hasValue() ? finiteOrNull(r.getLambdaLT0()) : nlohmann::json(nullptr)},
        {"beta", r.getChiLT().hasValue() ? finiteOrNull(r.getBeta()) : nlohmann::json(nullptr)},
        {"curveLT", lateralTorsional ? curveJson(r.getBucklingCurveBending().value()) : nlohmann::json(nullptr)},
        {"chiLT", opt(r.getChiLT())},
        {"chiLTmod", opt(r.getChiLTmod())},
        {"correctionFactor", opt(r.getCorrectionFactor())},
        {"reduceFactor", opt(r.getReduceFactor())},
        {"MbRd", opt(r.getBucklingResistance(U::Bending))},
        {"Cm", interaction ? axes(r.getCm(Axis::y), r.getCm(Axis::z)) : nullAxes},
        {"k",
         interaction ? nlohmann::json{{"kyy", r.getInteractionFactor(K::kyy)},
                                      {"kzz", r.getInteractionFactor(K::kzz)},
                                      {"kyz", r.getInteractionFactor(K::kyz)},
                                      {"kzy", r.getInteractionFactor(K::kzy)}}
                     : nlohmann::json{{"kyy", nullptr}, {"kzz", nullptr}, {"kyz", nullptr}, {"kzy", nullptr}}},
    };
    if (withTrace) out["trace"] = traceJson(design::traceMember(request, outcome));
    return out;
}

nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures,
                          design::Rules rules, bool withTrace)
{
    const design::MemberRuled m = design::memberRuled(request, outcome, rules, withTrace);
    nlohmann::json out = ruledJson(memberJson(section, steel, request, outcome, departures, withTrace), m.ruled,
                                   departures, withTrace);
    if (rules == design::Rules::En && m.notApplicable) {
        out["verdict"] = "not applicable";
        out["fulfilled"] = nullptr;
    }
    return out;
}

namespace {

// As utilizationValue: a finite value, else null.
std::optional<double> finiteValue(const kat::Nullable<double>& u)
{
    return u.hasValue() && std::isfinite(u.value()) ? std::optional<double>(u.value()) : std::nullopt;
}

// The rules' part of the summary, as ruledJson sets it; the library's own values come in library.
ResultSummary ruledSummary(ResultSummary library, const design::RuledResult& result)
{
    const bool en = result.rules == design::Rules::En;
    const int governing = design::governingOf(result.checks, result.rules);
    if (governing >= 0) {
        const design::CheckPair& c = result.checks[static_cast<std::size_t>(governing)];
        library.governing = c.name;
        library.governingUtilization = finiteValue(en ? c.en : c.library);
    }
    if (!en) return library;
    library.sectionClass = result.enClass;
    library.verdict = design::toString(result.enVerdict);
    library.notVerified.reset();
    if (result.enLimitations) library.notVerified = design::describeAll(result.enLimitations);
    library.utilizations.clear();
    library.utilizations.reserve(result.checks.size());
    for (const design::CheckPair& c : result.checks) library.utilizations.emplace_back(c.name, finiteValue(c.en));
    return library;
}

}

ResultSummary checkSummary(const design::CrossSectionRequest& request, const design::CrossSectionOutcome& outcome,
                           design::Rules rules)
{
    ResultSummary s;
    s.verdict = design::toString(outcome.verdict);
    s.sectionClass = outcome.initializer.getClass();
    if (outcome.limitations) s.notVerified = design::describeAll(outcome.limitations);
    if (rules != design::Rules::En) {
        s.utilizations.reserve(R::utilizationTypeCount);
        for (int t = 0; t < R::utilizationTypeCount; ++t) {
            const kat::Nullable<double> u = outcome.results.getUtilization(static_cast<R::UtilizationType>(t));
            s.utilizations.emplace_back(R::nameOf(static_cast<R::UtilizationType>(t)),
                                        u.hasValue() ? std::optional<double>(u.value()) : std::nullopt);
        }
    }
    return ruledSummary(std::move(s), design::crossSectionRuled(request, outcome, rules, false));
}

ResultSummary memberSummary(const design::MemberRequest& request, const design::MemberOutcome& outcome,
                            design::Rules rules)
{
    const MemberShown shown(outcome);
    ResultSummary s;
    s.verdict = shown.notApplicable ? "not applicable" : design::toString(outcome.verdict);
    s.sectionClass = outcome.results.getClass();
    if (outcome.limitations) s.notVerified = design::describeAll(outcome.limitations);
    if (rules != design::Rules::En)
        for (U type : memberTypes) s.utilizations.emplace_back(toString(type), finiteValue(shown.utilization(type)));
    const design::MemberRuled m = design::memberRuled(request, outcome, rules, false);
    s = ruledSummary(std::move(s), m.ruled);
    if (rules == design::Rules::En && m.notApplicable) s.verdict = "not applicable";
    return s;
}

nlohmann::json mcrJson(const SDBSection& section, double length, const design::CriticalMomentResult& r)
{
    nlohmann::json shape = nlohmann::json::array();
    for (std::size_t i = 0; i < r.x.size(); ++i) shape.push_back({{"x", r.x[i]}, {"v", r.v[i]}, {"phi", r.phi[i]}});
    nlohmann::json out = {{"section", section.getName()},
                                {"length", length},
                                {"ok", r.ok},
                                {"reason", r.ok ? nlohmann::json(nullptr) : nlohmann::json(r.reason)},
                                {"Mcr", r.ok ? nlohmann::json(r.mcr) : nlohmann::json(nullptr)},
                                {"lambda", r.ok ? nlohmann::json(r.lambda) : nlohmann::json(nullptr)},
                                {"Mmax", r.mMax},
                                {"C1", r.ok && r.c1 > 0.0 ? nlohmann::json(r.c1) : nlohmann::json(nullptr)},
                                {"McrUniform", r.mcrUniform > 0.0 ? nlohmann::json(r.mcrUniform) : nlohmann::json(nullptr)},
                                {"elements", r.elements},
                                {"shape", shape}};
    return out;
}

nlohmann::json mcrJson(const design::McrOptions& options)
{
    const auto section = design::resolveSection(options.name);
    return mcrJson(*section, options.length, design::criticalMoment(design::mcrInput(options, *section)));
}

} // namespace report
