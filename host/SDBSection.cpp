#include "SDBSection.h"

#include "SectionGeometry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

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

namespace {

constexpr double pi = 3.14159265358979323846;

// --- validation of dimensions -----------------------------------------------------------------------

std::string number(double v)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%g", v);
    return buffer;
}

class Checker {
public:
    explicit Checker(const char* kind) : kind_(kind) {}

    [[noreturn]] void fail(const std::string& text) const
    {
        throw SDBDimensionError(std::string(kind_) + " section: " + text);
    }
    // name: "flange thickness t"
    void positive(const char* name, double v) const
    {
        if (!std::isfinite(v)) fail(std::string(name) + " = " + number(v) + " must be a finite number");
        if (!(v > 0.0)) fail(std::string(name) + " = " + number(v) + " m must be positive");
    }
    void nonNegative(const char* name, double v) const
    {
        if (!std::isfinite(v)) fail(std::string(name) + " = " + number(v) + " must be a finite number");
        if (v < 0.0) fail(std::string(name) + " = " + number(v) + " m must not be negative");
    }
    void less(const char* name, double v, const char* limitName, double limit) const
    {
        if (!(v < limit))
            fail(std::string(name) + " = " + number(v) + " m must be less than " + limitName + " = " + number(limit) +
                 " m");
    }
    void atMost(const char* name, double v, const char* limitName, double limit) const
    {
        // A relative tolerance keeps exact fits (s + 2 r = b) valid despite rounding.
        if (v > limit * (1.0 + 1e-12))
            fail(std::string(name) + " = " + number(v) + " m must not exceed " + limitName + " = " + number(limit) +
                 " m");
    }

private:
    const char* kind_;
};

// --- St. Venant torsion of rolled sections ------------------------------------------------------------
// Junction terms alpha D^4 of El Darwish and Johnston, as the producers' (ECCS) tables use them.

// Web (tw) meeting a flange (tf) in its middle, root radius r (I and T sections).
double teeJunction(double tw, double tf, double r)
{
    const double alpha = -0.042 + 0.2204 * tw / tf + 0.1355 * r / tf - 0.0865 * r * tw / (tf * tf) -
                         0.0725 * tw * tw / (tf * tf);
    const double D = ((tf + r) * (tf + r) + tw * (r + tw / 4.0)) / (2.0 * r + tf);
    return alpha * D * D * D * D;
}

// Web (tw) meeting a flange (tf) at its end, root radius r (channels, Z sections, angles).
double cornerJunction(double tw, double tf, double r)
{
    const double alpha = -0.0908 + 0.2621 * tw / tf + 0.1231 * r / tf - 0.0752 * tw * r / (tf * tf) -
                         0.0945 * (tw / tf) * (tw / tf);
    const double D = 2.0 * ((3.0 * r + tw + tf) - std::sqrt(2.0 * (2.0 * r + tw) * (2.0 * r + tf)));
    return alpha * D * D * D * D;
}

// Channel-like sections (U, Z, WU, WZ): It, and the warping constants of the centre-line formulas.
double channelIt(double h, double b, double s, double t, double r)
{
    if (r > 0.0)
        return 2.0 * b * t * t * t / 3.0 - 0.21 * t * t * t * t + (h - 2.0 * t) * s * s * s / 3.0 +
               2.0 * cornerJunction(s, t, r);
    return (2.0 * b * t * t * t + (h - 2.0 * t) * s * s * s) / 3.0;
}

double channelIw(double h, double b, double s, double t)
{
    const double bp = b - s / 2.0, hp = h - t;
    return t * bp * bp * bp * hp * hp / 12.0 * (3.0 * bp * t + 2.0 * hp * s) / (6.0 * bp * t + hp * s);
}

double zIw(double h, double b, double s, double t)
{
    const double bp = b - s / 2.0, hp = h - t;
    return t * bp * bp * bp * hp * hp / 12.0 * (bp * t + 2.0 * hp * s) / (2.0 * bp * t + hp * s);
}

void validateChannel(const Checker& c, double h, double b, double s, double t, double r)
{
    c.positive("depth h", h);
    c.positive("flange width b", b);
    c.positive("web thickness s", s);
    c.positive("flange thickness t", t);
    c.nonNegative("root radius r1", r);
    c.less("flange thickness t", t, "h/2", h / 2.0);
    c.less("web thickness s", s, "flange width b", b);
    c.atMost("root radius r1", r, "b - s", b - s);
    c.atMost("root radius r1", r, "h/2 - t", h / 2.0 - t);
}

// Outline of a channel, reference point at the web back at mid-height, flanges to -y.
void channelOutline(SDBOutline& o, double h, double b, double s, double t, double r)
{
    const sdbgeom::Corner corners[] = {{0, -h / 2, 0},     {0, h / 2, 0},       {-b, h / 2, 0},
                                       {-b, h / 2 - t, 0}, {-s, h / 2 - t, r},  {-s, -h / 2 + t, r},
                                       {-b, -h / 2 + t, 0}, {-b, -h / 2, 0}};
    sdbgeom::addRing(o, corners, std::size(corners));
}

// Outline of a Z section, reference point at the centre of the web, top flange to +y.
void zOutline(SDBOutline& o, double h, double b, double s, double t, double r)
{
    const double tip = b - s / 2.0;
    const sdbgeom::Corner corners[] = {{-s / 2, -h / 2, 0},      {tip, -h / 2, 0},     {tip, -h / 2 + t, 0},
                                       {s / 2, -h / 2 + t, r},   {s / 2, h / 2, 0},    {-tip, h / 2, 0},
                                       {-tip, h / 2 - t, 0},     {-s / 2, h / 2 - t, r}};
    sdbgeom::addRing(o, corners, std::size(corners));
}

// The properties that U, Z, WU and WZ share once the outline is analysed.
void channelLikeProperties(SDBProperties& p, double h, double b, double s, double t, double r, bool rolled)
{
    const double hw = h - 2.0 * t;
    p.It = channelIt(h, b, s, t, r);
    if (rolled) {
        p.Avz = p.A - 2.0 * b * t + (s + r) * t;  // 6.2.6(3)(b)
        p.Avy = 2.0 * b * t;
    } else {
        p.Avz = hw * s;  // 6.2.6(3)(d)
        p.Avy = p.A - p.Avz;  // 6.2.6(3)(e)
    }
    p.webArea = hw * s;
    p.governingThickness = t;
    p.torsionThickness = std::max(s, t);
    p.webThickness = s;
    p.flangeWidth1 = b;
    p.flangeWidth2 = b;
}

} // namespace

// --- base ---------------------------------------------------------------------------------------------

SDBSection::SDBSection(double height, double width, bool rolled, const std::string& typeKey)
    : height_(height), width_(width), rolled_(rolled), type_(typeKey)
{
}

SDBSection::~SDBSection() = default;

double SDBSection::getSy(const KaVector3D& point) const
{
    return outline_.points.empty() ? 0.0 : sdbgeom::firstMomentBeyond(outline_, true, point.getZ());
}

double SDBSection::getSz(const KaVector3D& point) const
{
    return outline_.points.empty() ? 0.0 : sdbgeom::firstMomentBeyond(outline_, false, point.getY());
}

void SDBSection::computeFromOutline()
{
    const sdbgeom::AreaProperties a = sdbgeom::centreOutline(outline_);
    SDBProperties& p = props_;
    p.A = a.A;
    // Offsets of symmetric sections come out as rounding noise: snap them to 0 (1e-12 of the size).
    const double size = std::max(a.yMax - a.yMin, a.zMax - a.zMin);
    p.ey = std::fabs(a.cy) < 1e-12 * size ? 0.0 : a.cy;
    p.ez = std::fabs(a.cz) < 1e-12 * size ? 0.0 : a.cz;
    p.Iy = a.Iy;
    p.Iz = a.Iz;
    p.Iyz = a.Iyz;
    p.yMin = a.yMin;
    p.yMax = a.yMax;
    p.zMin = a.zMin;
    p.zMax = a.zMax;
    p.Wely = a.Iy / std::max(-a.zMin, a.zMax);
    p.Welz = a.Iz / std::max(-a.yMin, a.yMax);
    p.Wply = sdbgeom::plasticModulus(outline_, true, a.zMin, a.zMax);
    p.Wplz = sdbgeom::plasticModulus(outline_, false, a.yMin, a.yMax);
    p.Sy0 = sdbgeom::firstMomentBeyond(outline_, true, 0.0);
    p.Sz0 = sdbgeom::firstMomentBeyond(outline_, false, 0.0);
}

// --- I ------------------------------------------------------------------------------------------------

SDBSectionI::SDBSectionI(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::I), h_(h), b_(b), s_(s), t_(t), r1_(r1), b2_(b), t2_(t), b2Set_(false),
      t2Set_(false)
{
    build();
}

SDBSectionI::SDBSectionI(double h, double b, double s, double t, double r1, double b2, double t2, bool rolled)
    : SDBSection(h, std::fmax(b, b2), rolled, SDBKey::I), h_(h), b_(b), s_(s), t_(t), r1_(r1), b2_(b2), t2_(t2),
      b2Set_(true), t2Set_(true)
{
    build();
}

std::unique_ptr<SDBSectionI> SDBSectionI::tapered(double h, double b, double s, double t, double r1, double r2,
                                                  double flangeSlope)
{
    const Checker c("I");
    c.nonNegative("toe radius r2", r2);
    c.positive("flange slope", flangeSlope);
    c.less("flange slope", flangeSlope, "1", 1.0);
    // Built as a parallel-flange I first (which validates h, b, s, t, r1), then rebuilt with the taper.
    auto section = std::make_unique<SDBSectionI>(h, b, s, t, r1, true);
    section->r2_ = r2;
    section->flangeSlope_ = flangeSlope;
    section->outline_ = SDBOutline();
    section->build();
    return section;
}

void SDBSectionI::build()
{
    const Checker c("I");
    const double h = h_, b1 = b_, s = s_, t1 = t_, r = r1_, b2 = b2_, t2 = t2_;
    c.positive("depth h", h);
    c.positive("flange width b", b1);
    c.positive("web thickness s", s);
    c.positive("flange thickness t", t1);
    c.nonNegative("root radius r1", r);
    if (b2Set_) {
        c.positive("bottom flange width b2", b2);
        c.positive("bottom flange thickness t2", t2);
        c.less("flange thicknesses t + t2", t1 + t2, "h", h);
    } else {
        c.less("flange thickness t", t1, "h/2", h / 2.0);
    }
    c.less("web thickness s", s, "flange width b", b1);
    if (b2Set_) c.less("web thickness s", s, "bottom flange width b2", b2);
    c.atMost("root radius r1", r, "(min(b, b2) - s)/2", (std::fmin(b1, b2) - s) / 2.0);
    c.atMost("root radius r1", r, "(h - t - t2)/2", (h - t1 - t2) / 2.0);

    if (flangeSlope_ > 0.0) {
        // Tapered flanges: the thickness grows by the slope from the tip to the web face and is t halfway.
        const double half = (b1 - s) / 4.0;  // from the web face to the point where t is measured
        const double tip = t1 - flangeSlope_ * half, root = t1 + flangeSlope_ * half;
        c.positive("flange thickness at the tip t - slope (b - s)/4", tip);
        c.less("flange thickness at the web t + slope (b - s)/4", root, "h/2", h / 2.0);
        const double r2 = r2_;
        const sdbgeom::Corner corners[] = {
            {-b1 / 2, -h / 2, 0},      {b1 / 2, -h / 2, 0},      {b1 / 2, -h / 2 + tip, r2}, {s / 2, -h / 2 + root, r},
            {s / 2, h / 2 - root, r},  {b1 / 2, h / 2 - tip, r2}, {b1 / 2, h / 2, 0},        {-b1 / 2, h / 2, 0},
            {-b1 / 2, h / 2 - tip, r2}, {-s / 2, h / 2 - root, r}, {-s / 2, -h / 2 + root, r}, {-b1 / 2, -h / 2 + tip, r2}};
        sdbgeom::addRingAnyAngle(outline_, corners, std::size(corners));
    } else {
        const sdbgeom::Corner corners[] = {
            {-b1 / 2, -h / 2, 0},      {b1 / 2, -h / 2, 0},      {b1 / 2, -h / 2 + t1, 0}, {s / 2, -h / 2 + t1, r},
            {s / 2, h / 2 - t2, r},    {b2 / 2, h / 2 - t2, 0},  {b2 / 2, h / 2, 0},       {-b2 / 2, h / 2, 0},
            {-b2 / 2, h / 2 - t2, 0},  {-s / 2, h / 2 - t2, r},  {-s / 2, -h / 2 + t1, r}, {-b1 / 2, -h / 2 + t1, 0}};
        sdbgeom::addRing(outline_, corners, std::size(corners));
    }
    computeFromOutline();

    SDBProperties& p = props_;
    const double hw = h - t1 - t2;
    if (isRolled() && r > 0.0) {
        p.It = t1 * t1 * t1 / 3.0 * (b1 - 0.63 * t1) + t2 * t2 * t2 / 3.0 * (b2 - 0.63 * t2) + hw * s * s * s / 3.0 +
               teeJunction(s, t1, r) + teeJunction(s, t2, r);
    } else {
        p.It = (b1 * t1 * t1 * t1 + b2 * t2 * t2 * t2 + hw * s * s * s) / 3.0;
    }
    const double I1 = t1 * b1 * b1 * b1 / 12.0, I2 = t2 * b2 * b2 * b2 / 12.0;
    const double hs = h - t1 / 2.0 - t2 / 2.0;
    p.Iw = hs * hs * I1 * I2 / (I1 + I2);
    if (isRolled())
        p.Avz = std::fmax(p.A - b1 * t1 - b2 * t2 + (s + 2.0 * r) * (t1 + t2) / 2.0, hw * s);  // 6.2.6(3)(a)
    else
        p.Avz = hw * s;  // 6.2.6(3)(d)
    p.Avy = b1 * t1 + b2 * t2;
    p.webArea = hw * s;
    p.governingThickness = std::fmax(t1, t2);
    p.torsionThickness = std::fmax(std::fmax(t1, t2), s);
    p.webThickness = s;
    p.flangeWidth1 = b1;
    p.flangeWidth2 = b2;
}

// --- C ------------------------------------------------------------------------------------------------

SDBSectionC::SDBSectionC(double h, double b, double t, double c, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::C), h_(h), b_(b), t_(t), c_(c)
{
    const Checker k("C");
    k.positive("depth h", h);
    k.positive("flange width b", b);
    k.positive("wall thickness t", t);
    k.nonNegative("clear distance between the lips c", c);
    k.less("wall thickness t", t, "b/2", b / 2.0);
    k.less("clear distance between the lips c", c, "h - 2 t", h - 2.0 * t);

    const double zl = c / 2.0;
    const sdbgeom::Corner corners[] = {{0, -h / 2, 0},          {0, h / 2, 0},           {-b, h / 2, 0},
                                       {-b, zl, 0},             {-b + t, zl, 0},         {-b + t, h / 2 - t, 0},
                                       {-t, h / 2 - t, 0},      {-t, -h / 2 + t, 0},     {-b + t, -h / 2 + t, 0},
                                       {-b + t, -zl, 0},        {-b, -zl, 0},            {-b, -h / 2, 0}};
    sdbgeom::addRing(outline_, corners, std::size(corners));
    computeFromOutline();

    // Centre line, from the top lip end round to the bottom lip end.
    const double yl = -b + t / 2.0, yw = -t / 2.0, zf = h / 2.0 - t / 2.0;
    const double ys[] = {yl, yl, yw, yw, yl, yl};
    const double zs[] = {-zl, -zf, -zf, zf, zf, zl};
    double length = 0.0;
    for (int i = 0; i < 5; ++i) length += std::fabs(ys[i + 1] - ys[i]) + std::fabs(zs[i + 1] - zs[i]);
    SDBProperties& p = props_;
    p.It = length * t * t * t / 3.0;
    p.Iw = sdbgeom::chainWarpingConstant(ys, zs, 6, t);
    p.Avz = (h - 2.0 * t) * t;  // 6.2.6(3)(d)
    p.Avy = p.A - p.Avz;       // 6.2.6(3)(e)
    p.webArea = p.Avz;
    p.governingThickness = t;
    p.torsionThickness = t;
    p.webThickness = t;
    p.flangeWidth1 = b;
    p.flangeWidth2 = b;
}

// --- Circle -------------------------------------------------------------------------------------------

SDBSectionCircle::SDBSectionCircle(double d, bool rolled) : SDBSection(d, d, rolled, SDBKey::Circle), d_(d)
{
    Checker("Circle").positive("diameter d", d);
    SDBProperties& p = props_;
    p.A = pi * d * d / 4.0;
    p.Iy = p.Iz = pi * d * d * d * d / 64.0;
    p.It = 2.0 * p.Iy;
    p.Wely = p.Welz = pi * d * d * d / 32.0;
    p.Wply = p.Wplz = d * d * d / 6.0;
    p.Avy = p.Avz = p.A;  // solid bar: the whole area
    p.webArea = p.A;
    p.zMin = p.yMin = -d / 2.0;
    p.zMax = p.yMax = d / 2.0;
    p.Sy0 = p.Sz0 = d * d * d / 12.0;
    p.governingThickness = p.torsionThickness = p.webThickness = d;
    p.flangeWidth1 = p.flangeWidth2 = d;
}

namespace {
// First moment of the circular segment beyond the chord at distance c from the centre of a disc of
// radius R: 2/3 (R^2 - c^2)^(3/2).
double segmentMoment(double R, double c)
{
    const double q = R * R - c * c;
    return q > 0.0 ? 2.0 / 3.0 * q * std::sqrt(q) : 0.0;
}
} // namespace

double SDBSectionCircle::getSy(const KaVector3D& point) const { return segmentMoment(d_ / 2.0, point.getZ()); }
double SDBSectionCircle::getSz(const KaVector3D& point) const { return segmentMoment(d_ / 2.0, point.getY()); }

// --- L ------------------------------------------------------------------------------------------------

SDBSectionL::SDBSectionL(double h, double b, double s, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::L), h_(h), b_(b), s_(s), r1_(r1), r2_(0.0)
{
    build();
}

SDBSectionL::SDBSectionL(double h, double b, double s, double r1, double r2, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::L), h_(h), b_(b), s_(s), r1_(r1), r2_(r2)
{
    build();
}

void SDBSectionL::build()
{
    const Checker c("L");
    const double h = h_, b = b_, s = s_, r1 = r1_, r2 = r2_;
    c.positive("leg length h", h);
    c.positive("leg length b", b);
    c.positive("thickness s", s);
    c.nonNegative("root radius r1", r1);
    c.nonNegative("toe radius r2", r2);
    c.less("thickness s", s, "leg length h", h);
    c.less("thickness s", s, "leg length b", b);
    c.atMost("toe radius r2", r2, "thickness s", s);
    c.atMost("root radius r1 + toe radius r2", r1 + r2, "min(h, b) - s", std::fmin(h, b) - s);

    const sdbgeom::Corner corners[] = {{0, 0, 0}, {-b, 0, 0}, {-b, -s, r2}, {-s, -s, r1}, {-s, -h, r2}, {0, -h, 0}};
    sdbgeom::addRing(outline_, corners, std::size(corners));
    computeFromOutline();

    SDBProperties& p = props_;
    const double s3 = s * s * s;
    p.It = r1 > 0.0 ? (b + h - s) * s3 / 3.0 - 0.21 * s3 * s + cornerJunction(s, s, r1) : (b + h - s) * s3 / 3.0;
    const double hh = h - s / 2.0, bb = b - s / 2.0;
    p.Iw = s3 * (hh * hh * hh + bb * bb * bb) / 36.0;
    p.Avz = h * s;  // the leg along z
    p.Avy = b * s;  // the leg along y
    p.webArea = (h - s) * s;
    p.governingThickness = s;
    p.torsionThickness = s;
    p.webThickness = s;
    p.flangeWidth1 = b;
    p.flangeWidth2 = 0.0;
}

// --- O ------------------------------------------------------------------------------------------------

SDBSectionO::SDBSectionO(double d, double t, bool hotRolled, bool rolled)
    : SDBSection(d, d, rolled, SDBKey::O), d_(d), t_(t), hotRolled_(hotRolled)
{
    const Checker c("O");
    c.positive("outer diameter d", d);
    c.positive("wall thickness t", t);
    c.less("wall thickness t", t, "d/2", d / 2.0);
    const double di = d - 2.0 * t;
    SDBProperties& p = props_;
    p.A = pi * (d * d - di * di) / 4.0;
    p.Iy = p.Iz = pi * (d * d * d * d - di * di * di * di) / 64.0;
    p.It = 2.0 * p.Iy;
    p.Wely = p.Welz = 2.0 * p.Iy / d;
    p.Wply = p.Wplz = (d * d * d - di * di * di) / 6.0;
    p.Avy = p.Avz = 2.0 * p.A / pi;  // 6.2.6(3)(g)
    p.webArea = p.A / 2.0;
    p.zMin = p.yMin = -d / 2.0;
    p.zMax = p.yMax = d / 2.0;
    p.Sy0 = p.Sz0 = p.Wply / 2.0;
    p.governingThickness = p.torsionThickness = p.webThickness = t;
    p.flangeWidth1 = p.flangeWidth2 = d;
}

double SDBSectionO::getSy(const KaVector3D& point) const
{
    return segmentMoment(d_ / 2.0, point.getZ()) - segmentMoment(d_ / 2.0 - t_, point.getZ());
}

double SDBSectionO::getSz(const KaVector3D& point) const
{
    return segmentMoment(d_ / 2.0, point.getY()) - segmentMoment(d_ / 2.0 - t_, point.getY());
}

// --- R ------------------------------------------------------------------------------------------------

// Solid rectangle: every property in closed form.
SDBSectionR::SDBSectionR(double h, double b, bool rolled) : SDBSection(h, b, rolled, SDBKey::R), h_(h), b_(b)
{
    const Checker c("R");
    c.positive("depth h", h);
    c.positive("width b", b);
    SDBProperties& p = props_;
    p.A = h * b;
    p.Iy = b * h * h * h / 12.0;
    p.Iz = h * b * b * b / 12.0;
    // St. Venant constant of a solid rectangle (Roark), long side a, short side c:
    // It = a c^3 (1/3 - 0.21 (c/a) (1 - (c/a)^4 / 12)).
    const double a = std::fmax(h, b), cc = std::fmin(h, b);
    p.It = a * cc * cc * cc * (1.0 / 3.0 - 0.21 * (cc / a) * (1.0 - std::pow(cc / a, 4) / 12.0));
    p.Iw = 0.0;  // negligible for a solid rectangle
    p.Wely = b * h * h / 6.0;
    p.Welz = h * b * b / 6.0;
    p.Wply = b * h * h / 4.0;
    p.Wplz = h * b * b / 4.0;
    p.Avy = p.A;  // solid section: the whole area
    p.Avz = p.A;
    p.webArea = p.A;
    p.zMin = -h / 2.0;
    p.zMax = h / 2.0;
    p.yMin = -b / 2.0;
    p.yMax = b / 2.0;
    p.Sy0 = p.Wply / 2.0;
    p.Sz0 = p.Wplz / 2.0;
    p.governingThickness = cc;
    p.torsionThickness = cc;
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

// --- RH -----------------------------------------------------------------------------------------------

SDBSectionRH::SDBSectionRH(double h, double b, double s, double t, double r1, bool hotRolled, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::RH), h_(h), b_(b), s_(s), t_(t), r1_(r1), hotRolled_(hotRolled)
{
    const Checker c("RH");
    c.positive("depth h", h);
    c.positive("width b", b);
    c.positive("web wall thickness s", s);
    c.positive("flange wall thickness t", t);
    c.nonNegative("outer corner radius r1", r1);
    c.less("flange wall thickness t", t, "h/2", h / 2.0);
    c.less("web wall thickness s", s, "b/2", b / 2.0);
    c.atMost("outer corner radius r1", r1, "min(h, b)/2", std::fmin(h, b) / 2.0);

    // Inner corner radius: EN 10210-2 (hot-finished) takes 1.5 t outside and 1.0 t inside, EN 10219-2
    // (cold-formed) concentric corners, r1 - t.
    const double wall = std::fmax(s, t);
    const double ri = std::fmax(0.0, hotRolled ? r1 - wall / 2.0 : r1 - wall);
    const double yo = b / 2, zo = h / 2, yi = b / 2 - s, zi = h / 2 - t;
    const double rim = std::fmin(ri, std::fmin(yi, zi));
    const sdbgeom::Corner outer[] = {{-yo, -zo, r1}, {yo, -zo, r1}, {yo, zo, r1}, {-yo, zo, r1}};
    const sdbgeom::Corner inner[] = {{-yi, -zi, rim}, {yi, -zi, rim}, {yi, zi, rim}, {-yi, zi, rim}};
    sdbgeom::addRing(outline_, outer, 4);
    sdbgeom::addRing(outline_, inner, 4);
    computeFromOutline();

    SDBProperties& p = props_;
    // Closed thin wall (EN 10210-2 / EN 10219-2): mid-line corner radius Rc = (r1 + ri)/2,
    // enclosed area Ap, It = 4 Ap^2 / (sum l/t) + sum l t^3 / 3.
    const double Rc = (r1 + ri) / 2.0, k = 4.0 - pi;
    const double Ap = (b - s) * (h - t) - Rc * Rc * k;
    const double lt = 2.0 * (b - s) - Rc * k;  // the two flanges (thickness t), with half the corners
    const double ls = 2.0 * (h - t) - Rc * k;  // the two webs (thickness s)
    p.It = 4.0 * Ap * Ap / (lt / t + ls / s) + (lt * t * t * t + ls * s * s * s) / 3.0;
    p.Iw = 0.0;  // closed section: warping negligible
    if (s == t) {
        p.Avz = p.A * h / (b + h);  // 6.2.6(3)(f)
        p.Avy = p.A * b / (b + h);
    } else {
        p.Avz = 2.0 * (h - 2.0 * t) * s;  // 6.2.6(3)(d)
        p.Avy = p.A - p.Avz;              // 6.2.6(3)(e)
    }
    p.webArea = 2.0 * (h - 2.0 * t) * s;
    p.governingThickness = t;
    p.torsionThickness = std::fmax(s, t);
    p.webThickness = s;
    p.flangeWidth1 = b;
    p.flangeWidth2 = b;
}

// --- T ------------------------------------------------------------------------------------------------

SDBSectionT::SDBSectionT(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::T), h_(h), b_(b), s_(s), t_(t), r1_(r1)
{
    const Checker c("T");
    c.positive("depth h", h);
    c.positive("flange width b", b);
    c.positive("stem thickness s", s);
    c.positive("flange thickness t", t);
    c.nonNegative("root radius r1", r1);
    c.less("flange thickness t", t, "depth h", h);
    c.less("stem thickness s", s, "flange width b", b);
    c.atMost("root radius r1", r1, "(b - s)/2", (b - s) / 2.0);
    c.atMost("root radius r1", r1, "h - t", h - t);

    const double r = r1;
    const sdbgeom::Corner corners[] = {{-b / 2, 0, 0}, {b / 2, 0, 0},  {b / 2, t, 0},   {s / 2, t, r},
                                       {s / 2, h, 0},  {-s / 2, h, 0}, {-s / 2, t, r},  {-b / 2, t, 0}};
    sdbgeom::addRing(outline_, corners, std::size(corners));
    computeFromOutline();

    SDBProperties& p = props_;
    const double t3 = t * t * t, s3 = s * s * s;
    if (r > 0.0 && rolled)
        p.It = b * t3 / 3.0 - 0.21 * t3 * t + (h - t) * s3 / 3.0 - 0.105 * s3 * s + teeJunction(s, t, r);
    else
        p.It = (b * t3 + (h - t) * s3) / 3.0;
    const double hs = h - t / 2.0;
    p.Iw = b * b * b * t3 / 144.0 + s3 * hs * hs * hs / 36.0;
    p.Avz = rolled ? p.A - b * t + (s + 2.0 * r) * t / 2.0  // 6.2.6(3)(c), rolled
                   : s * (h - t / 2.0);                      // 6.2.6(3)(c), welded
    p.Avy = b * t;
    p.webArea = (h - t) * s;
    p.governingThickness = t;
    p.torsionThickness = std::fmax(s, t);
    p.webThickness = s;
    p.flangeWidth1 = b;
    p.flangeWidth2 = 0.0;
}

// --- U ------------------------------------------------------------------------------------------------

std::unique_ptr<SDBSectionU> SDBSectionU::tapered(double h, double b, double s, double t, double r1, double r2,
                                                  double flangeSlope)
{
    const Checker c("U");
    c.nonNegative("toe radius r2", r2);
    c.positive("flange slope", flangeSlope);
    c.less("flange slope", flangeSlope, "1", 1.0);
    auto section = std::make_unique<SDBSectionU>(h, b, s, t, r1, true);
    const double half = (b - s) / 2.0;  // from the web face to the point where t is measured
    const double tip = t - flangeSlope * half, root = t + flangeSlope * half;
    c.positive("flange thickness at the tip t - slope (b - s)/2", tip);
    c.less("flange thickness at the web t + slope (b - s)/2", root, "h/2", h / 2.0);
    section->r2_ = r2;
    section->flangeSlope_ = flangeSlope;
    section->outline_ = SDBOutline();
    const sdbgeom::Corner corners[] = {{0, -h / 2, 0},          {0, h / 2, 0},           {-b, h / 2, 0},
                                       {-b, h / 2 - tip, r2},   {-s, h / 2 - root, r1},  {-s, -h / 2 + root, r1},
                                       {-b, -h / 2 + tip, r2},  {-b, -h / 2, 0}};
    sdbgeom::addRingAnyAngle(section->outline_, corners, std::size(corners));
    section->computeFromOutline();
    section->props_.Iw = channelIw(h, b, s, t);
    channelLikeProperties(section->props_, h, b, s, t, r1, true);
    return section;
}

SDBSectionU::SDBSectionU(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, b, rolled, SDBKey::U), h_(h), b_(b), s_(s), t_(t), r1_(r1)
{
    validateChannel(Checker("U"), h, b, s, t, r1);
    channelOutline(outline_, h, b, s, t, r1);
    computeFromOutline();
    props_.Iw = channelIw(h, b, s, t);
    channelLikeProperties(props_, h, b, s, t, rolled ? r1 : 0.0, rolled);
}

// --- Z ------------------------------------------------------------------------------------------------

SDBSectionZ::SDBSectionZ(double h, double b, double s, double t, double r1, bool rolled)
    : SDBSection(h, 2.0 * b - s, rolled, SDBKey::Z), h_(h), b_(b), s_(s), t_(t), r1_(r1)
{
    validateChannel(Checker("Z"), h, b, s, t, r1);
    zOutline(outline_, h, b, s, t, r1);
    computeFromOutline();
    props_.Iw = zIw(h, b, s, t);
    channelLikeProperties(props_, h, b, s, t, rolled ? r1 : 0.0, rolled);
}

// --- WU, WZ -------------------------------------------------------------------------------------------

SDBSectionW::SDBSectionW(double h, double flangeWidth, double s, double t, const std::string& typeKey)
    : SDBSection(h, flangeWidth, false, typeKey), h_(h), flangeWidth_(flangeWidth), s_(s), t_(t)
{
    validateChannel(Checker(typeKey.c_str()), h, flangeWidth, s, t, 0.0);
}

SDBSectionWU::SDBSectionWU(double h, double flangeWidth, double s, double t)
    : SDBSectionW(h, flangeWidth, s, t, SDBKey::WU)
{
    channelOutline(outline_, h, flangeWidth, s, t, 0.0);
    computeFromOutline();
    props_.Iw = channelIw(h, flangeWidth, s, t);
    channelLikeProperties(props_, h, flangeWidth, s, t, 0.0, false);
}

SDBSectionWZ::SDBSectionWZ(double h, double flangeWidth, double s, double t)
    : SDBSectionW(h, flangeWidth, s, t, SDBKey::WZ)
{
    setOverallSize(h, 2.0 * flangeWidth - s);
    zOutline(outline_, h, flangeWidth, s, t, 0.0);
    computeFromOutline();
    props_.Iw = zIw(h, flangeWidth, s, t);
    channelLikeProperties(props_, h, flangeWidth, s, t, 0.0, false);
}
