#include "Report.h"

#include <algorithm>
#include <cmath>

#include <cstdio>
#include <limits>
#include <string_view>

namespace cli {

std::string number(double value, int decimals)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

std::string describeForces(const SteelDesign::Forces& f)
{
    std::string out;
    auto add = [&](const char* name, double value, const char* unit) {
        if (value == 0.0) return;
        if (!out.empty()) out += ", ";
        char buffer[96];
        std::snprintf(buffer, sizeof buffer, "%s = %g %s", name, value, unit);
        out += buffer;
    };
    add("N", f.getN(), "kN");
    add("My", f.getMy(), "kNm");
    add("Mz", f.getMz(), "kNm");
    add("Mt", f.getMt(), "kNm");
    add("Vy", f.getVy(), "kN");
    add("Vz", f.getVz(), "kN");
    return out.empty() ? "none" : out;
}

std::string curveText(SteelDesign::BucklingCurve curve)
{
    const std::string letter = SteelDesign::toString(curve);
    return letter.empty() ? "not set" : letter;
}

nlohmann::json curveJson(SteelDesign::BucklingCurve curve)
{
    const std::string letter = SteelDesign::toString(curve);
    return letter.empty() ? nlohmann::json(nullptr) : nlohmann::json(letter);
}

nlohmann::json nullableJson(const kat::Nullable<double>& value)
{
    return value.hasValue() ? nlohmann::json(value.value()) : nlohmann::json(nullptr);
}

std::string verdictLine(design::Verdict verdict, std::uint32_t limitations)
{
    std::string out = "verdict: ";
    out += verdict == design::Verdict::Fulfilled      ? "FULFILLED"
           : verdict == design::Verdict::NotFulfilled ? "NOT FULFILLED"
                                                      : "NOT VERIFIED";
    out += '\n';
    for (std::uint32_t bit = 0; bit < design::limitationCount; ++bit) {
        const auto flag = static_cast<design::Limitation>(1u << bit);
        if (limitations & flag) out += std::string("  not verified: ") + design::describe(flag) + "\n";
    }
    return out;
}

std::string departureValue(const design::Departure& d, double value)
{
    if (std::string(d.check) == "class") return number(value, 0);
    if (!std::isfinite(value)) return "not computed";  // (6.61) without chiLT,mod
    return number(value, 3);
}

std::string departuresBlock(const design::Departures& departures, design::Rules rules)
{
    if (departures.empty()) return "";
    std::string out = rules == design::Rules::En
                          ? "\nDepartures from EN 1993-1-1 (the EN value is the verdict of record)\n"
                          : "\nDepartures from EN 1993-1-1 (the library's value is the verdict of record)\n";
    for (const design::Departure& d : departures) {
        const design::DepartureInfo& info = design::infoOf(d.rule);
        out += "  " + std::string(info.name) + " (" + info.clause + "): " + d.check + " " +
               departureValue(d, d.library) + ", EN " + departureValue(d, d.en) + "\n";
        out += "    " + std::string(info.when) + "\n";
        out += "    EN: " + std::string(info.en) + "\n";
    }
    return out;
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

int governingOf(const std::vector<CheckPair>& checks, design::Rules rules)
{
    int governing = -1;
    double largest = 0.0;
    for (std::size_t i = 0; i < checks.size(); ++i) {
        const kat::Nullable<double>& u = rules == design::Rules::En ? checks[i].en : checks[i].library;
        if (!u.hasValue()) continue;
        const double rank = std::isnan(u.value()) ? std::numeric_limits<double>::infinity() : u.value();
        if (governing < 0 || rank > largest) {
            governing = static_cast<int>(i);
            largest = rank;
        }
    }
    return governing;
}

design::Departures withEnValues(design::Departures departures, const std::vector<CheckPair>& checks, int enClass)
{
    for (std::size_t i = 0; i < departures.count; ++i) {
        design::Departure& d = departures.items[i];
        if (std::string_view(d.check) == "class") {
            d.en = enClass;
            continue;
        }
        for (const CheckPair& c : checks)
            if (c.name == d.check && c.en.hasValue()) d.en = c.en.value();
    }
    return departures;
}

namespace {

bool sameValue(const kat::Nullable<double>& a, const kat::Nullable<double>& b)
{
    if (a.hasValue() != b.hasValue()) return false;
    if (!a.hasValue()) return true;
    const double x = a.value(), y = b.value();
    if (std::isnan(x) || std::isnan(y)) return std::isnan(x) && std::isnan(y);
    return std::fabs(x - y) <= 1e-9 * std::max({1.0, std::fabs(x), std::fabs(y)});
}

std::string valueOrDash(const kat::Nullable<double>& u)
{
    if (!u.hasValue()) return "-";
    return std::isfinite(u.value()) ? number(u.value(), 3) : "not computed";
}

nlohmann::json utilizationValue(const kat::Nullable<double>& u)
{
    return u.hasValue() && std::isfinite(u.value()) ? nlohmann::json(u.value()) : nlohmann::json(nullptr);
}

} // namespace

std::string rulesBlock(design::Rules rules, const std::vector<CheckPair>& checks, int enClass, int libraryClass)
{
    const bool en = rules == design::Rules::En;
    std::string out = en ? "\nEN 1993-1-1 evaluation (the verdict of record; --rules library for the library's)\n"
                         : "\nEN 1993-1-1 evaluation (beside the library's verdict, --rules library)\n";
    out += "  class " + std::to_string(enClass);
    if (enClass != libraryClass) out += " (library: class " + std::to_string(libraryClass) + ")";
    out += '\n';
    for (const CheckPair& c : checks) {
        if (!c.en.hasValue() && !c.library.hasValue()) continue;
        const kat::Nullable<double>& inForce = en ? c.en : c.library;
        char buffer[160];
        std::string other;
        if (!sameValue(c.en, c.library)) other = (en ? "library " : "EN ") + valueOrDash(en ? c.library : c.en);
        const char* verdict = !inForce.hasValue() ? ""
                              : !std::isfinite(inForce.value()) || inForce.value() > 1.0 + 1e-9 ? "NOT FULFILLED"
                                                                                              : "fulfilled";
        std::snprintf(buffer, sizeof buffer, "  %-24s %8s  %-13s %s\n", c.name.c_str(),
                      valueOrDash(inForce).c_str(), verdict, other.c_str());
        out += buffer;
    }
    return out;
}

nlohmann::json ruledJson(nlohmann::json library, const RuledResult& result, const design::Departures& departures)
{
    const bool en = result.rules == design::Rules::En;
    nlohmann::json checks = nlohmann::json::array();
    nlohmann::json enUtilizations = nlohmann::json::object();
    for (const CheckPair& c : result.checks) {
        checks.push_back({{"check", c.name}, {"en", utilizationValue(c.en)}, {"library", utilizationValue(c.library)}});
        enUtilizations[c.name] = utilizationValue(c.en);
    }
    const int governing = governingOf(result.checks, result.rules);
    auto governingValue = [&]() -> nlohmann::json {
        if (governing < 0) return nullptr;
        const CheckPair& c = result.checks[static_cast<std::size_t>(governing)];
        return utilizationValue(en ? c.en : c.library);
    };
    const nlohmann::json departuresList = departuresJson(withEnValues(departures, result.checks, result.enClass));
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
                                                          : nlohmann::json(nullptr)},
                     {"trace", traceJson(result.enTrace)}};
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
    out["trace"] = traceJson(result.enTrace);
    out["library"] = std::move(library);
    return out;
}

std::string traceText(const std::vector<design::TraceLine>& lines)
{
    constexpr std::string_view main = "EN 1993-1-1 ";
    std::string out = "\ncalculation (clauses of EN 1993-1-1 unless named)\n";
    std::string_view group;
    for (const design::TraceLine& t : lines) {
        if (t.check != group) {
            group = t.check;
            out += "  " + t.check + "\n";
        }
        const std::string_view clause =
            std::string_view(t.clause).substr(0, main.size()) == main ? std::string_view(t.clause).substr(main.size()) : t.clause;
        out += "    [" + std::string(clause) + "] " + t.symbol + " = " + t.formula + " = " + t.numbers + " = " + t.result;
        if (t.status != design::TraceStatus::Value) out += std::string("  ") + design::toString(t.status);
        out += '\n';
    }
    return out;
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

} // namespace cli
