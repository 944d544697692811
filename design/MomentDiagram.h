#pragma once

// The bending moment along a member from the three values the checks take (start, middle, end) and the
// shape of the diagram: straight lines through the three values (polygonal: end moments, concentrated
// loads) or the parabola through them (a distributed load).

#include <SteelDesign/MomentDistribution.h>

#include <array>

namespace design {

// The moment at the relative position xi (0 start, 0.5 middle, 1 end).
double momentAt(const std::array<double, 3>& values, SteelDesign::MomentDiagram shape, double xi);

// The three values of a distribution about an axis (0 where one is missing).
std::array<double, 3> momentValues(const SteelDesign::MomentDistribution& moments, SteelDesign::Axis axis);

} // namespace design
