#pragma once

// Where the shear centre of a section lies, and its principal axes: the data of torsional and
// torsional-flexural buckling (EN 1993-1-1 6.3.1.4) and of flexure about principal axes (angles, Z
// sections), for the checks and for the section's properties that the tools print.

#include <SDBSection.h>

namespace design {

enum class SectionKind : unsigned char { I, U, T, L, Z, RH, O, R, Circle, C, WU, WZ, Other };

SectionKind sectionKind(const SDBSection& section);

// Symmetric about z only: a tee, or an I section with unequal flanges.
bool monoSymmetric(SectionKind kind, const SDBSection& section);

// Where the shear centre lies: on the axis of symmetry ('z' for tees and I sections with unequal flanges,
// 'y' for channels) at the distance y0 from the centroid; axis 0 for a doubly or point-symmetric
// section; 'p' for an angle, off its leg axes (y0 the distance, ysc and zsc its coordinates).
struct ShearCentre {
    bool known = false;
    char axis = 0;
    double y0 = 0.0;
    double centroid = 0.0;  // the centroid from the reference of the formula (the trace's numbers)
    double offset = 0.0;    // the shear centre from the same reference
    bool plateCentroid = false;  // the row gives no centroid offset: the plates' centroid is used
    double ysc = 0.0, zsc = 0.0;  // m from the centroid, in the section's axes (z downwards)
};

// The shear centre of the open kinds from their dimensions (ShearCentre.cpp says how); known = false for
// the other kinds and for a section without dimensions.
ShearCentre shearCentreOf(SectionKind kind, const SDBSection& section);

// The principal axes through the centroid: u the major one, at alpha from y (positive from y towards z);
// Iu = Iy, Iv = Iz and alpha = 0 where the product of inertia is zero.
struct PrincipalAxes {
    bool rotated = false;  // the product of inertia is not zero: u and v are not y and z
    double Iu = 0.0, Iv = 0.0;
    double alpha = 0.0;    // rad
    // The coordinates along u and v of a point given in y and z.
    double u(double y, double z) const;
    double v(double y, double z) const;
};
PrincipalAxes principalAxes(const SDBSection& section);

// A section's axes as the tools print them: the principal axes, the shear centre and the polar radius of
// gyration about it, i0 = sqrt((Iy + Iz) / A + ysc² + zsc²) (0 where the shear centre is not known).
struct SectionAxes {
    PrincipalAxes principal;
    ShearCentre shearCentre;
    double i0 = 0.0;
    double alphaDegrees() const;
};
SectionAxes sectionAxes(const SDBSection& section);

} // namespace design
