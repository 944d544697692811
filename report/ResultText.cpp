#include "ResultText.h"

#include <design/TraceSheet.h>

#include <algorithm>
#include <cmath>

#include <cstdio>
#include <limits>
#include <string_view>

namespace report {

std::string number(double value, int decimals) { return design::tracetext::printed(value, decimals); }

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

} // namespace

std::string rulesBlock(design::Rules rules, const std::vector<design::CheckPair>& checks, int enClass, int libraryClass)
{
    const bool en = rules == design::Rules::En;
    std::string out = en ? "\nEN 1993-1-1 evaluation (the verdict of record; --rules library for the library's)\n"
                         : "\nEN 1993-1-1 evaluation (beside the library's verdict, --rules library)\n";
    out += "  class " + std::to_string(enClass);
    if (enClass != libraryClass) out += " (library: class " + std::to_string(libraryClass) + ")";
    out += '\n';
    for (const design::CheckPair& c : checks) {
        if (!c.en.hasValue() && !c.library.hasValue()) continue;
        const kat::Nullable<double>& inForce = en ? c.en : c.library;
        char buffer[160];
        std::string other;
        if (!sameValue(c.en, c.library)) other = (en ? "library " : "EN ") + valueOrDash(en ? c.library : c.en);
        const char* verdict = !inForce.hasValue() ? ""
                              : !std::isfinite(inForce.value()) || inForce.value() > 1.0 + 1e-9 ? "NOT FULFILLED"
                                                                                              : "fulfilled";
        std::snprintf(buffer, sizeof buffer, "  %-24s %8s  %-13s %s\n", std::string(c.name).c_str(),
                      valueOrDash(inForce).c_str(), verdict, other.c_str());
        out += buffer;
    }
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

} // namespace report
