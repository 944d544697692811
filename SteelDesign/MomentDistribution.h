#pragma once

#include "Axis.h"
#include "Export.h"

#include <cstddef>
#include <vector>

namespace SteelDesign {

// The shape of the bending moment diagram along the member.
enum class MomentDiagram : int {
    Polygonal = 0,  // straight-line segments: end moments and concentrated loads
    Parabolic = 1,  // a distributed load, with or without end moments
};

// Where the transverse load acts over the depth of the section (the height zp of EN 1993-1-1 6.3.2.2
// and of the critical moment formula; z points downwards).
enum class ApplicationPoint : int {
    Center = 0,  // at the shear centre: zp = 0
    Top = 1,     // on the top flange: zp = the section's smallest z (negative, destabilising)
    Bottom = 2,  // on the bottom flange: zp = the section's largest z (stabilising)
};

// The bending moments along a member for the member checks: the moment at the start, the middle and
// the end per axis, the diagram shape per axis, the largest moment along the member, the load
// application point and optionally an elastic critical moment Mcr the host has found itself (0: none).
//
// A distribution handed to a member check with bending holds at least three values per axis; a value
// that is missing (a shorter vector, e.g. the default distribution of a pure compression check) reads
// as 0 through getMomentWert.
class STEELDESIGN_API MomentDistribution {
public:
    MomentDistribution() = default;
    MomentDistribution(std::vector<double> momentValuesY, MomentDiagram diagramY, std::vector<double> momentValuesZ,
                       MomentDiagram diagramZ, double maxMomentValue, ApplicationPoint applicationPoint,
                       double mcr);

    // A copy of the moment values about y for Axis::y, about z for any other value.
    std::vector<double> getMomentWerte(Axis axis) const { return axis == Axis::y ? momentValuesY_ : momentValuesZ_; }
    // One moment value (0 start, 1 middle, 2 end) without copying; 0.0 when the vector is shorter.
    double getMomentWert(Axis axis, std::size_t index) const
    {
        const std::vector<double>& values = axis == Axis::y ? momentValuesY_ : momentValuesZ_;
        return index < values.size() ? values[index] : 0.0;
    }
    // The diagram about y for Axis::y, about z for any other value.
    MomentDiagram getMomentDiagram(Axis axis) const { return axis == Axis::y ? diagramY_ : diagramZ_; }
    ApplicationPoint getApplicationPoint() const { return applicationPoint_; }
    double getMaxMomentValue() const { return maxMomentValue_; }
    double getMcr() const { return mcr_; }

private:
    std::vector<double> momentValuesY_;
    std::vector<double> momentValuesZ_;
    ApplicationPoint applicationPoint_ = ApplicationPoint::Center;
    double mcr_ = 0.0;
    MomentDiagram diagramY_ = MomentDiagram::Polygonal;
    MomentDiagram diagramZ_ = MomentDiagram::Polygonal;
    double maxMomentValue_ = 0.0;
};

} // namespace SteelDesign
