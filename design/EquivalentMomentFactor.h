#pragma once

// The equivalent uniform moment factor Cm of EN 1993-1-1 Annex B, Table B.3, from the moments at the
// start, middle and end of a member, with their signs.

#include <SteelDesign/MomentDistribution.h>

namespace design {

// Table B.3: a straight line between the end moments (polygonal diagram whose middle value lies on the
// mean of the ends) takes 0.6 + 0.4 psi >= 0.4; otherwise the middle value is the span moment Ms of a
// transverse load, uniform for a parabolic diagram and concentrated for a polygonal one, and Cm follows
// from alpha_s = Ms / Mh (|Mh| >= |Ms|) or alpha_h = Mh / Ms, Mh being the larger end moment and psi the
// ratio of the other end moment to it, all signed.
double equivalentMomentFactor(double M1, double Mm, double M2, SteelDesign::MomentDiagram diagram);

// True when the three values lie on a straight line (within a relative 1e-6 of the largest).
bool isStraightLine(double M1, double Mm, double M2);

} // namespace design
