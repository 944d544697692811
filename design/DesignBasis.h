#pragma once

// The basis of a design given by name: the steel grade (EN 1993-1-1 Table 3.1), the standard mode (the
// national choices of the partial factors and rules) and the design situation (EN 1990 6.4.3), as the
// command, the batch and Python take them. Bad names are InputError naming the option and the value.

#include "InputError.h"

#include <KaMaterial.h>

#include <string>
#include <vector>

namespace design {

// The steel of a grade ("S355"), or InputError "--steel: unknown steel grade 'X' (known: ...)".
KaConstrSteel steelByName(const std::string& grade);

// Sets the host standard to the mode (EN, UK, RolledLTB or a mode number) and the design situation
// (persistent, transient, accidental, seismic); InputError naming --mode or --situation.
void applyStandard(const std::string& mode, const std::string& situation);

// A warning line for each plate thickness outside EN 1993-1-1 Table 3.1 (above 80 mm), or "".
std::string thicknessWarnings(const std::vector<double>& thicknesses);

} // namespace design
