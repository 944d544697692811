#pragma once

// The plates of a section as the classification of EN 1993-1-1 Table 5.2 sees them: each internal part
// (web) and outstand (flange, angle leg) with its width c, thickness t, the compressed share alpha, the
// stress ratio psi and its own class. The section class is the largest of them (5.5.2(6)); the command
// prints the table and the calculation trace writes one line per plate.

#include <KaMaterial.h>
#include <SDBSection.h>
#include <SteelDesign/Forces.h>
#include <SteelDesign/Nullable.h>

#include <vector>

namespace design {

struct PlateClass {
    const char* kind = "";          // "web" (internal part), "outstand" or "leg" (an angle's leg)
    double c = 0.0;                 // m
    double t = 0.0;                 // m
    double alpha = 0.0;             // the compressed share of c (plastic stress distribution)
    kat::Nullable<double> psi;      // the stress ratio; empty when the first edge is free of stress
    kat::Nullable<int> cls;         // the class of the plate; empty when not classified
};

// The plates of the section under the forces; classify false (elastic verification) leaves the classes
// empty. The section is cut and classified anew: this is for the command and the trace, not for a hot path.
std::vector<PlateClass> classifyPlates(SDBSection& section, KaConstrSteel& steel, const SteelDesign::Forces& forces,
                                       bool classify);

} // namespace design
