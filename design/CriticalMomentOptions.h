#pragma once

// The inputs of the elastic critical moment analysis as a tool takes them: the moment diagram as three
// moments "M1,Mm,M2" or as stations "x:M,...", point loads "x:P", lateral restraints "x" or "x@top", the
// load height (center, top, bottom or mm from the shear centre) and the end conditions by name.
// mcrInput validates each (InputError naming its option and the value) and builds the solver's input.

#include "CriticalMomentSolver.h"
#include "InputError.h"

#include <SDBSection.h>

#include <string>
#include <vector>

namespace design {

struct McrOptions {
    std::string name;
    double length = 0.0;
    std::string momentsY, diagramY = "polygonal", stations;
    double q = 0.0;
    std::vector<std::string> pointLoads, lateralRestraints;
    std::vector<double> torsionalRestraints;
    std::string loadHeight = "center";
    std::string start = "fork", end = "fork";
    double cTheta = 0.0;
    int elements = 30;
};

// The solver's input of the options on the section; InputError naming the option.
CriticalMomentInput mcrInput(const McrOptions& options, const SDBSection& section);

} // namespace design
