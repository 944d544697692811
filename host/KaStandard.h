#pragma once

#include "KaExport.h"

#include <optional>
#include <string_view>

namespace Standard {

// The rule set of EN 1993-1-1 that the host has active. The library itself only tests for the
// values 7 and 8; every other value means the CEN recommended values of EN 1993-1-1.
//   EN (0)          EN 1993-1-1 with the recommended values of the standard.
//   UK (7)          The UK National Annex: lateral-torsional buckling of rolled and equivalent welded
//                   sections (6.3.2.3) with the curve limits h/b <= 2 / <= 3.1 and, for welded sections,
//                   lambda_LT,0 = 0.2 and beta = 1.0.
//   RolledLTB (8)   A national rule set that prescribes the method of 6.3.2.3 (lambda_LT,0 = 0.4,
//                   beta = 0.75 with the correction factor f) for every lateral-torsional check.
enum class Mode : int {
    EN = 0,
    UK = 7,
    RolledLTB = 8,
};

// Design situations of EN 1990 6.4.3.
enum class DesignSituation : int {
    Persistent = 0,
    Transient = 1,
    Accidental = 2,
    Seismic = 3,
};

constexpr int designSituationCount = 4;

// Text names ("EN", "UK", "RolledLTB"; "persistent", ...), matched ignoring case. A plain integer is
// also accepted for the mode, since hosts store it as a number.
KA_HOST_API std::optional<Mode> parseMode(std::string_view text);
KA_HOST_API std::optional<DesignSituation> parseDesignSituation(std::string_view text);
KA_HOST_API const char* toString(DesignSituation situation);
KA_HOST_API const char* toString(Mode mode);

// Partial factors of the active standard.
//
// getGammaA returns gamma_M0, the partial factor of the resistance of cross-sections. Table used:
//
//   mode                      persistent  transient  accidental  seismic
//   EN (recommended, 6.1(1))     1.00        1.00       1.00       1.00
//   UK National Annex            1.00        1.00       1.00       1.00
//   RolledLTB (mode 8)           1.00        1.00       1.00       1.00
//   any other mode               as EN
//
// EN 1993-1-1 recommends gamma_M0 = 1.00 and the national annexes named above keep it; EN 1990 uses
// the same material factors in the accidental and seismic situations unless a national annex says
// otherwise. A host with other national values sets them with setGammaA before any check runs.
class KA_HOST_API Coefficients {
public:
    static Coefficients* get();

    double getGammaA(Mode mode, DesignSituation situation) const;
    // Host-side configuration; the checks only read. Values that are not finite and positive are ignored.
    void setGammaA(Mode mode, DesignSituation situation, double gamma);
    void resetToDefaults();

private:
    Coefficients();
    static int rowOf(Mode mode);
    double gammaM0_[3][designSituationCount];
};

} // namespace Standard

// The design standard active in the host. A singleton: the host sets mode and situation before any check
// runs; the checks only read them (getMode, getSituation). Defaults: EN, persistent.
class KA_HOST_API KaStandard {
public:
    static KaStandard* get();

    Standard::Mode getMode() const { return mode_; }
    Standard::DesignSituation getSituation() const { return situation_; }

    void setMode(Standard::Mode mode) { mode_ = mode; }
    void setSituation(Standard::DesignSituation situation) { situation_ = situation; }

private:
    KaStandard() = default;
    Standard::Mode mode_ = Standard::Mode::EN;
    Standard::DesignSituation situation_ = Standard::DesignSituation::Persistent;
};
