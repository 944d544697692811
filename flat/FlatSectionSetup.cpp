// Section set-up, stress points, point stresses and the stress evaluation of the flat path.
//
// The section is modelled from its plates (thin rectangles, root radii and welds only shorten the
// compressed widths c of the classification); the section properties themselves (A, I, W, It, Iw) are the
// caller's values and are never recomputed. Coordinates are in mm relative to the centroid, z downwards.

#include "FlatInternal.h"

#include <algorithm>
#include <cmath>

namespace SteelDesign::Flat {
namespace {

constexpr double kTiny = 1e-30;
constexpr double kPi = 3.14159265358979323846;

double divide(double a, double b) { return std::fabs(b) > kTiny ? a / b : 0.0; }

void addPlate(SetupBlock& s, double y1, double z1, double y2, double z2, double c, double t, int type, int axisSwitch,
              int parallel)
{
    if (s.plateCount >= kMaxPlates) return;
    Plate& p = s.plates[s.plateCount++];
    p = Plate{};
    p.y1 = y1;
    p.z1 = z1;
    p.y2 = y2;
    p.z2 = z2;
    p.c = std::max(c, 0.0);
    p.t = t;
    p.type = type;
    p.axisSwitch = axisSwitch;
    p.parallel = parallel;
}

// Yield and ultimate strength for the governing thickness (EN 1993-1-1 Table 3.1 by thickness ranges):
// the first segment with t_from < t <= t_to; when no segment holds t, the segment with the smallest fy.
void selectMaterial(const ControlBlock& control, double t, SetupBlock& s)
{
    int chosen = -1;
    for (int j = 0; j < control.segmentCount && j < kMaxSegments; ++j) {
        if (t > control.segments[j][0] && t <= control.segments[j][1]) {
            chosen = j;
            break;
        }
    }
    if (chosen < 0) {
        for (int j = 0; j < control.segmentCount && j < kMaxSegments; ++j)
            if (chosen < 0 || control.segments[j][2] < control.segments[chosen][2]) chosen = j;
    }
    if (chosen >= 0) {
        s.fy = control.segments[chosen][2];
        s.fu = control.segments[chosen][3];
    }
}

void setUpIKind(const SectionBlock& sec, SetupBlock& s)
{
    const int kind = sec.kind;
    const double* d = sec.dims;
    s.h = d[0];
    s.b1 = d[1];
    s.tw = d[2];
    s.tf1 = d[3];
    s.b2 = (kind == 8 || kind == 10) ? d[13] : s.b1;
    s.tf2 = (kind == 8 || kind == 9) ? d[14] : s.tf1;
    s.r = isRolledKind(kind) ? std::max(d[4], 0.0) : 0.0;
    s.weld = isRolledKind(kind) ? 0.0 : std::max(d[6], 0.0);
    s.hw = s.h - s.tf1 - s.tf2;

    const double A1 = s.b1 * s.tf1, Aw = s.hw * s.tw, A2 = s.b2 * s.tf2;
    const double zc = divide(A1 * s.tf1 / 2 + Aw * (s.tf1 + s.hw / 2) + A2 * (s.h - s.tf2 / 2), A1 + Aw + A2);
    s.zTop = -zc;
    s.zBottom = s.h - zc;
    // shear centre between the flange mid-lines, in the ratio of the flanges' own second moments
    const double zf1 = s.tf1 / 2, zf2 = s.h - s.tf2 / 2;
    const double I1 = s.tf1 * s.b1 * s.b1 * s.b1, I2 = s.tf2 * s.b2 * s.b2 * s.b2;
    s.zShear = zf1 + (zf2 - zf1) * divide(I2, I1 + I2) - zc;
    s.yRight = std::max(s.b1, s.b2) / 2;
    s.yLeft = -s.yRight;

    const double cWeb = s.hw - 2 * s.r - 2 * std::sqrt(2.0) * s.weld;
    const double wTop = s.zTop + s.tf1, wBot = s.zBottom - s.tf2;
    addPlate(s, 0, wTop, 0, wBot, cWeb, s.tw, kInternal, 0, 1);
    const double c1 = (s.b1 - s.tw) / 2 - s.r - std::sqrt(2.0) * s.weld;
    const double c2 = (s.b2 - s.tw) / 2 - s.r - std::sqrt(2.0) * s.weld;
    const double root = s.tw / 2;
    addPlate(s, root, s.zTop, s.b1 / 2, s.zTop, c1, s.tf1, kOutstand, 1, 1);
    addPlate(s, -root, s.zTop, -s.b1 / 2, s.zTop, c1, s.tf1, kOutstand, 1, 1);
    addPlate(s, root, s.zBottom, s.b2 / 2, s.zBottom, c2, s.tf2, kOutstand, 1, 1);
    addPlate(s, -root, s.zBottom, -s.b2 / 2, s.zBottom, c2, s.tf2, kOutstand, 1, 1);

    if (s.Avz <= 0.0) {
        const double avz = s.A * 1e6 - A1 - A2 + (s.tw + 2 * s.r) * (s.tf1 + s.tf2) / 2;
        s.Avz = std::max(avz, s.hw * s.tw) * 1e-6;
    }
    if (s.Avy <= 0.0) s.Avy = (A1 + A2) * 1e-6;
    if (kind != 8) s.zM = std::fabs(s.zShear) * 1e-3;
}

void setUpTee(const SectionBlock& sec, SetupBlock& s)
{
    const double* d = sec.dims;
    s.h = d[0];
    s.b1 = d[1];
    s.tw = d[2];
    s.tf1 = d[3];
    s.r = std::max(d[4], 0.0);
    s.b2 = 0;
    s.tf2 = 0;
    s.hw = s.h - s.tf1;
    const double A1 = s.b1 * s.tf1, Aw = s.hw * s.tw;
    const double zc = divide(A1 * s.tf1 / 2 + Aw * (s.tf1 + s.hw / 2), A1 + Aw);
    s.zTop = -zc;
    s.zBottom = s.h - zc;
    s.zShear = s.tf1 / 2 - zc;
    s.yRight = s.b1 / 2;
    s.yLeft = -s.yRight;
    const double c1 = (s.b1 - s.tw) / 2 - s.r;
    addPlate(s, s.tw / 2, s.zTop, s.b1 / 2, s.zTop, c1, s.tf1, kOutstand, 1, 1);
    addPlate(s, -s.tw / 2, s.zTop, -s.b1 / 2, s.zTop, c1, s.tf1, kOutstand, 1, 1);
    addPlate(s, 0, s.zTop + s.tf1, 0, s.zBottom, s.hw - s.r, s.tw, kOutstand, 0, 1);
    if (s.Avz <= 0.0) s.Avz = s.h * s.tw * 1e-6;
    if (s.Avy <= 0.0) s.Avy = A1 * 1e-6;
}

// Angle: vertical leg h on the left, horizontal leg b at the bottom, heel at the bottom left.
void setUpAngle(const SectionBlock& sec, SetupBlock& s)
{
    const double* d = sec.dims;
    s.h = d[0];
    s.b1 = d[1];
    s.tw = d[2];
    s.tf1 = d[2];
    const double t = s.tw;
    const double Av = s.h * t, Ah = (s.b1 - t) * t;
    const double yc = divide(Av * t / 2 + Ah * (t + (s.b1 - t) / 2), Av + Ah);
    const double zc = divide(Av * s.h / 2 + Ah * (s.h - t / 2), Av + Ah);
    s.zTop = -zc;
    s.zBottom = s.h - zc;
    s.yLeft = -yc;
    s.yRight = s.b1 - yc;
    const double heelY = t / 2 - yc, heelZ = s.h - t / 2 - zc; // crossing of the leg mid-lines (shear centre)
    s.zShear = heelZ;
    s.zM = std::sqrt(heelY * heelY + heelZ * heelZ) * 1e-3;
    addPlate(s, heelY, heelZ, heelY, s.zTop, s.h - t, t, kOutstand, 0, 1);
    addPlate(s, heelY, heelZ, s.yRight, heelZ, s.b1 - t, t, kOutstand, 1, 1);
    if (s.Avz <= 0.0) s.Avz = s.h * t * 1e-6;
    if (s.Avy <= 0.0) s.Avy = s.b1 * t * 1e-6;
}

void setUpHollow(const SectionBlock& sec, SetupBlock& s)
{
    const double* d = sec.dims;
    s.h = d[0];
    s.b1 = d[1];
    s.tw = d[2];
    s.tf1 = d[3];
    s.zTop = -s.h / 2;
    s.zBottom = s.h / 2;
    s.yRight = s.b1 / 2;
    s.yLeft = -s.b1 / 2;
    if (sec.kind == 21) {
        const double t = s.tw, D = s.h;
        s.Am = kPi * (D - t) * (D - t) / 4;
        if (s.Avz <= 0.0) s.Avz = 2 * s.A / kPi;
        if (s.Avy <= 0.0) s.Avy = 2 * s.A / kPi;
        return;
    }
    s.hw = s.h - 2 * s.tf1;
    s.Am = (s.b1 - s.tw) * (s.h - s.tf1);
    // c = h - 3t and b - 3t (EN 1993-1-1 Table 5.2, closed sections with unknown corner radius)
    const double yw = s.b1 / 2 - s.tw / 2, zf = s.h / 2 - s.tf1 / 2;
    addPlate(s, yw, s.zTop + s.tf1, yw, s.zBottom - s.tf1, s.h - 3 * s.tf1, s.tw, kInternal, 0, 2);
    addPlate(s, -yw, s.zTop + s.tf1, -yw, s.zBottom - s.tf1, s.h - 3 * s.tf1, s.tw, kInternal, 0, 2);
    addPlate(s, s.yLeft + s.tw, -zf - s.tf1 / 2, s.yRight - s.tw, -zf - s.tf1 / 2, s.b1 - 3 * s.tw, s.tf1, kInternal, 1, 2);
    addPlate(s, s.yLeft + s.tw, zf + s.tf1 / 2, s.yRight - s.tw, zf + s.tf1 / 2, s.b1 - 3 * s.tw, s.tf1, kInternal, 1, 2);
    if (s.Avz <= 0.0) s.Avz = s.A * s.h / (s.b1 + s.h);
    if (s.Avy <= 0.0) s.Avy = s.A * s.b1 / (s.b1 + s.h);
}

} // namespace

bool isIKind(int kind) { return kind == 1 || kind == 2 || kind == 3 || kind == 8 || kind == 9 || kind == 10; }
bool isWarpingKind(int kind) { return kind == 1 || kind == 2 || kind == 3 || kind == 10; }
bool isRolledKind(int kind) { return kind == 1 || kind == 2; }
bool isHollowKind(int kind) { return kind == 20 || kind == 21; }
bool isAngleKind(int kind) { return kind == 15 || kind == 16; }

void clearControlBlock(ControlBlock& b) { b = ControlBlock{}; }
void clearSectionBlock(SectionBlock& b) { b = SectionBlock{}; }
void clearStressPointBlock(StressPointBlock& b) { b = StressPointBlock{}; }
void clearMemberBlock(MemberBlock& b) { b = MemberBlock{}; }

void setUpSection(const ControlBlock& control, const SectionBlock& section, SetupBlock& s)
{
    s = SetupBlock{};
    // the caller's section values are in cm units: A, Av cm^2; I, It cm^4; W cm^3; Iw cm^6; zM cm
    const double* p = section.props;
    s.A = p[1] * 1e-4;
    s.Iy = p[2] * 1e-8;
    s.Iz = p[3] * 1e-8;
    s.It = p[4] * 1e-8;
    s.Wely = p[6] * 1e-6;
    s.Wply = p[7] * 1e-6;
    s.Welz = p[8] * 1e-6;
    s.Wplz = p[9] * 1e-6;
    s.Iw = p[11] * 1e-12;
    s.Avz = p[12] * 1e-4;
    s.Avy = p[13] * 1e-4;
    s.zM = (section.kind == 8 || section.kind == 11) ? p[19] * 1e-2 : 0.0;
    s.tGov = section.dims[7];
    s.kind = section.kind;

    selectMaterial(control, s.tGov, s);
    s.fyd = divide(s.fy, control.gammaM0);
    s.eps = s.fy > 0.0 ? std::sqrt(235.0 / s.fy) : 0.0;

    const int kind = section.kind;
    if (isIKind(kind))
        setUpIKind(section, s);
    else if (kind == 11)
        setUpTee(section, s);
    else if (isAngleKind(kind))
        setUpAngle(section, s);
    else if (isHollowKind(kind))
        setUpHollow(section, s);
}

StressPoint locatePoint(const SetupBlock& s, int kind, double y, double z)
{
    StressPoint p;
    p.y = y;
    p.z = z;
    if (isIKind(kind) || kind == 11) {
        const bool bottomFlange = kind != 11 && z >= s.zBottom - s.tf2;
        if (z <= s.zTop + s.tf1 || bottomFlange) {
            const bool top = !bottomFlange;
            p.part = kPartFlange;
            p.t = top ? s.tf1 : s.tf2;
            p.flangeWidth = top ? s.b1 : s.b2;
            p.flangeDepth = s.h - s.tf1 / 2 - s.tf2 / 2;
            // sectorial coordinate about the shear centre: y times the flange's distance from it
            const double zFlange = top ? s.zTop + s.tf1 / 2 : s.zBottom - s.tf2 / 2;
            p.omega = y * (zFlange - s.zShear) * 1e-6;
        } else {
            p.part = kPartWeb;
            p.t = s.tw;
        }
    } else if (isAngleKind(kind)) {
        const bool verticalLeg = y <= s.yLeft + s.tw;
        p.part = verticalLeg ? kPartWeb : kPartFlange;
        p.t = s.tw;
    } else if (kind == 20) {
        const bool side = std::fabs(y) >= s.b1 / 2 - s.tw;
        const bool cap = std::fabs(z) >= s.h / 2 - s.tf1;
        p.part = side && cap ? kPartBoth : (side ? kPartWeb : kPartFlange);
        p.t = side ? s.tw : s.tf1;
    } else {
        p.part = kPartBoth;
        p.t = s.tw;
    }
    return p;
}

int setUpStressPoints(const SetupBlock& s, int kind, int loadCount, StressPointBlock& b)
{
    b.loadCount = loadCount > 0 ? loadCount : 0;
    b.sectionCount = 0;
    double yz[kMaxSectionPoints][2] = {};
    int n = 0;
    auto add = [&](double y, double z) {
        if (n < kMaxSectionPoints) {
            yz[n][0] = y;
            yz[n][1] = z;
            ++n;
        }
    };
    if (isIKind(kind)) {
        add(-s.b1 / 2, s.zTop);
        add(0, s.zTop);
        add(s.b1 / 2, s.zTop);
        add(0, s.zTop + s.tf1);
        add(0, 0);
        add(0, s.zBottom - s.tf2);
        add(-s.b2 / 2, s.zBottom);
        add(0, s.zBottom);
        add(s.b2 / 2, s.zBottom);
    } else if (kind == 11) {
        add(-s.b1 / 2, s.zTop);
        add(0, s.zTop);
        add(s.b1 / 2, s.zTop);
        add(0, s.zTop + s.tf1);
        add(0, s.zBottom);
    } else if (isAngleKind(kind)) {
        add(s.yLeft, s.zTop);
        add(s.yLeft + s.tw, s.zTop);
        add(s.yLeft, s.zBottom);
        add(s.yRight, s.zBottom);
        add(s.yRight, s.zBottom - s.tw);
    } else if (kind == 20) {
        for (double z : {s.zTop, 0.0, s.zBottom})
            for (double y : {s.yLeft, 0.0, s.yRight})
                if (y != 0.0 || z != 0.0) add(y, z);
    } else if (kind == 21) {
        const double R = s.h / 2;
        for (int k = 0; k < 8; ++k) add(R * std::cos(k * kPi / 4), R * std::sin(k * kPi / 4));
    }
    if (!s.sectionPointsOff) {
        for (int k = 0; k < n; ++k) b.points[k] = locatePoint(s, kind, yz[k][0], yz[k][1]);
        b.sectionCount = n;
    }
    return b.sectionCount + b.loadCount;
}

double pointStress(const SetupBlock& s, const StressPoint& p, const Actions& a)
{
    // kN/m^2 from the actions, times 0.001 for N/mm^2
    const double y = p.y * 1e-3, z = p.z * 1e-3;
    double sigma = divide(a.N, s.A) + divide(a.My * z, s.Iy) - divide(a.Mz * y, s.Iz);
    if (a.B != 0.0) sigma += divide(a.B * p.omega, s.Iw);
    return sigma * 1e-3;
}

double pointShearFromForces(const SetupBlock& s, const StressPoint& p, const Actions& a)
{
    if (s.shearOff) return 0.0;
    const double tz = divide(std::fabs(a.Vz), s.Avz) * 1e-3;
    const double ty = divide(std::fabs(a.Vy), s.Avy) * 1e-3;
    if (p.part == kPartWeb) return tz;
    if (p.part == kPartFlange) return ty;
    return std::sqrt(tz * tz + ty * ty);
}

double pointShearFromTorsion(const SetupBlock& s, int kind, const StressPoint& p, const Actions& a)
{
    if (s.shearOff) return 0.0;
    double tau = 0.0;
    if (isHollowKind(kind)) {
        // Bredt: tau = Mt / (2 Am t)
        tau = divide(std::fabs(a.Mt), 2 * s.Am * 1e-6 * p.t * 1e-3) * 1e-3;
    } else {
        // St. Venant: tau = Mt t / It
        tau = divide(std::fabs(a.Mt) * p.t * 1e-3, s.It) * 1e-3;
    }
    if (a.Mw != 0.0 && isWarpingKind(kind) && p.part == kPartFlange && p.flangeWidth > 0.0) {
        // warping torsion: flange shear force Mw / hf, parabolic over the flange width, 1.5 times the mean
        const double b = p.flangeWidth, ratio = 2 * p.y / b;
        const double shape = std::max(0.0, 1.0 - ratio * ratio);
        tau += divide(1.5 * std::fabs(a.Mw), p.flangeDepth * b * p.t * 1e-9) * 1e-3 * shape;
    }
    return tau;
}

void evaluateStresses(SetupBlock& s, StressPointBlock& b, const Actions& a, int axisSwitch)
{
    for (int i = 0; i < s.plateCount; ++i) {
        Plate& pl = s.plates[i];
        if (pl.axisSwitch != axisSwitch) continue;
        pl.sigma1 = pointStress(s, locatePoint(s, s.kind, pl.y1, pl.z1), a);
        pl.sigma2 = pointStress(s, locatePoint(s, s.kind, pl.y2, pl.z2), a);
        b.limit[axisSwitch] = std::min({b.limit[axisSwitch], pl.sigma1, pl.sigma2});
    }
}

} // namespace SteelDesign::Flat
