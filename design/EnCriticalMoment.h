#pragma once

// The elastic critical moment Mcr of lateral-torsional buckling under EN 1993-1-1 6.3.2.2(2) rules for
// the member checks of the EN evaluation: fork supports at both ends of the length LLT, the moment
// diagram of the request (start, middle and end values with their signs; straight lines through them
// or a parabola), the transverse load at the request's application point, the rotational restraint
// C_theta. Within 2 % of the finite-element analysis (CriticalMomentSolver.h) for any diagram, and
// cheap enough for every batch row: no allocation.

#include "MemberCheck.h"

namespace design {

struct EnCriticalMoment {
    bool ok = false;       // false: no Mcr (no bending about y, no length, or a section it does not cover)
    double Mcr = 0.0;      // kNm, for the largest |My| of the diagram
    double C1 = 1.0;       // Mcr / Mcr of the same member under uniform moment, load at the shear centre
    double kwt = 0.0;      // the torsion parameter pi / L sqrt(E Iw / (G It))
    double zg = 0.0;       // height of the load from the shear centre (m, z down)
    const char* method = "";  // how it was found, for the trace (e.g. "Rayleigh-Ritz, 8 sine terms")
    int terms = 0;             // sine terms of the accepted series (0: the finite-element analysis)
    double seriesChange = 0.0; // relative drop of Mcr from terms / 2 to terms (the convergence check)
};

// E and G in kN/m². The section's own Iz, It, Iw (the database's), the shear centre and beta_y of a
// mono-symmetric I from mcrSection.
EnCriticalMoment enCriticalMoment(const MemberRequest& request, double E, double G);

} // namespace design
