#include "SDBSection.h"

#include <cmath>

const std::string SDBKey::I = "I";
const std::string SDBKey::C = "C";
const std::string SDBKey::Circle = "Circle";
const std::string SDBKey::L = "L";
const std::string SDBKey::O = "O";
const std::string SDBKey::R = "R";
const std::string SDBKey::RH = "RH";
const std::string SDBKey::T = "T";
const std::string SDBKey::U = "U";
const std::string SDBKey::Z = "Z";
const std::string SDBKey::WU = "WU";
const std::string SDBKey::WZ = "WZ";

SDBSectionVisitor::~SDBSectionVisitor() = default;

SDBSection::SDBSection(double height, double width, bool rolled, const std::string& typeKey)
    : height_(height), width_(width), rolled_(rolled), type_(typeKey)
{
}

SDBSection::~SDBSection() = default;

double SDBSection::getSy(const KaVector3D&) const { return 0.0; }
double SDBSection::getSz(const KaVector3D&) const { return 0.0; }

SDBSectionI::SDBSectionI(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::I), h_(h), b_(b), s_(s), t_(t), r1_(r1), b2_(b), t2_(t), b2Set_(false),
      t2Set_(false)
{
}

SDBSectionI::SDBSectionI(double h, double b, double s, double t, double r1, double b2, double t2, bool rolled)
    : SDBSection(h, std::fmax(b, b2), rolled, SDBKey::I), h_(h), b_(b), s_(s), t_(t), r1_(r1), b2_(b2), t2_(t2),
      b2Set_(true), t2Set_(true)
{
}

SDBSectionC::SDBSectionC(double h, double b, double t, double c, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::C), h_(h), b_(b), t_(t), c_(c)
{
}

SDBSectionCircle::SDBSectionCircle(double d, bool rolled) : SDBSection(d, d, rolled, SDBKey::Circle), d_(d) {}

SDBSectionL::SDBSectionL(double h, double b, double s, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::L), h_(h), b_(b), s_(s), r1_(r1)
{
}

SDBSectionO::SDBSectionO(double d, double t, bool hotRolled, bool rolled)
    : SDBSection(d, d, rolled, SDBKey::O), d_(d), t_(t), hotRolled_(hotRolled)
{
}

// Solid rectangle: every property in closed form.
SDBSectionR::SDBSectionR(double h, double b, bool rolled) : SDBSection(h, b, rolled, SDBKey::R), h_(h), b_(b)
{
    SDBProperties& p = props_;
    p.A = h * b;
    p.Iy = b * h * h * h / 12.0;
    p.Iz = h * b * b * b / 12.0;
    // St. Venant constant of a solid rectangle (Roark), long side a, short side c:
    // It = a c^3 (1/3 - 0.21 (c/a) (1 - (c/a)^4 / 12)).
    const double a = std::fmax(h, b), c = std::fmin(h, b);
    p.It = a > 0.0 ? a * c * c * c * (1.0 / 3.0 - 0.21 * (c / a) * (1.0 - std::pow(c / a, 4) / 12.0)) : 0.0;
    p.Iw = 0.0;  // negligible for a solid rectangle
    p.Wely = b * h * h / 6.0;
    p.Welz = h * b * b / 6.0;
    p.Wply = b * h * h / 4.0;
    p.Wplz = h * b * b / 4.0;
    p.Avy = p.A;  // 6.2.6(3)(g)-type solid sections: the whole area
    p.Avz = p.A;
    p.webArea = p.A;
    p.zMin = -h / 2.0;
    p.zMax = h / 2.0;
    p.yMin = -b / 2.0;
    p.yMax = b / 2.0;
    p.Sy0 = p.Wply / 2.0;
    p.Sz0 = p.Wplz / 2.0;
    p.governingThickness = c;
    p.torsionThickness = c;
    p.webThickness = b;
    p.flangeWidth1 = b;
    p.flangeWidth2 = b;
}

// Part beyond z = zp: width b, from |zp| to h/2, lever arm (|zp| + h/2) / 2.
double SDBSectionR::getSy(const KaVector3D& point) const
{
    const double z = std::fmin(std::fabs(point.getZ()), h_ / 2.0);
    return b_ * (h_ * h_ / 4.0 - z * z) / 2.0;
}

double SDBSectionR::getSz(const KaVector3D& point) const
{
    const double y = std::fmin(std::fabs(point.getY()), b_ / 2.0);
    return h_ * (b_ * b_ / 4.0 - y * y) / 2.0;
}

SDBSectionRH::SDBSectionRH(double h, double b, double s, double t, double r1, bool hotRolled, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::RH), h_(h), b_(b), s_(s), t_(t), r1_(r1), hotRolled_(hotRolled)
{
}

SDBSectionT::SDBSectionT(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::T), h_(h), b_(b), s_(s), t_(t), r1_(r1)
{
}

SDBSectionU::SDBSectionU(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::U), h_(h), b_(b), s_(s), t_(t), r1_(r1)
{
}

SDBSectionZ::SDBSectionZ(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, 2.0 * b - s, rolled, SDBKey::Z), h_(h), b_(b), s_(s), t_(t), r1_(r1)
{
}

SDBSectionW::SDBSectionW(double h, double flangeWidth, double s, double t, const std::string& typeKey)
    : SDBSection(h, flangeWidth, false, typeKey), h_(h), flangeWidth_(flangeWidth), s_(s), t_(t)
{
}

SDBSectionWU::SDBSectionWU(double h, double flangeWidth, double s, double t)
    : SDBSectionW(h, flangeWidth, s, t, SDBKey::WU)
{
}

SDBSectionWZ::SDBSectionWZ(double h, double flangeWidth, double s, double t)
    : SDBSectionW(h, flangeWidth, s, t, SDBKey::WZ)
{
}
