#include "Report.h"

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

} // namespace cli
