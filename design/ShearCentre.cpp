#include "ShearCentre.h"

#include <cmath>

namespace design {

SectionKind sectionKind(const SDBSection& section)
{
    const SDBSectionType* type = section.getType();
    if (!type) return SectionKind::Other;
    const std::string& key = type->getKey();
    if (key == SDBKey::I) return SectionKind::I;
    if (key == SDBKey::U) return SectionKind::U;
    if (key == SDBKey::T) return SectionKind::T;
    if (key == SDBKey::L) return SectionKind::L;
    if (key == SDBKey::Z) return SectionKind::Z;
    if (key == SDBKey::RH) return SectionKind::RH;
    if (key == SDBKey::O) return SectionKind::O;
    if (key == SDBKey::R) return SectionKind::R;
    if (key == SDBKey::Circle) return SectionKind::Circle;
    if (key == SDBKey::C) return SectionKind::C;
    if (key == SDBKey::WU) return SectionKind::WU;
    if (key == SDBKey::WZ) return SectionKind::WZ;
    return SectionKind::Other;
}

// Symmetric about z only: a tee, or an I section with unequal flanges.
bool monoSymmetric(SectionKind kind, const SDBSection& section)
{
    if (kind == SectionKind::T) return true;
    if (kind != SectionKind::I) return false;
    const auto* I = dynamic_cast<const SDBSectionI*>(&section);
    return I && (std::fabs(I->getB2() - I->getB()) > 1e-12 || std::fabs(I->getT2() - I->getT()) > 1e-12);
}

// The shear centre of the open kinds from their dimensions (thin-walled plates, fillets neglected), the
// centroid from the database (getEy, getEz: the true centroid with the fillets); a row without a centroid
// offset (0, not possible for these kinds) takes the plates' centroid.
//  - Doubly symmetric I, Z sections (point-symmetric): the centroid.
//  - I with unequal flanges: on the web axis, between the flanges' mid-planes at hs I2 / (I1 + I2) below
//    the top one, Ii = ti bi³ / 12, hs = h - t1 / 2 - t2 / 2 (the shear centre of two flanges joined by a
//    thin web); doubly symmetric: the centroid.
//  - Tee: the intersection of the flange's mid-plane with the stem (two plates meeting at a point).
//  - U, WU: beyond the web, e = 3 b'² tf / (6 b' tf + h' tw) from its centre line, b' = b - tw / 2,
//    h' = h - tf (the same b', h' as the database's Iw).
//  - C (lipped, one thickness t, centre line): e = b' t (3 a² b' + 6 c' a² - 8 c'³) / (12 I) from the
//    web's centre line, a = h - t, b' = b - t, c' = (h - t - c) / 2 the lip from the flange's centre line,
//    I = t (a³ / 12 + a² b' / 2 + c' a² / 2 - a c'² + 2 c'³ / 3) of the centre line about the axis of
//    symmetry (the shear flow of each plate's first moment; c' = 0 gives the channel's formula).
//  - Angles: the intersection of the legs' mid-lines (two plates meeting at a point), off both
//    principal axes of an unequal angle, on the axis of symmetry u of an equal one.
ShearCentre shearCentreOf(SectionKind kind, const SDBSection& s)
{
    ShearCentre c;
    switch (kind) {
    case SectionKind::I: {
        const auto* I = dynamic_cast<const SDBSectionI*>(&s);
        if (!I) {
            // No dimensions: doubly symmetric when the centroid lies at mid-height.
            c.known = s.getEz() == 0.0;
            return c;
        }
        if (!monoSymmetric(kind, s)) {
            c.known = true;
            return c;
        }
        const double h = I->getH(), b1 = I->getB(), t1 = I->getT(), tw = I->getS(), b2 = I->getB2(), t2 = I->getT2();
        const double I1 = t1 * b1 * b1 * b1 / 12.0, I2 = t2 * b2 * b2 * b2 / 12.0;
        if (!(I1 + I2 > 0.0)) return c;
        const double hs = h - 0.5 * t1 - 0.5 * t2;
        c.offset = -0.5 * h + 0.5 * t1 + hs * I2 / (I1 + I2);  // below mid-height
        c.centroid = s.getEz();
        if (c.centroid == 0.0) {
            const double hw = h - t1 - t2, A = b1 * t1 + b2 * t2 + tw * hw;
            c.centroid = (b1 * t1 * (0.5 * t1 - 0.5 * h) + tw * hw * 0.5 * (t1 - t2) + b2 * t2 * (0.5 * h - 0.5 * t2)) / A;
            c.plateCentroid = true;
        }
        c.axis = 'z';
        break;
    }
    case SectionKind::T: {
        const auto* T = dynamic_cast<const SDBSectionT*>(&s);
        if (!T) return c;
        const double h = T->getH(), b = T->getB(), tw = T->getS(), tf = T->getT();
        c.offset = 0.5 * tf;  // below the top of the flange
        c.centroid = s.getEz();
        if (c.centroid == 0.0) {
            const double A = b * tf + tw * (h - tf);
            c.centroid = (b * tf * 0.5 * tf + tw * (h - tf) * 0.5 * (h + tf)) / A;
            c.plateCentroid = true;
        }
        c.axis = 'z';
        break;
    }
    case SectionKind::U:
    case SectionKind::WU: {
        double h = 0.0, b = 0.0, tw = 0.0, tf = 0.0;
        if (const auto* U = dynamic_cast<const SDBSectionU*>(&s)) {
            h = U->getH(), b = U->getB(), tw = U->getS(), tf = U->getT();
        } else if (const auto* W = dynamic_cast<const SDBSectionW*>(&s)) {
            h = W->getH(), b = W->getFlangeWidth(), tw = W->getS(), tf = W->getT();
        } else {
            return c;
        }
        const double bp = b - 0.5 * tw, hp = h - tf;
        const double den = 6.0 * bp * tf + hp * tw;
        if (!(den > 0.0)) return c;
        // Measured from the back of the web towards the flanges' tips (-y in the database).
        c.offset = 0.5 * tw - 3.0 * bp * bp * tf / den;
        c.centroid = -s.getEy();
        if (c.centroid == 0.0) {
            const double hw = h - 2.0 * tf, A = 2.0 * b * tf + hw * tw;
            c.centroid = (b * tf * b + hw * tw * 0.5 * tw) / A;
            c.plateCentroid = true;
        }
        c.axis = 'y';
        break;
    }
    case SectionKind::C: {
        const auto* C = dynamic_cast<const SDBSectionC*>(&s);
        if (!C) return c;
        const double h = C->getH(), b = C->getB(), t = C->getT(), cl = 0.5 * (h - t - C->getC());
        const double a = h - t, bp = b - t;
        const double Ix = t * (a * a * a / 12.0 + 0.5 * a * a * bp + 0.5 * cl * a * a - a * cl * cl + 2.0 / 3.0 * cl * cl * cl);
        if (!(Ix > 0.0)) return c;
        const double e = bp * t * (3.0 * a * a * bp + 6.0 * cl * a * a - 8.0 * cl * cl * cl) / (12.0 * Ix);
        c.offset = 0.5 * t - e;
        c.centroid = -s.getEy();
        if (c.centroid == 0.0) {
            const double A = t * (a + 2.0 * bp + 2.0 * cl);
            c.centroid = 0.5 * t + t * (bp * bp + 2.0 * cl * bp) / A;
            c.plateCentroid = true;
        }
        c.axis = 'y';
        break;
    }
    case SectionKind::L: {
        const auto* L = dynamic_cast<const SDBSectionL*>(&s);
        if (!L) return c;
        // The database's reference is the heel's outer corner, the legs run to -y and -z from it and
        // (getEy, getEz) is the centroid from it: the legs' mid-lines meet at (-t / 2, -t / 2).
        c.ysc = -s.getEy() - 0.5 * L->getS();
        c.zsc = -s.getEz() - 0.5 * L->getS();
        c.axis = 'p';
        c.y0 = std::hypot(c.ysc, c.zsc);
        c.known = std::isfinite(c.y0);
        return c;
    }
    case SectionKind::Z:
    case SectionKind::WZ:
    case SectionKind::RH:
    case SectionKind::O:
    case SectionKind::R:
    case SectionKind::Circle:
        // Point-symmetric (Z) or doubly symmetric (tubes, solid sections): the shear centre is the centroid.
        c.known = true;
        return c;
    default: return c;
    }
    c.y0 = std::fabs(c.offset - c.centroid);
    c.known = std::isfinite(c.y0);
    if (c.axis == 'z') c.zsc = c.offset - c.centroid;  // z downwards from the centroid
    if (c.axis == 'y') c.ysc = c.centroid - c.offset;  // the formulas measure towards the flanges' tips, -y
    return c;
}

PrincipalAxes principalAxes(const SDBSection& section)
{
    const SDBProperties& p = section.getProperties();
    const double Iy = p.Iy, Iz = p.Iz, Iyz = p.Iyz;
    PrincipalAxes a;
    a.Iu = Iy;
    a.Iv = Iz;
    a.rotated = std::fabs(Iyz) > 1e-9 * (std::fabs(Iy) + std::fabs(Iz));
    if (!a.rotated) return a;
    // I about an axis at theta from y: Iy cos² + Iz sin² - 2 Iyz sin cos = mean + R cos(2 theta - phi),
    // largest at 2 theta = phi = atan2(-Iyz, (Iy - Iz) / 2).
    const double mean = 0.5 * (Iy + Iz), half = 0.5 * (Iy - Iz);
    const double R = std::sqrt(half * half + Iyz * Iyz);
    a.Iu = mean + R;
    a.Iv = mean - R;
    a.alpha = 0.5 * std::atan2(-Iyz, half);
    return a;
}

double PrincipalAxes::u(double y, double z) const { return y * std::cos(alpha) + z * std::sin(alpha); }
double PrincipalAxes::v(double y, double z) const { return -y * std::sin(alpha) + z * std::cos(alpha); }

SectionAxes sectionAxes(const SDBSection& section)
{
    SectionAxes a;
    a.principal = principalAxes(section);
    a.shearCentre = shearCentreOf(sectionKind(section), section);
    const SDBProperties& p = section.getProperties();
    if (a.shearCentre.known && p.A > 0.0)
        a.i0 = std::sqrt((p.Iy + p.Iz) / p.A + a.shearCentre.ysc * a.shearCentre.ysc +
                         a.shearCentre.zsc * a.shearCentre.zsc);
    return a;
}

double SectionAxes::alphaDegrees() const { return principal.alpha * 180.0 / 3.14159265358979323846; }

} // namespace design
