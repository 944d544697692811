#pragma once

// The elastic critical moment Mcr and the reduction factor chiLT of lateral-torsional buckling, as
// EN 1993-1-1 6.3.2.2 and 6.3.2.3 take them, for the values that the design layer shows beside the
// library's.

namespace design {

// C1 of a straight-line moment diagram with end moment ratio psi (signed, -1 <= psi <= 1, the smaller
// end moment over the larger): C1 = 1.88 - 1.40 psi + 0.52 psi^2 <= 2.70 (the approximation published
// with the ECCS and SCI tables of C1; 1.00 for uniform moment, 1.88 for a moment falling to zero,
// 2.70 for double curvature).
double c1StraightLine(double psi);

struct LateralTorsionalReduction {
    double phi = 0.0;
    double chiLT = 0.0;     // (6.56) or (6.57), limited
    double f = 1.0;         // (6.58), 6.3.2.3 only
    double chiLTmod = 0.0;  // chiLT / f, limited by 1.0 and 1 / lambdaLT^2 (the factor Mb,Rd takes)
};

// chiLT of lambdaLT on a curve with imperfection factor alphaLT: the general case (6.56) when rolled is
// false, else (6.57) with lambdaLT0, beta and the modification (6.58) with the correction factor kc.
LateralTorsionalReduction lateralTorsionalReduction(double lambdaLT, double alphaLT, bool rolled, double lambdaLT0,
                                                    double beta, double kc);

// The flexural buckling reduction factor chi of (6.49) for lambda and the imperfection factor alpha.
double flexuralReduction(double lambda, double alpha);

} // namespace design
