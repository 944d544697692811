#pragma once

// Geometry engine of the section database (internal to the host library): exact properties of a
// polygonal outline, and the thin-walled warping constant of an open chain of plates.
//
// Outlines are closed polygons in the section plane (y horizontal, z downwards): the outer contour
// first, then any holes. Round corners and root fillets are replaced by chords, 24 per quarter circle:
// a fillet of radius r then loses r^2 (delta - sin delta) * 12 = 5.6e-4 r^2 against 0.215 r^2 of
// fillet area, so the area of a rolled section is within 0.01 % and every other property closer still to the exact
// arc geometry.
// Every integral over a polygon is exact (Green's theorem over the edges).

#include "SDBSection.h"

#include <cstddef>

namespace sdbgeom {

// A sharp corner of an outline and the radius that rounds it (0: sharp). Consecutive corners must be
// joined by horizontal or vertical edges, so that the round replaces the corner tangentially.
struct Corner {
    double y, z, r;
};

constexpr int arcSegmentsPerQuarter = 24;

// Appends a closed ring through the corners, each rounded with its radius, to the outline.
void addRing(SDBOutline& outline, const Corner* corners, std::size_t count);

// The same for corners of any angle (the sloped inner faces of tapered flanges): each round is the arc of
// its radius tangent to both edges, at a distance r tan(theta / 2) from the corner for a turn theta, in
// segments of at most a 24th of a quarter circle.
void addRingAnyAngle(SDBOutline& outline, const Corner* corners, std::size_t count);

// Area properties of an outline about the origin of its coordinates.
struct AreaProperties {
    double A = 0.0;
    double cy = 0.0, cz = 0.0;          // centroid
    double Iy = 0.0, Iz = 0.0, Iyz = 0.0;  // about the centroid: int z^2, int y^2, int y z
    double yMin = 0.0, yMax = 0.0, zMin = 0.0, zMax = 0.0;  // extents, relative to the centroid
};

// Orients the rings (outer contour positive, holes negative), computes the area properties and moves
// the outline so that its centroid is the origin. Returns the properties (centroid before the move).
AreaProperties centreOutline(SDBOutline& outline);

// The part of the outline beyond the line z = c (horizontal = true) or y = c (horizontal = false), on
// the side c lies on (z > c for c > 0, z < c for c < 0, z > c for c = 0). Returns the magnitude of
// its first moment about the axis through the origin parallel to the line.
double firstMomentBeyond(const SDBOutline& outline, bool horizontal, double c);

// Plastic section modulus about the axis parallel to y (horizontal = true) or to z: the equal-area
// axis splits the outline, Wpl = sum of the first moments of both halves about it.
double plasticModulus(const SDBOutline& outline, bool horizontal, double extentMin, double extentMax);

// Warping constant about the shear centre of a thin-walled open chain of plates of one thickness t
// through the nodes (centre-line model). The sectorial coordinate is taken about any pole and made
// orthogonal to 1, y and z, which moves it to the shear centre; Iw is the square integral left over.
double chainWarpingConstant(const double* y, const double* z, std::size_t nodes, double t);

} // namespace sdbgeom
