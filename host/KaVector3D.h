#pragma once

#include "KaExport.h"

// A point or vector with three coordinates. Points of a cross-section lie in its plane: y is the
// horizontal (major-axis) coordinate, z points downwards; x is along the member and is 0 there.
class KA_HOST_API KaVector3D {
public:
    constexpr KaVector3D() = default;
    constexpr KaVector3D(double x, double y, double z) : x_(x), y_(y), z_(z) {}

    constexpr double getX() const { return x_; }
    constexpr double getY() const { return y_; }
    constexpr double getZ() const { return z_; }

    constexpr void setX(double x) { x_ = x; }
    constexpr void setY(double y) { y_ = y; }
    constexpr void setZ(double z) { z_ = z; }

    constexpr bool operator==(const KaVector3D&) const = default;

private:
    double x_ = 0.0;
    double y_ = 0.0;
    double z_ = 0.0;
};
