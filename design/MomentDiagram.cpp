#include "MomentDiagram.h"

namespace design {

double momentAt(const std::array<double, 3>& values, SteelDesign::MomentDiagram shape, double xi)
{
    const double m1 = values[0], mm = values[1], m2 = values[2];
    if (shape == SteelDesign::MomentDiagram::Parabolic) {
        // Lagrange's parabola through (0, m1), (0.5, mm), (1, m2).
        return m1 * 2.0 * (xi - 0.5) * (xi - 1.0) - mm * 4.0 * xi * (xi - 1.0) + m2 * 2.0 * xi * (xi - 0.5);
    }
    if (xi <= 0.5) return m1 + (mm - m1) * (xi / 0.5);
    return mm + (m2 - mm) * ((xi - 0.5) / 0.5);
}

std::array<double, 3> momentValues(const SteelDesign::MomentDistribution& moments, SteelDesign::Axis axis)
{
    return {moments.getMomentWert(axis, 0), moments.getMomentWert(axis, 1), moments.getMomentWert(axis, 2)};
}

} // namespace design
