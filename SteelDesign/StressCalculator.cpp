#include "StressCalculator.h"

#include <KaMath.h>
#include <SDBSection.h>

namespace SteelDesign {

bool StressCalculator::isValid(double value) const { return !KaMath::isFuzzyZero(value, KaMath::getEpsMin()); }

double StressCalculator::calculateNormalStress(const KaVector3D& point) const
{
    const double A = section_->getA();
    const double Iy = section_->getIy();
    const double Iz = section_->getIz();
    if (!isValid(A) || !isValid(Iy) || !isValid(Iz)) return 0.0;
    return forces_.getN() / A + (forces_.getMy() / Iy) * point.getZ() - (forces_.getMz() / Iz) * point.getY();
}

double StressCalculator::calculateShearStress(Axis axis, const KaVector3D& point, double thickness) const
{
    double S, I, V;
    if (axis == Axis::z) {
        S = section_->getSy(point);
        I = section_->getIy();
        V = forces_.getVz();
    } else {
        S = section_->getSz(point);
        I = section_->getIz();
        V = forces_.getVy();
    }
    return V * S / (I * thickness) + calculateMt(thickness);
}

double StressCalculator::calculateMt(double thickness) const
{
    const double It = section_->getIt();
    return forces_.getMt() / It * thickness;
}

} // namespace SteelDesign
