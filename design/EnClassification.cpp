#include "EnClassification.h"

#include <SDBSectionVisitor.h>

#include <algorithm>
#include <cmath>

namespace design {

const char* toString(EnKind kind)
{
    switch (kind) {
    case EnKind::I: return "I";
    case EnKind::U: return "U";
    case EnKind::Z: return "Z";
    case EnKind::T: return "T";
    case EnKind::L: return "L";
    case EnKind::RH: return "RH";
    case EnKind::O: return "O";
    case EnKind::C: return "C";
    case EnKind::R: return "R";
    case EnKind::Circle: return "Circle";
    case EnKind::None: break;
    }
    return "none";
}

namespace {

constexpr double pi = 3.14159265358979323846;
// A root fillet of radius r has the area (1 - pi/4) r²: a square of side sqrt(1 - pi/4) r in the corner.
const double filletSide = std::sqrt(1.0 - pi / 4.0);

class KindVisitor final : public SDBSectionVisitor {
public:
    EnKind kind = EnKind::None;
    SDBSection* section = nullptr;
    bool welded = false;  // WU, WZ

    int visit(SDBSectionZ* s) override { return set(EnKind::Z, s); }
    int visit(SDBSectionWZ* s) override { welded = true; return set(EnKind::Z, s); }
    int visit(SDBSectionWU* s) override { welded = true; return set(EnKind::U, s); }
    int visit(SDBSectionU* s) override { return set(EnKind::U, s); }
    int visit(SDBSectionT* s) override { return set(EnKind::T, s); }
    int visit(SDBSectionRH* s) override { return set(EnKind::RH, s); }
    int visit(SDBSectionR* s) override { return set(EnKind::R, s); }
    int visit(SDBSectionO* s) override { return set(EnKind::O, s); }
    int visit(SDBSectionL* s) override { return set(EnKind::L, s); }
    int visit(SDBSectionI* s) override { return set(EnKind::I, s); }
    int visit(SDBSectionCircle* s) override { return set(EnKind::Circle, s); }
    int visit(SDBSectionC* s) override { return set(EnKind::C, s); }
    int visit(SDBSectionUpstandBeam*) override { return 0; }
    int visit(SDBSectionThick*) override { return 0; }
    int visit(SDBSectionSpring*) override { return 0; }
    int visit(SDBSectionPolygon*) override { return 0; }
    int visit(SDBSectionIX*) override { return 0; }
    int visit(SDBSectionDownstandBeam*) override { return 0; }
    int visit(SDBSectionBeamPoly*) override { return 0; }
    int visit(SDBSectionAsPoint*) override { return 0; }
    int visit(SDBSectionAsLine*) override { return 0; }

private:
    int set(EnKind k, SDBSection* s)
    {
        kind = k;
        section = s;
        return 1;
    }
};

void addRect(EnSectionModel& m, double ya, double yb, double za, double zb, std::uint8_t area)
{
    const double y0 = std::min(ya, yb), y1 = std::max(ya, yb), z0 = std::min(za, zb), z1 = std::max(za, zb);
    if (!(y1 > y0) || !(z1 > z0) || m.rectCount >= enMaxRects) return;
    m.rects[static_cast<std::size_t>(m.rectCount++)] = EnRect{y0, y1, z0, z1, area};
}

// The fillet of radius r in the re-entrant corner (y, z), filling towards dy, dz (+1 or -1).
void addFillet(EnSectionModel& m, double y, double z, double dy, double dz, double r)
{
    if (!(r > 0.0)) return;
    const double s = filletSide * r;
    addRect(m, y, y + dy * s, z, z + dz * s, ShearAreaNone);
}

void addPlate(EnSectionModel& m, const char* name, bool internal, bool alongY, double c, double t, double y1, double z1,
              double y2, double z2, double mid)
{
    if (!(c > 0.0) || !(t > 0.0) || m.plateCount >= enMaxPlates) return;
    m.plates[static_cast<std::size_t>(m.plateCount++)] = EnPlate{name, internal, alongY, c, t, y1, z1, y2, z2, mid};
}

void addThickness(EnSectionModel& m, double t)
{
    if (m.thicknessCount < static_cast<int>(m.thicknesses.size()) && t > 0.0)
        m.thicknesses[static_cast<std::size_t>(m.thicknessCount++)] = t;
}

void buildI(EnSectionModel& m, const SDBSectionI& s)
{
    const double h = s.getH(), b1 = s.getB(), b2 = s.getB2(), tw = s.getS(), t1 = s.getT(), t2 = s.getT2();
    const double r = s.getR1();
    const double y0 = -s.getProperties().ey, zTop = -h / 2.0 - s.getProperties().ez, zBot = h / 2.0 - s.getProperties().ez;
    m.h = h, m.b = b1, m.b2 = b2, m.tw = tw, m.tf = t1, m.tf2 = t2, m.r = r, m.hw = h - t1 - t2;
    m.doublySymmetricI = std::fabs(b1 - b2) <= 1e-12 * b1 && std::fabs(t1 - t2) <= 1e-12 * t1;
    m.size = std::max({h, b1, b2});
    addThickness(m, tw);
    addThickness(m, t1);
    addThickness(m, t2);
    addRect(m, y0 - b1 / 2.0, y0 + b1 / 2.0, zTop, zTop + t1, ShearAreaY);
    addRect(m, y0 - b2 / 2.0, y0 + b2 / 2.0, zBot - t2, zBot, ShearAreaY);
    addRect(m, y0 - tw / 2.0, y0 + tw / 2.0, zTop + t1, zBot - t2, ShearAreaZ);
    addFillet(m, y0 + tw / 2.0, zTop + t1, 1.0, 1.0, r);
    addFillet(m, y0 - tw / 2.0, zTop + t1, -1.0, 1.0, r);
    addFillet(m, y0 + tw / 2.0, zBot - t2, 1.0, -1.0, r);
    addFillet(m, y0 - tw / 2.0, zBot - t2, -1.0, -1.0, r);
    addPlate(m, "web", true, false, h - t1 - t2 - 2.0 * r, tw, y0, zTop + t1 + r, y0, zBot - t2 - r, y0);
    const double c1 = (b1 - tw - 2.0 * r) / 2.0, c2 = (b2 - tw - 2.0 * r) / 2.0, root = tw / 2.0 + r;
    const double zm1 = zTop + t1 / 2.0, zm2 = zBot - t2 / 2.0;
    addPlate(m, "top flange, outstand y > 0", false, true, c1, t1, y0 + root, zm1, y0 + b1 / 2.0, zm1, zm1);
    addPlate(m, "top flange, outstand y < 0", false, true, c1, t1, y0 - root, zm1, y0 - b1 / 2.0, zm1, zm1);
    addPlate(m, "bottom flange, outstand y > 0", false, true, c2, t2, y0 + root, zm2, y0 + b2 / 2.0, zm2, zm2);
    addPlate(m, "bottom flange, outstand y < 0", false, true, c2, t2, y0 - root, zm2, y0 - b2 / 2.0, zm2, zm2);
}

// Channels: web back at y = -ey, flanges towards -y.
void buildChannel(EnSectionModel& m, double h, double b, double tw, double tf, double r, double ey, double ez)
{
    const double yb = -ey, zTop = -h / 2.0 - ez, zBot = h / 2.0 - ez;
    m.h = h, m.b = b, m.b2 = b, m.tw = tw, m.tf = tf, m.tf2 = tf, m.r = r, m.hw = h - 2.0 * tf;
    m.size = std::max(h, b);
    addThickness(m, tw);
    addThickness(m, tf);
    addRect(m, yb - b, yb, zTop, zTop + tf, ShearAreaY);
    addRect(m, yb - b, yb, zBot - tf, zBot, ShearAreaY);
    addRect(m, yb - tw, yb, zTop + tf, zBot - tf, ShearAreaZ);
    addFillet(m, yb - tw, zTop + tf, -1.0, 1.0, r);
    addFillet(m, yb - tw, zBot - tf, -1.0, -1.0, r);
    const double yw = yb - tw / 2.0;
    addPlate(m, "web", true, false, h - 2.0 * tf - 2.0 * r, tw, yw, zTop + tf + r, yw, zBot - tf - r, yw);
    const double c = b - tw - r, zm1 = zTop + tf / 2.0, zm2 = zBot - tf / 2.0;
    addPlate(m, "top flange, outstand", false, true, c, tf, yb - tw - r, zm1, yb - b, zm1, zm1);
    addPlate(m, "bottom flange, outstand", false, true, c, tf, yb - tw - r, zm2, yb - b, zm2, zm2);
}

// Z sections: web centred on the centroid, the top flange towards +y, the bottom one towards -y; b from the
// web back to the tip.
void buildZ(EnSectionModel& m, double h, double b, double tw, double tf, double r, double ey, double ez)
{
    const double y0 = -ey, zTop = -h / 2.0 - ez, zBot = h / 2.0 - ez;
    m.h = h, m.b = b, m.b2 = b, m.tw = tw, m.tf = tf, m.tf2 = tf, m.r = r, m.hw = h - 2.0 * tf;
    m.size = std::max(h, 2.0 * b - tw);
    addThickness(m, tw);
    addThickness(m, tf);
    addRect(m, y0 - tw / 2.0, y0 + b - tw / 2.0, zTop, zTop + tf, ShearAreaY);
    addRect(m, y0 - b + tw / 2.0, y0 + tw / 2.0, zBot - tf, zBot, ShearAreaY);
    addRect(m, y0 - tw / 2.0, y0 + tw / 2.0, zTop + tf, zBot - tf, ShearAreaZ);
    addFillet(m, y0 + tw / 2.0, zTop + tf, 1.0, 1.0, r);
    addFillet(m, y0 - tw / 2.0, zBot - tf, -1.0, -1.0, r);
    addPlate(m, "web", true, false, h - 2.0 * tf - 2.0 * r, tw, y0, zTop + tf + r, y0, zBot - tf - r, y0);
    const double c = b - tw - r, zm1 = zTop + tf / 2.0, zm2 = zBot - tf / 2.0;
    addPlate(m, "top flange, outstand", false, true, c, tf, y0 + tw / 2.0 + r, zm1, y0 + b - tw / 2.0, zm1, zm1);
    addPlate(m, "bottom flange, outstand", false, true, c, tf, y0 - tw / 2.0 - r, zm2, y0 - b + tw / 2.0, zm2, zm2);
}

void buildT(EnSectionModel& m, const SDBSectionT& s)
{
    const double h = s.getH(), b = s.getB(), tw = s.getS(), tf = s.getT(), r = s.getR1();
    const double y0 = -s.getEy(), zTop = -s.getEz();
    m.h = h, m.b = b, m.tw = tw, m.tf = tf, m.r = r, m.hw = h - tf;
    m.size = std::max(h, b);
    addThickness(m, tw);
    addThickness(m, tf);
    addRect(m, y0 - b / 2.0, y0 + b / 2.0, zTop, zTop + tf, ShearAreaY);
    addRect(m, y0 - tw / 2.0, y0 + tw / 2.0, zTop + tf, zTop + h, ShearAreaZ);
    addFillet(m, y0 + tw / 2.0, zTop + tf, 1.0, 1.0, r);
    addFillet(m, y0 - tw / 2.0, zTop + tf, -1.0, 1.0, r);
    const double c = (b - tw - 2.0 * r) / 2.0, root = tw / 2.0 + r, zm = zTop + tf / 2.0;
    addPlate(m, "flange, outstand y > 0", false, true, c, tf, y0 + root, zm, y0 + b / 2.0, zm, zm);
    addPlate(m, "flange, outstand y < 0", false, true, c, tf, y0 - root, zm, y0 - b / 2.0, zm, zm);
    addPlate(m, "stem, outstand", false, false, h - tf - r, tw, y0, zTop + tf + r, y0, zTop + h, y0);
}

// Angles: heel at (-ey, -ez), the legs towards -y and -z; the leg along z (length h) keeps the corner.
void buildL(EnSectionModel& m, const SDBSectionL& s)
{
    const double h = s.getH(), b = s.getB(), t = s.getS(), r = s.getR1();
    const double yh = -s.getEy(), zh = -s.getEz();
    m.h = h, m.b = b, m.t = t, m.tw = t, m.tf = t, m.r = r, m.hw = h - t;
    m.size = std::max(h, b);
    addThickness(m, t);
    addRect(m, yh - t, yh, zh - h, zh, ShearAreaZ);
    addRect(m, yh - b, yh - t, zh - t, zh, ShearAreaY);
    addFillet(m, yh - t, zh - t, -1.0, -1.0, r);
    const double yl = yh - t / 2.0, zl = zh - t / 2.0;
    addPlate(m, "leg along z, outstand", false, false, h - t - r, t, yl, zh - t - r, yl, zh - h, yl);
    addPlate(m, "leg along y, outstand", false, true, b - t - r, t, yh - t - r, zl, yh - b, zl, zl);
}

void buildRH(EnSectionModel& m, const SDBSectionRH& s)
{
    const double h = s.getH(), b = s.getB(), tw = s.getS(), tf = s.getT(), r1 = s.getR1();
    const double y0 = -s.getEy(), z0 = -s.getEz();
    m.h = h, m.b = b, m.tw = tw, m.tf = tf, m.tf2 = tf, m.r = r1, m.hw = h - 2.0 * tf;
    m.size = std::max(h, b);
    // Mid-line enclosed area with the corners as the database rounds them (EN 10210-2 / 10219-2).
    const double wall = std::max(tw, tf);
    const double ri = std::max(0.0, s.isHotRolled() ? r1 - wall / 2.0 : r1 - wall);
    const double Rc = (r1 + ri) / 2.0;
    m.Am = (b - tw) * (h - tf) - Rc * Rc * (4.0 - pi);
    addThickness(m, tw);
    addThickness(m, tf);
    addRect(m, y0 + b / 2.0 - tw, y0 + b / 2.0, z0 - h / 2.0, z0 + h / 2.0, ShearAreaZ);
    addRect(m, y0 - b / 2.0, y0 - b / 2.0 + tw, z0 - h / 2.0, z0 + h / 2.0, ShearAreaZ);
    addRect(m, y0 - b / 2.0 + tw, y0 + b / 2.0 - tw, z0 - h / 2.0, z0 - h / 2.0 + tf, ShearAreaY);
    addRect(m, y0 - b / 2.0 + tw, y0 + b / 2.0 - tw, z0 + h / 2.0 - tf, z0 + h / 2.0, ShearAreaY);
    const bool tube = r1 > 0.0;
    const double cw = tube ? h - 3.0 * tw : h - 2.0 * tf;
    const double cf = tube ? b - 3.0 * tf : b - 2.0 * tw;
    const double yw = b / 2.0 - tw / 2.0, zf = h / 2.0 - tf / 2.0;
    addPlate(m, "web y > 0", true, false, cw, tw, y0 + yw, z0 - cw / 2.0, y0 + yw, z0 + cw / 2.0, y0 + yw);
    addPlate(m, "web y < 0", true, false, cw, tw, y0 - yw, z0 - cw / 2.0, y0 - yw, z0 + cw / 2.0, y0 - yw);
    addPlate(m, "top flange", true, true, cf, tf, y0 - cf / 2.0, z0 - zf, y0 + cf / 2.0, z0 - zf, z0 - zf);
    addPlate(m, "bottom flange", true, true, cf, tf, y0 - cf / 2.0, z0 + zf, y0 + cf / 2.0, z0 + zf, z0 + zf);
}

void buildC(EnSectionModel& m, const SDBSectionC& s)
{
    const double h = s.getH(), b = s.getB(), t = s.getT(), lips = s.getC();
    const double yb = -s.getEy(), zc = -s.getEz();
    const double zTop = zc - h / 2.0, zBot = zc + h / 2.0;
    m.h = h, m.b = b, m.t = t, m.tw = t, m.tf = t, m.tf2 = t, m.hw = h - 2.0 * t;
    m.size = std::max(h, b);
    addThickness(m, t);
    addRect(m, yb - t, yb, zTop, zBot, ShearAreaZ);
    addRect(m, yb - b, yb - t, zTop, zTop + t, ShearAreaY);
    addRect(m, yb - b, yb - t, zBot - t, zBot, ShearAreaY);
    addRect(m, yb - b, yb - b + t, zTop + t, zc - lips / 2.0, ShearAreaNone);
    addRect(m, yb - b, yb - b + t, zc + lips / 2.0, zBot - t, ShearAreaNone);
    const double yw = yb - t / 2.0, yl = yb - b + t / 2.0;
    addPlate(m, "web", true, false, h - 2.0 * t, t, yw, zTop + t, yw, zBot - t, yw);
    addPlate(m, "top flange", true, true, b - 2.0 * t, t, yb - t, zTop + t / 2.0, yb - b + t, zTop + t / 2.0,
             zTop + t / 2.0);
    addPlate(m, "bottom flange", true, true, b - 2.0 * t, t, yb - t, zBot - t / 2.0, yb - b + t, zBot - t / 2.0,
             zBot - t / 2.0);
    const double cl = (h - lips) / 2.0 - t;
    addPlate(m, "top lip, outstand", false, false, cl, t, yl, zTop + t, yl, zc - lips / 2.0, yl);
    addPlate(m, "bottom lip, outstand", false, false, cl, t, yl, zBot - t, yl, zc + lips / 2.0, yl);
}

} // namespace

void buildEnSectionModel(SDBSection& section, EnSectionModel& m)
{
    m.kind = EnKind::None;
    m.rolled = m.doublySymmetricI = false;
    m.h = m.b = m.b2 = m.tw = m.tf = m.tf2 = m.r = m.hw = m.d = m.t = m.Am = m.size = 0.0;
    m.thicknessCount = m.rectCount = m.plateCount = 0;
    const SDBProperties& p = section.getProperties();
    if (!(p.A > 0.0) || !(p.Iy > 0.0) || !(p.Iz > 0.0)) return;
    KindVisitor v;
    if (section.accept(&v) == 0 || !v.section) return;
    m.rolled = section.isRolled();
    switch (v.kind) {
    case EnKind::I: buildI(m, *static_cast<SDBSectionI*>(v.section)); break;
    case EnKind::U:
        if (v.welded) {
            const auto& w = *static_cast<SDBSectionWU*>(v.section);
            buildChannel(m, w.getH(), w.getFlangeWidth(), w.getS(), w.getT(), 0.0, w.getEy(), w.getEz());
        } else {
            const auto& u = *static_cast<SDBSectionU*>(v.section);
            buildChannel(m, u.getH(), u.getB(), u.getS(), u.getT(), u.getR1(), u.getEy(), u.getEz());
        }
        break;
    case EnKind::Z:
        if (v.welded) {
            const auto& w = *static_cast<SDBSectionWZ*>(v.section);
            buildZ(m, w.getH(), w.getFlangeWidth(), w.getS(), w.getT(), 0.0, w.getEy(), w.getEz());
        } else {
            const auto& z = *static_cast<SDBSectionZ*>(v.section);
            buildZ(m, z.getH(), z.getB(), z.getS(), z.getT(), z.getR1(), z.getEy(), z.getEz());
        }
        break;
    case EnKind::T: buildT(m, *static_cast<SDBSectionT*>(v.section)); break;
    case EnKind::L: buildL(m, *static_cast<SDBSectionL*>(v.section)); break;
    case EnKind::RH: buildRH(m, *static_cast<SDBSectionRH*>(v.section)); break;
    case EnKind::C: buildC(m, *static_cast<SDBSectionC*>(v.section)); break;
    case EnKind::O: {
        const auto& o = *static_cast<SDBSectionO*>(v.section);
        m.d = o.getD(), m.t = o.getT(), m.size = o.getD();
        addThickness(m, o.getT());
        break;
    }
    case EnKind::R: {
        const auto& r = *static_cast<SDBSectionR*>(v.section);
        m.h = r.getH(), m.b = r.getB(), m.size = std::max(r.getH(), r.getB());
        // Table 3.1 by the product's thickness: the smaller side of a flat or square bar.
        addThickness(m, std::min(r.getH(), r.getB()));
        const double y0 = -r.getEy(), z0 = -r.getEz();
        addRect(m, y0 - r.getB() / 2.0, y0 + r.getB() / 2.0, z0 - r.getH() / 2.0, z0 + r.getH() / 2.0, ShearAreaBoth);
        break;
    }
    case EnKind::Circle: {
        const auto& c = *static_cast<SDBSectionCircle*>(v.section);
        m.d = c.getD(), m.size = c.getD();
        addThickness(m, c.getD());
        break;
    }
    case EnKind::None: return;
    }
    m.kind = v.kind;
}

// ---- profiles ----------------------------------------------------------------------------------------------

void enProfile(const EnSectionModel& m, bool aboutY, const double* factor, EnProfile& out)
{
    out.n = 0;
    out.total = 0.0;
    for (int i = 0; i < m.rectCount; ++i) {
        const EnRect& r = m.rects[static_cast<std::size_t>(i)];
        const double f = factor ? factor[i] : 1.0;
        const double lo = aboutY ? r.z0 : r.y0, hi = aboutY ? r.z1 : r.y1;
        const double w = f * (aboutY ? r.y1 - r.y0 : r.z1 - r.z0);
        if (!(w > 0.0) || !(hi > lo)) continue;
        const auto k = static_cast<std::size_t>(out.n++);
        out.lo[k] = lo;
        out.hi[k] = hi;
        out.w[k] = w;
        out.total += w * (hi - lo);
    }
}

double enAreaBelow(const EnProfile& p, double u)
{
    double a = 0.0;
    for (int i = 0; i < p.n; ++i) {
        const auto k = static_cast<std::size_t>(i);
        a += p.w[k] * std::clamp(u - p.lo[k], 0.0, p.hi[k] - p.lo[k]);
    }
    return a;
}

double enCoordinateAtArea(const EnProfile& p, double area)
{
    if (p.n == 0) return 0.0;
    // The ends of the strips in ascending order, each with the change of the area per unit length it brings:
    // the area below u grows linearly between two of them.
    std::array<double, 2 * enMaxRects> x, dw;
    int k = 0;
    for (int i = 0; i < p.n; ++i) {
        const auto s = static_cast<std::size_t>(i);
        for (const double v : {p.lo[s], p.hi[s]}) {
            const double d = v == p.lo[s] ? p.w[s] : -p.w[s];
            int j = k++;
            for (; j > 0 && x[static_cast<std::size_t>(j - 1)] > v; --j) {
                x[static_cast<std::size_t>(j)] = x[static_cast<std::size_t>(j - 1)];
                dw[static_cast<std::size_t>(j)] = dw[static_cast<std::size_t>(j - 1)];
            }
            x[static_cast<std::size_t>(j)] = v;
            dw[static_cast<std::size_t>(j)] = d;
        }
    }
    if (!(area > 0.0)) return x[0];
    if (!(area < p.total)) return x[static_cast<std::size_t>(k - 1)];
    double a = 0.0, slope = 0.0, prev = x[0];
    for (int i = 0; i < k; ++i) {
        const double xi = x[static_cast<std::size_t>(i)];
        const double next = a + slope * (xi - prev);
        if (next >= area && slope > 0.0) return prev + (area - a) / slope;
        a = next;
        prev = xi;
        slope += dw[static_cast<std::size_t>(i)];
    }
    return x[static_cast<std::size_t>(k - 1)];
}

double enPlasticModulus(const EnProfile& p)
{
    const double u = enCoordinateAtArea(p, p.total / 2.0);
    double W = 0.0;
    for (int i = 0; i < p.n; ++i) {
        const auto k = static_cast<std::size_t>(i);
        const double a = p.lo[k] - u, b = p.hi[k] - u;  // integral of |x| over [a, b]
        const double I = a >= 0.0 ? (b * b - a * a) / 2.0 : b <= 0.0 ? (a * a - b * b) / 2.0 : (a * a + b * b) / 2.0;
        W += p.w[k] * I;
    }
    return W;
}

// ---- Table 5.2 ---------------------------------------------------------------------------------------------

namespace {

// c/t <= limit, with a relative tolerance that keeps an exact fit on the limit.
bool within(double ratio, double limit) { return ratio <= limit * (1.0 + 1e-12); }

} // namespace

int classifyInternal(double ratio, double epsilon, double alpha, bool elasticCompressed, double psi,
                     EnPlateClass* detail)
{
    EnPlateClass scratch;
    EnPlateClass& d = detail ? *detail : scratch;
    d.limit1 = d.limit2 = d.limit3 = 0.0;
    d.kSigma = 0.0;
    if (!(alpha > 0.0)) return 1;  // no compression in the plastic distribution
    const double a = std::min(alpha, 1.0);
    d.limit1 = a > 0.5 ? 396.0 * epsilon / (13.0 * a - 1.0) : 36.0 * epsilon / a;
    d.limit2 = a > 0.5 ? 456.0 * epsilon / (13.0 * a - 1.0) : 41.5 * epsilon / a;
    if (within(ratio, d.limit1)) return 1;
    if (within(ratio, d.limit2)) return 2;
    if (!elasticCompressed) return 3;  // no compressive stress in the elastic distribution
    d.limit3 = psi > -1.0 ? 42.0 * epsilon / (0.67 + 0.33 * psi) : 62.0 * epsilon * (1.0 - psi) * std::sqrt(-psi);
    return within(ratio, d.limit3) ? 3 : 4;
}

int classifyOutstand(double ratio, double epsilon, double alpha, bool freeEdgeCompressed, bool elasticCompressed,
                     double psi, bool psiAtFreeEdge, EnPlateClass* detail)
{
    EnPlateClass scratch;
    EnPlateClass& d = detail ? *detail : scratch;
    d.limit1 = d.limit2 = d.limit3 = 0.0;
    d.kSigma = 0.0;
    if (!(alpha > 0.0)) return 1;
    const double a = std::min(alpha, 1.0);
    const double k = freeEdgeCompressed || a >= 1.0 ? a : a * std::sqrt(a);  // tip in compression / in tension
    d.limit1 = 9.0 * epsilon / k;
    d.limit2 = 10.0 * epsilon / k;
    if (within(ratio, d.limit1)) return 1;
    if (within(ratio, d.limit2)) return 2;
    if (!elasticCompressed) return 3;
    // k_sigma of EN 1993-1-5 Table 4.2: upper row with the largest compression at the free edge (psi >= -3),
    // lower row with it at the supported edge (23.8 below psi = -1, where the table ends).
    if (psiAtFreeEdge) {
        const double p = std::max(psi, -3.0);
        d.kSigma = 0.57 - 0.21 * p + 0.07 * p * p;
    } else {
        d.kSigma = psi >= 0.0 ? 0.578 / (psi + 0.34) : psi >= -1.0 ? 1.7 - 5.0 * psi + 17.1 * psi * psi : 23.8;
    }
    // Uniform compression: 14 eps (Table 5.2 sheet 2); otherwise 21 eps sqrt(k_sigma).
    d.limit3 = psi >= 1.0 - 1e-9 ? 14.0 * epsilon : 21.0 * epsilon * std::sqrt(d.kSigma);
    return within(ratio, d.limit3) ? 3 : 4;
}

namespace {

// The plastic neutral axis of N with the moment M about one axis: the section yields in compression on the
// moment's compressed side (coordinates below u when `below`) and in tension on the other, and carries N.
struct PlasticAxis {
    double u = 0.0;
    bool below = true;
    int state = 0;  // 0: the axis lies in the section; 1: all compressed; -1: nothing compressed
};

PlasticAxis plasticAxis(const EnProfile& p, double N, double M, bool aboutY, double fy)
{
    PlasticAxis x;
    x.below = aboutY ? M > 0.0 : M < 0.0;  // a positive My compresses z < 0, a positive Mz y > 0
    const double Ac = 0.5 * (p.total - N / fy);  // compressed area (N tension positive)
    if (Ac >= p.total) {
        x.state = 1;
    } else if (!(Ac > 0.0)) {
        x.state = -1;
    } else {
        x.u = enCoordinateAtArea(p, x.below ? Ac : p.total - Ac);
    }
    return x;
}

// The compressed share of [lo, hi], and whether the compressed part reaches the end `free`.
double compressedShare(const PlasticAxis& x, double lo, double hi)
{
    if (x.state == 1) return 1.0;
    if (x.state == -1 || !(hi > lo)) return 0.0;
    const double len = x.below ? std::clamp(x.u - lo, 0.0, hi - lo) : std::clamp(hi - x.u, 0.0, hi - lo);
    return len / (hi - lo);
}

bool compressedAt(const PlasticAxis& x, double v, double tol)
{
    if (x.state != 0) return x.state == 1;
    return x.below ? v < x.u - tol : v > x.u + tol;
}

struct Stress {
    double nA, myIy, mzIz;
    double at(double y, double z) const { return -nA - myIy * z + mzIz * y; }  // compression positive
};

} // namespace

void classifyEn(const EnSectionModel& m, const SDBSection& section, const KaConstrSteel& steel, double fy,
                const SteelDesign::Forces& f, bool elastic, EnClassification& out)
{
    out.sectionClass = 0;
    out.noNormalStress = false;
    out.elastic = elastic;
    out.plateCount = 0;
    out.angleCompression = false;
    out.tube = false;
    if (m.kind == EnKind::None || !(fy > 0.0)) return;
    if (elastic) {
        out.sectionClass = 3;
        return;
    }
    const double N = f.getN(), My = f.getMy(), Mz = f.getMz();
    if (N == 0.0 && My == 0.0 && Mz == 0.0) {
        out.noNormalStress = true;
        out.sectionClass = 1;
        return;
    }
    if (m.kind == EnKind::R || m.kind == EnKind::Circle) {
        out.sectionClass = 1;
        return;
    }
    if (m.kind == EnKind::O) {
        if (N >= 0.0 && My == 0.0 && Mz == 0.0) {
            out.sectionClass = 1;  // tension alone: nothing compressed
            return;
        }
        out.tube = true;
        out.tubeEpsilon = std::sqrt(235000.0 / steel.getFyk(m.t));
        out.tubeDt = m.d / m.t;
        const double e2 = out.tubeEpsilon * out.tubeEpsilon;
        out.tubeClass = within(out.tubeDt, 50.0 * e2) ? 1 : within(out.tubeDt, 70.0 * e2) ? 2
                       : within(out.tubeDt, 90.0 * e2)                                  ? 3
                                                                                        : 4;
        out.sectionClass = out.tubeClass;
        return;
    }

    const SDBProperties& p = section.getProperties();
    const Stress s{N / p.A, My / p.Iy, Mz / p.Iz};
    int worst = 1;
    if (m.kind == EnKind::L && (N < 0.0 || My != 0.0 || Mz != 0.0)) {
        // Table 5.2 sheet 3: an angle in compression is class 3 or 4 (h the longer leg). An angle in bending
        // too: it is checked elastically in its principal axes (EnCrossSection), so only class 4 matters,
        // and the legs' compression in u and v is taken at its worst, uniform (sheet 3).
        out.angleCompression = true;
        out.angleEpsilon = std::sqrt(235000.0 / steel.getFyk(m.t));
        out.angleHt = std::max(m.h, m.b) / m.t;
        out.angleBht = (m.h + m.b) / (2.0 * m.t);
        out.angleClass = within(out.angleHt, 15.0 * out.angleEpsilon) && within(out.angleBht, 11.5 * out.angleEpsilon)
                             ? 3
                             : 4;
        out.sectionClass = out.angleClass;
        return;
    }

    // Elastic stresses at the plates' ends; the tolerance below which a stress counts as none.
    double largest = std::fabs(s.nA);
    for (int i = 0; i < m.plateCount; ++i) {
        const EnPlate& pl = m.plates[static_cast<std::size_t>(i)];
        EnPlateClass& c = out.plates[static_cast<std::size_t>(i)];
        c.sigma1 = s.at(pl.y1, pl.z1);
        c.sigma2 = s.at(pl.y2, pl.z2);
        largest = std::max({largest, std::fabs(c.sigma1), std::fabs(c.sigma2)});
    }
    const double stressTol = 1e-9 * largest, lengthTol = 1e-9 * m.size;

    // The plastic neutral axes, each formed when a plate needs it.
    EnProfile profile;
    PlasticAxis axisY, axisZ;
    bool haveY = false, haveZ = false;
    auto plasticAbout = [&](bool aboutY) -> const PlasticAxis& {
        bool& have = aboutY ? haveY : haveZ;
        PlasticAxis& axis = aboutY ? axisY : axisZ;
        if (!have) {
            enProfile(m, aboutY, nullptr, profile);
            axis = plasticAxis(profile, N, aboutY ? My : Mz, aboutY, fy);
            have = true;
        }
        return axis;
    };

    const bool fastI = m.kind == EnKind::I && m.doublySymmetricI;
    double lastT = -1.0, lastFy = 0.0, lastEpsilon = 0.0;
    for (int i = 0; i < m.plateCount; ++i) {
        const EnPlate& pl = m.plates[static_cast<std::size_t>(i)];
        EnPlateClass& c = out.plates[static_cast<std::size_t>(i)];
        if (pl.t != lastT) {  // the plates of a kind share two or three thicknesses
            lastT = pl.t;
            lastFy = steel.getFyk(pl.t);
            lastEpsilon = std::sqrt(235000.0 / lastFy);
        }
        c.fy = lastFy;
        c.epsilon = lastEpsilon;
        const double s1 = c.sigma1, s2 = c.sigma2;
        // Elastic: the largest compression and psi (Table 5.2, class 3).
        c.elasticCompressed = std::max(s1, s2) > stressTol;
        c.psiAtFreeEdge = s2 >= s1;
        const double smax = std::max(s1, s2), smin = std::min(s1, s2);
        c.psi = c.elasticCompressed ? (pl.internal ? smin / smax : (c.psiAtFreeEdge ? s1 / s2 : s2 / s1)) : 1.0;

        // Plastic: the compressed share alpha (Table 5.2, classes 1 and 2).
        const double Mv = pl.alongY ? Mz : My, Mo = pl.alongY ? My : Mz;
        const double x1 = pl.alongY ? pl.y1 : pl.z1, x2 = pl.alongY ? pl.y2 : pl.z2;
        const bool isIWeb = m.kind == EnKind::I && pl.internal;
        double alpha = 0.0;
        bool freeEdge = true;
        if (fastI && isIWeb && My != 0.0) {
            alpha = std::clamp(0.5 * (1.0 - N / (pl.c * pl.t * fy)), 0.0, 1.0);
        } else if (fastI && !pl.internal && My != 0.0 && Mz == 0.0) {
            // Under N and My the flange lies wholly on one side of the web's plastic neutral axis unless N
            // moves it into the flange: compressed when the compressed area reaches the flange's mid-plane.
            const double Ac = 0.5 * (p.A - N / fy), half = m.b * m.tf / 2.0;
            const bool onCompressedSide = (pl.mid < 0.0) == (My > 0.0);
            alpha = (onCompressedSide ? Ac > half : Ac > p.A - half) ? 1.0 : 0.0;
        } else if (Mv != 0.0) {
            const PlasticAxis& x = plasticAbout(!pl.alongY);
            alpha = compressedShare(x, std::min(x1, x2), std::max(x1, x2));
            freeEdge = alpha >= 1.0 || compressedAt(x, x2, -lengthTol);
        } else if (Mo != 0.0) {
            alpha = compressedAt(plasticAbout(pl.alongY), pl.mid, lengthTol) ? 1.0 : 0.0;
        } else {
            alpha = N < 0.0 ? 1.0 : 0.0;
        }
        // Biaxial bending: where the other moment loads the plate (it does not lie on that moment's neutral
        // axis), the elastic share is taken when larger, on the safe side of the plastic one that ignores it.
        if (Mv != 0.0 && Mo != 0.0 && !isIWeb) {
            const double other = pl.alongY ? s.myIy * pl.mid : s.mzIz * pl.mid;
            if (std::fabs(other) > stressTol) {
                double alphaElastic = 0.0;
                if (smin > stressTol)
                    alphaElastic = 1.0;
                else if (smax > stressTol)
                    alphaElastic = smax / (smax - smin);
                if (alphaElastic > alpha) {
                    alpha = alphaElastic;
                    freeEdge = alphaElastic >= 1.0 || s2 >= s1;
                }
            }
        }
        c.alpha = alpha;
        c.freeEdgeCompressed = freeEdge;
        const double ratio = pl.c / pl.t;
        c.cls = pl.internal ? classifyInternal(ratio, c.epsilon, alpha, c.elasticCompressed, c.psi, &c)
                            : classifyOutstand(ratio, c.epsilon, alpha, freeEdge, c.elasticCompressed, c.psi,
                                               c.psiAtFreeEdge, &c);
        worst = std::max(worst, c.cls);
    }
    out.plateCount = m.plateCount;
    out.sectionClass = worst;
}

} // namespace design
