#include "AngleBending.h"

#include <algorithm>
#include <cmath>

namespace design {

namespace {

constexpr double pi = 3.14159265358979323846;

}

AngleAxes angleAxes(const SDBSection& section)
{
    AngleAxes a;
    const auto* L = dynamic_cast<const SDBSectionL*>(&section);
    if (!L) return a;
    const double h = L->getH(), b = L->getB(), t = L->getS();
    const SDBProperties& p = section.getProperties();
    if (!(h > 0.0 && b > 0.0 && t > 0.0 && p.A > 0.0)) return a;
    a.principal = principalAxes(section);
    a.A = p.A;
    a.equal = h == b;
    // The heel at (-ey, -ez) from the centroid, the legs towards -y (length b) and -z (length h).
    const double yh = -L->getEy(), zh = -L->getEz();
    const double pts[5][2] = {{yh, zh}, {yh, zh - h}, {yh - t, zh - h}, {yh - b, zh}, {yh - b, zh - t}};
    for (std::size_t i = 0; i < 5; ++i) {
        AngleCorner& c = a.corners[i];
        c.y = pts[i][0];
        c.z = pts[i][1];
        c.u = a.principal.u(c.y, c.z);
        c.v = a.principal.v(c.y, c.z);
        a.uMax = std::max(a.uMax, std::fabs(c.u));
        a.vMax = std::max(a.vMax, std::fabs(c.v));
    }
    if (!(a.uMax > 0.0 && a.vMax > 0.0)) return a;
    a.Welu = a.principal.Iu / a.vMax;
    a.Welv = a.principal.Iv / a.uMax;
    a.valid = true;
    return a;
}

double angleStress(const AngleAxes& a, const AngleCorner& c, double N, double Mu, double Mv)
{
    return N / a.A + Mu * c.v / a.principal.Iu - Mv * c.u / a.principal.Iv;
}

double angleStressMax(const AngleAxes& a, double N, double Mu, double Mv, int* corner)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < a.corners.size(); ++i) {
        const double s = std::fabs(angleStress(a, a.corners[i], N, Mu, Mv));
        if (s > largest || i == 0) {
            largest = s;
            if (corner) *corner = static_cast<int>(i);
        }
    }
    return largest;
}

SteelDesign::Forces legForcesToPrincipal(const SDBSection& section, const SteelDesign::Forces& f)
{
    const PrincipalAxes a = principalAxes(section);
    const double c = std::cos(a.alpha), s = std::sin(a.alpha);
    return SteelDesign::Forces(f.getN(), f.getMy() * c + f.getMz() * s, -f.getMy() * s + f.getMz() * c, f.getMt(),
                               f.getVy() * c + f.getVz() * s, -f.getVy() * s + f.getVz() * c);
}

void legMomentsToPrincipal(const SDBSection& section, std::array<double, 3>& y, std::array<double, 3>& z)
{
    const PrincipalAxes a = principalAxes(section);
    const double c = std::cos(a.alpha), s = std::sin(a.alpha);
    for (std::size_t i = 0; i < 3; ++i) {
        const double u = y[i] * c + z[i] * s, v = -y[i] * s + z[i] * c;
        y[i] = u;
        z[i] = v;
    }
}

double equalAngleMcr(const SDBSection& section, double L, double E, double G)
{
    const AngleAxes a = angleAxes(section);
    if (!a.valid || !a.equal || !(L > 0.0)) return 0.0;
    const double Iv = a.principal.Iv, It = section.getIt(), Iw = std::max(0.0, section.getIw());
    if (!(Iv > 0.0 && It > 0.0)) return 0.0;
    const double NcrV = pi * pi * E * Iv / (L * L);
    return NcrV * std::sqrt(Iw / Iv + L * L * G * It / (pi * pi * E * Iv));
}

} // namespace design
