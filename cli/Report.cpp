#include "Report.h"

#include <cmath>

#include <cstdio>

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

std::string departuresBlock(const design::Departures& departures)
{
    if (departures.empty()) return "";
    std::string out = "\nDepartures from EN 1993-1-1 (the library's value is the verdict of record)\n";
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
