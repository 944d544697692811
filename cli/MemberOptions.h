#pragma once

// The options of the member checks shared by `member` and `select`: forces, standard mode, buckling
// lengths, partial factor gammaM1, moment diagram, load point and the lateral-torsional options
// (design/MemberInput.h validates them and builds the request), and the rules.

#include "Options.h"

#include <design/MemberInput.h>

namespace cli {

struct MemberOptions : design::MemberInput {
    RulesOption rules;

    // --length, --lcr-y, --lcr-z, --l-lt, the forces, --gamma-m1, --moments-y ... --cm-floor, --mode,
    // --situation, --twist-restrained, --rules.
    void addTo(CLI::App& app);
};

} // namespace cli
