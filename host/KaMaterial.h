#pragma once

#include "KaExport.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

// A material of the host. Units: kN/m^2 for strengths and moduli.
class KA_HOST_API KaMaterial {
public:
    KaMaterial(std::string name, double eModul, double gModul)
        : name_(std::move(name)), eModul_(eModul), gModul_(gModul) {}
    virtual ~KaMaterial() = default;
    KaMaterial(const KaMaterial&) = default;
    KaMaterial& operator=(const KaMaterial&) = default;

    const std::string& getName() const { return name_; }
    // Elastic modulus E.
    virtual double getEModul() const { return eModul_; }
    // Shear modulus G.
    double getGModul() const { return gModul_; }

private:
    std::string name_;
    double eModul_;
    double gModul_;
};

// Structural steel to EN 1993-1-1 Table 3.1 (hot rolled products of EN 10025-2, -3, -4).
//
//   grade   fy, t <= 40 mm   fy, 40 mm < t <= 80 mm     (N/mm^2)
//   S235        235               215
//   S275        275               255
//   S355        355               335
//   S420        420               390
//   S450        440               410
//   S460        460               430
//
// E = 210000 N/mm^2 and G = 81000 N/mm^2 (3.2.6). The class stores kN/m^2 (235 N/mm^2 = 235000).
//
// Thickness above 80 mm: Table 3.1 ends at 80 mm. getFyk keeps the 40-80 mm value there and
// isThicknessCovered(t) returns false, so that the boundary (the command line) can warn that the
// product standard must be consulted; the library itself does not refuse such plates.
// The thickness limits are tested with a tolerance of 1e-9 m: 40 mm exactly belongs to the first row.
class KA_HOST_API KaConstrSteel : public KaMaterial {
public:
    static constexpr double E = 210.0e6;  // kN/m^2
    static constexpr double G = 81.0e6;   // kN/m^2

    // The grade by name, ignoring case and surrounding blanks ("S355", "s355"); empty when unknown.
    static std::optional<KaConstrSteel> fromName(std::string_view name);
    // The grade names known, in ascending strength.
    static std::span<const std::string_view> gradeNames();

    // Characteristic yield strength for a plate of thickness t (m), in kN/m^2.
    double getFyk(double t) const;
    // Characteristic tensile strength for a plate of thickness t (m), in kN/m^2.
    double getFuk(double t) const;
    // Whether EN 1993-1-1 Table 3.1 covers the thickness (0 < t <= 80 mm).
    static bool isThicknessCovered(double t);

private:
    KaConstrSteel(std::string_view name, double fy40, double fy80, double fu40, double fu80);
    double fy40_, fy80_, fu40_, fu80_;
};
