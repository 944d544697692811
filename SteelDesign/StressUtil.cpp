#include "StressUtil.h"

#include "StressCalculator.h"

#include <KaMath.h>

#include <cmath>

namespace SteelDesign {

namespace {
constexpr double eps = 1e-6;
}

double StressUtil::stressAt(const KaVector3D& p) const
{
    return StressCalculator(section_, forces_).calculateNormalStress(p);
}

double StressUtil::calculateAlfa(const KaVector3D& p1, const KaVector3D& p2) const
{
    return alfaOf(stressAt(p1), stressAt(p2));
}

double StressUtil::alfaOf(double s1, double s2)
{
    double alpha = 1.0;
    if (s2 < eps) {
        if (s1 < eps) return 1.0;
        if (!(std::fabs(s2 - s1) < eps)) alpha = s2 / (s2 - s1);
    } else {
        if (s1 >= -eps) return -1.0;
        if (!(std::fabs(s1 - s2) < eps)) alpha = s1 / (s1 - s2);
    }
    return alpha;
}

double StressUtil::calculateAlfaWeb(double a, double b, double c) const
{
    if (std::fabs(a * b * c) < 1e-6) return 1.0;
    return 0.5 * (1.0 - forces_.getN() / (a * b * (c * 1e6)));
}

kat::Nullable<double> StressUtil::calculateMaxCompressive(const KaVector3D& p1, const KaVector3D& p2) const
{
    return maxCompressiveOf(stressAt(p1), stressAt(p2));
}

kat::Nullable<double> StressUtil::maxCompressiveOf(double s1, double s2)
{
    const double m = s1 > s2 ? s2 : s1;
    if (m < -eps) return kat::Nullable<double>(m);
    return {};
}

double StressUtil::calculateMaxCompressiveStressSectionO(double diameter) const
{
    const double My = forces_.getMy();
    const double Mz = forces_.getMz();
    const double M = std::sqrt(std::pow(My, 2.0) + std::pow(Mz, 2.0));
    double theta = 0.0;
    if (StressCalculator(section_, forces_).isValid(M)) {
        theta = std::acos(My / M);
        if (Mz > eps) theta = 2.0 * KaMath::Pi - theta;
    }
    const KaVector3D point(0.0, -std::sin(theta) * diameter / 2.0, -std::cos(theta) * diameter / 2.0);
    return stressAt(point);
}

double StressUtil::calculatePsiWeb(const KaVector3D& p1, const KaVector3D& p2) const
{
    return stressAt(p2) / stressAt(p1);
}

NormalStressType StressUtil::findNormalStressType(const KaVector3D& p) const
{
    return normalStressTypeOf(stressAt(p));
}

NormalStressType StressUtil::normalStressTypeOf(double s)
{
    return s > eps ? NormalStressType::Tension : NormalStressType::Compression;
}

} // namespace SteelDesign
