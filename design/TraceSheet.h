#pragma once

// The texts of a calculation trace and the sheet its lines are collected on: number formats with units
// (forces in kN and kNm with two decimals, section properties in cm units, fy and E in N/mm², factors
// and utilizations with three decimals) and the rule that keeps a check that was not verified from
// looking fulfilled. Used by the trace of the library's checks and by the EN 1993-1-1 evaluation.

#include "BucklingCurves.h"
#include "Trace.h"

#include <KaMath.h>
#include <SteelDesign/BucklingCurve.h>
#include <SteelDesign/Nullable.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace design::tracetext {

// The check names by which the report groups the lines.
inline constexpr const char* kClassification = "classification";
inline constexpr const char* kAxial = "axial force";
inline constexpr const char* kBending = "bending";
inline constexpr const char* kShear = "shear";
inline constexpr const char* kTorsion = "torsion";
inline constexpr const char* kShearBending = "bending and shear";
inline constexpr const char* kAxialBending = "bending and axial force";
inline constexpr const char* kAxialShearBending = "bending, shear and axial force";
inline constexpr const char* kFlexural = "flexural buckling";
inline constexpr const char* kLateralTorsional = "lateral-torsional buckling";
inline constexpr const char* kInteraction = "compression and bending";
inline constexpr const char* kShearBuckling = "shear buckling";

// v with the given number of decimals, as printf's %.*f writes it.
inline std::string printed(double v, int decimals)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, v);
    return buffer;
}

inline std::string fixed(double v, int decimals)
{
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v > 0.0 ? "inf" : "-inf";
    std::string s = printed(v, decimals);
    // "-0.00" reads as 0.00.
    if (s[0] == '-' && s.find_first_not_of("-0.") == std::string::npos) s.erase(0, 1);
    return s;
}

// A section property in cm units: one decimal from 100 on, two from 1, three below.
inline std::string property(double v)
{
    const double a = std::fabs(v);
    return fixed(v, a >= 100.0 ? 1 : a >= 1.0 ? 2 : 3);
}

inline std::string kN(double v) { return fixed(v, 2) + " kN"; }
inline std::string kNm(double v) { return fixed(v, 2) + " kNm"; }
inline std::string cm2(double m2) { return property(m2 * 1e4) + " cm²"; }
inline std::string cm3(double m3) { return property(m3 * 1e6) + " cm³"; }
inline std::string cm4(double m4) { return property(m4 * 1e8) + " cm⁴"; }
inline std::string cm6(double m6) { return property(m6 * 1e12) + " cm⁶"; }
inline std::string stress(double kNm2) { return fixed(kNm2 / 1000.0, 0) + " N/mm²"; }
inline std::string mm(double m) { return fixed(m * 1000.0, 1) + " mm"; }
inline std::string metres(double m) { return fixed(m, 3) + " m"; }
inline std::string factor(double v) { return fixed(v, 3); }
inline std::string gamma(double v) { return fixed(v, 2); }

// "|x|": the magnitude bars around a value (built by appending: g++ 12 warns falsely on a literal
// inserted before a temporary string, -Wrestrict).
inline std::string magnitude(const std::string& s)
{
    std::string out("|");
    out += s;
    out += '|';
    return out;
}

inline std::string classText(int cls) { return "class " + std::to_string(cls); }

inline bool valid(double x) { return !KaMath::isFuzzyZero(x, KaMath::getEpsMin()); }

// An axis without its action: the action is zero and so is the utilization the check recorded for it. Its
// lines are left out, as on a calculation sheet; the summary lines still show the check.
inline bool idle(double action, const kat::Nullable<double>& u) { return action == 0.0 && u && u.value() == 0.0; }

// The verdict of one utilization: at most 1.0 within KaMath::getEpsReal(), as the records judge it; a value
// that is not finite is not fulfilled.
inline TraceStatus statusOf(double u)
{
    return std::isfinite(u) && KaMath::isFuzzySmallerEqual(u, 1.0, KaMath::getEpsReal()) ? TraceStatus::Fulfilled
                                                                                        : TraceStatus::NotFulfilled;
}

inline const char* curveName(SteelDesign::BucklingCurve curve)
{
    const char* name = SteelDesign::toString(curve);
    return *name ? name : "none";
}

// The imperfection factor of a curve, Table 6.1 / 6.3 (none: 1.0, as the member check takes it).
inline double imperfection(SteelDesign::BucklingCurve curve)
{
    return curve == SteelDesign::BucklingCurve::none ? 1.0 : imperfectionFactor(curve);
}

// The lines of one trace with the rule that keeps a check that was not verified from looking fulfilled.
class Sheet {
public:
    std::vector<TraceLine> lines;

    void value(const char* check, std::string clause, std::string symbol, std::string formula, std::string numbers,
               std::string result, double v)
    {
        lines.push_back({check, std::move(clause), std::move(symbol), std::move(formula), std::move(numbers),
                         std::move(result), v, TraceStatus::Value});
    }

    // A utilization; unverified: the check it belongs to is not verified (a limitation of the whole
    // check), so it reads "not verified" unless it fails anyway.
    void utilization(const char* check, std::string clause, std::string symbol, std::string formula,
                     std::string numbers, double u, bool unverified)
    {
        TraceStatus status = statusOf(u);
        if (unverified && status == TraceStatus::Fulfilled) status = TraceStatus::NotVerified;
        lines.push_back({check, std::move(clause), std::move(symbol), std::move(formula), std::move(numbers),
                         factor(u), u, status});
    }

    void notVerified(const char* check, std::string clause, std::string symbol, std::string formula,
                     std::string reason, double v = 0.0)
    {
        lines.push_back({check, std::move(clause), std::move(symbol), std::move(formula), std::move(reason),
                         "not verified", v, TraceStatus::NotVerified});
    }
};

} // namespace design::tracetext
