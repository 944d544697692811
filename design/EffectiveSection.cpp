#include "EffectiveSection.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace design {

double kSigmaInternal(double psi)
{
    // EN 1993-1-5 Table 4.1 (7.81 tabulated at psi = 0, where 8.2 / 1.05 = 7.8095).
    if (psi >= 1.0) return 4.0;
    if (psi > 0.0) return 8.2 / (1.05 + psi);
    if (psi >= -1.0) return 7.81 - 6.29 * psi + 9.78 * psi * psi;
    return 5.98 * (1.0 - psi) * (1.0 - psi);  // -1 > psi > -3, kept below -3
}

double kSigmaOutstand(double psi, bool maxAtFreeEdge)
{
    // EN 1993-1-5 Table 4.2.
    if (maxAtFreeEdge) {
        // 1 >= psi >= -3 (0.43 at psi = 1); not tabulated below psi = -3: the value at psi = -3 (k_sigma
        // grows as psi falls, so this is the smaller one).
        const double q = std::max(psi, -3.0);
        return 0.57 - 0.21 * q + 0.07 * q * q;
    }
    if (psi >= 1.0) return 0.43;
    if (psi >= 0.0) return 0.578 / (psi + 0.34);
    if (psi >= -1.0) return 1.7 - 5.0 * psi + 17.1 * psi * psi;
    return 23.8;  // not tabulated below psi = -1: the value at psi = -1
}

double rhoInternal(double lambdaP, double psi)
{
    // EN 1993-1-5 4.4(2), (4.2).
    if (!(lambdaP > 0.5 + std::sqrt(0.085 - 0.055 * psi))) return 1.0;
    return std::min(1.0, (lambdaP - 0.055 * (3.0 + psi)) / (lambdaP * lambdaP));
}

double rhoOutstand(double lambdaP)
{
    // EN 1993-1-5 4.4(2), (4.3).
    if (!(lambdaP > 0.748)) return 1.0;
    return std::min(1.0, (lambdaP - 0.188) / (lambdaP * lambdaP));
}

namespace {

// A plate of the section in the gross centroidal axes. alongY: its width runs along y (a flange: its
// thickness spans z in [a0, a1]); otherwise along z (a web or wall: thickness spans y in [a0, a1]).
// [f0, f1] is its full extent along its width (for the extreme fibres), [from, to] its flat width c:
// for an outstand from the supported to the free edge. Holes are the ineffective strips along the width.
struct Plate {
    EffectivePlate::Kind kind = EffectivePlate::Kind::Internal;
    std::string name;
    bool alongY = true;
    double a0 = 0.0, a1 = 0.0;
    double f0 = 0.0, f1 = 0.0;
    double from = 0.0, to = 0.0;
    std::vector<std::pair<double, double>> holes;

    double c() const { return std::fabs(to - from); }
    double t() const { return a1 - a0; }
    double dir() const { return to >= from ? 1.0 : -1.0; }
    // Coordinate at distance x from the edge `from` (x >= 0 towards `to`).
    double at(double edge, double direction, double x) const { return edge + direction * x; }
    void addHole(double u, double v)
    {
        if (std::fabs(v - u) > 0.0) holes.emplace_back(std::min(u, v), std::max(u, v));
    }
};

struct Model {
    std::vector<Plate> plates;
    double size = 0.0;  // largest overall dimension, for tolerances
};

void addPlate(Model& m, EffectivePlate::Kind kind, std::string name, bool alongY, double a0, double a1, double f0,
              double f1, double from, double to)
{
    Plate p;
    p.kind = kind;
    p.name = std::move(name);
    p.alongY = alongY;
    p.a0 = a0;
    p.a1 = a1;
    p.f0 = std::min(f0, f1);
    p.f1 = std::max(f0, f1);
    p.from = from;
    p.to = to;
    m.plates.push_back(std::move(p));
}

constexpr auto Internal = EffectivePlate::Kind::Internal;
constexpr auto Outstand = EffectivePlate::Kind::Outstand;

// I sections: reference point at mid-height on the web axis; c of EN 1993-1-1 Table 5.2 with the root
// radius r (0 for a welded section: the weld size is not known, so the full clear width is taken).
void buildI(Model& m, const SDBSectionI& s)
{
    const double h = s.getH(), b1 = s.getB(), b2 = s.getB2(), tw = s.getS(), t1 = s.getT(), t2 = s.getT2();
    const double r = s.getR1(), ey = s.getEy(), ez = s.getEz();
    const double zTop = -h / 2.0 - ez, zBot = h / 2.0 - ez, y0 = -ey;
    const double root = tw / 2.0 + r;
    addPlate(m, Outstand, "top flange, outstand y > 0", true, zTop, zTop + t1, y0, y0 + b1 / 2.0, y0 + root,
             y0 + b1 / 2.0);
    addPlate(m, Outstand, "top flange, outstand y < 0", true, zTop, zTop + t1, y0 - b1 / 2.0, y0, y0 - root,
             y0 - b1 / 2.0);
    addPlate(m, Outstand, "bottom flange, outstand y > 0", true, zBot - t2, zBot, y0, y0 + b2 / 2.0, y0 + root,
             y0 + b2 / 2.0);
    addPlate(m, Outstand, "bottom flange, outstand y < 0", true, zBot - t2, zBot, y0 - b2 / 2.0, y0, y0 - root,
             y0 - b2 / 2.0);
    addPlate(m, Internal, "web", false, y0 - tw / 2.0, y0 + tw / 2.0, zTop + t1, zBot - t2, zTop + t1 + r,
             zBot - t2 - r);
    m.size = std::max(h, std::max(b1, b2));
}

// Channels: reference point at the web back at mid-height, flanges to -y. Flange outstand c = b - tw - r,
// web c = h - 2 t - 2 r (EN 1993-1-1 Table 5.2); welded channels r = 0.
void buildChannel(Model& m, double h, double b, double tw, double tf, double r, double ey, double ez)
{
    const double zTop = -h / 2.0 - ez, zBot = h / 2.0 - ez, yBack = -ey;
    addPlate(m, Outstand, "top flange", true, zTop, zTop + tf, yBack - b, yBack, yBack - tw - r, yBack - b);
    addPlate(m, Outstand, "bottom flange", true, zBot - tf, zBot, yBack - b, yBack, yBack - tw - r, yBack - b);
    addPlate(m, Internal, "web", false, yBack - tw, yBack, zTop + tf, zBot - tf, zTop + tf + r, zBot - tf - r);
    m.size = std::max(h, b);
}

// Hollow sections: reference point at the centre. Tubes (corner radius > 0, hot-finished or cold-formed):
// c = b - 3 t for the flanges and h - 3 t for the webs, EN 1993-1-5 4.4(2) and EN 1993-1-1 Table 5.2, with
// each wall's own thickness. Welded boxes (no corner radius): the clear width between the walls.
void buildBox(Model& m, const SDBSectionRH& s)
{
    const double h = s.getH(), b = s.getB(), tw = s.getS(), tf = s.getT();
    const bool tube = s.getR1() > 0.0;
    const double cf = tube ? b - 3.0 * tf : b - 2.0 * tw;
    const double cw = tube ? h - 3.0 * tw : h - 2.0 * tf;
    const double y0 = -s.getEy(), z0 = -s.getEz();
    if (cf > 0.0) {
        addPlate(m, Internal, "top flange", true, z0 - h / 2.0, z0 - h / 2.0 + tf, y0 - b / 2.0, y0 + b / 2.0,
                 y0 - cf / 2.0, y0 + cf / 2.0);
        addPlate(m, Internal, "bottom flange", true, z0 + h / 2.0 - tf, z0 + h / 2.0, y0 - b / 2.0, y0 + b / 2.0,
                 y0 - cf / 2.0, y0 + cf / 2.0);
    }
    if (cw > 0.0) {
        addPlate(m, Internal, "web y > 0", false, y0 + b / 2.0 - tw, y0 + b / 2.0, z0 - h / 2.0, z0 + h / 2.0,
                 z0 - cw / 2.0, z0 + cw / 2.0);
        addPlate(m, Internal, "web y < 0", false, y0 - b / 2.0, y0 - b / 2.0 + tw, z0 - h / 2.0, z0 + h / 2.0,
                 z0 - cw / 2.0, z0 + cw / 2.0);
    }
    m.size = std::max(h, b);
}

// Tees (flange on top): reference point at the top of the flange on the stem axis, ez > 0 the depth of the
// centroid. Flange outstands c = (b - tw - 2r) / 2 as for I sections; the stem an outstand supported by the
// flange, c = h - tf - r from the root radius to its free edge at the tip (the widths of the classification,
// EN 1993-1-1 Table 5.2); welded tees r = 0.
void buildT(Model& m, const SDBSectionT& s)
{
    const double h = s.getH(), b = s.getB(), tw = s.getS(), tf = s.getT(), r = s.getR1();
    const double y0 = -s.getEy(), zTop = -s.getEz();
    const double root = tw / 2.0 + r;
    addPlate(m, Outstand, "flange, outstand y > 0", true, zTop, zTop + tf, y0, y0 + b / 2.0, y0 + root,
             y0 + b / 2.0);
    addPlate(m, Outstand, "flange, outstand y < 0", true, zTop, zTop + tf, y0 - b / 2.0, y0, y0 - root,
             y0 - b / 2.0);
    addPlate(m, Outstand, "stem", false, y0 - tw / 2.0, y0 + tw / 2.0, zTop + tf, zTop + h, zTop + tf + r,
             zTop + h);
    m.size = std::max(h, b);
}

std::optional<Model> modelOf(const SDBSection& section)
{
    Model m;
    if (const auto* i = dynamic_cast<const SDBSectionI*>(&section)) {
        buildI(m, *i);
    } else if (const auto* u = dynamic_cast<const SDBSectionU*>(&section)) {
        buildChannel(m, u->getH(), u->getB(), u->getS(), u->getT(), u->getR1(), u->getEy(), u->getEz());
    } else if (const auto* wu = dynamic_cast<const SDBSectionWU*>(&section)) {
        buildChannel(m, wu->getH(), wu->getFlangeWidth(), wu->getS(), wu->getT(), 0.0, wu->getEy(), wu->getEz());
    } else if (const auto* rh = dynamic_cast<const SDBSectionRH*>(&section)) {
        buildBox(m, *rh);
    } else if (const auto* t = dynamic_cast<const SDBSectionT*>(&section)) {
        buildT(m, *t);
    } else {
        return std::nullopt;
    }
    // Plates of no flat width (a root radius filling an outstand) cannot buckle (reducePlate skips them);
    // they stay in the model for the extreme fibres.
    std::erase_if(m.plates, [](const Plate& p) { return !(p.t() > 0.0); });
    return m;
}

// Reduces one plate under the compressive stresses sFrom at `from` and sTo at `to` (compression positive,
// any unit): EN 1993-1-5 4.4(2), Tables 4.1 and 4.2. Adds the ineffective strip to the plate and returns the
// trace, or nothing when the plate is not compressed.
std::optional<EffectivePlate> reducePlate(Plate& p, double sFrom, double sTo, double epsilon, double tiny)
{
    if (!(p.c() > 0.0) || !(std::max(sFrom, sTo) > tiny)) return std::nullopt;
    EffectivePlate e;
    e.kind = p.kind;
    e.element = p.name;
    e.c = p.c();
    e.t = p.t();
    const double c = e.c, d = p.dir();
    const double slenderness = (c / e.t) / (28.4 * epsilon);
    if (p.kind == Internal) {
        // sigma1 at the more compressed edge `edge`, the strip of Table 4.1 measured from it.
        const bool fromIsMax = sFrom >= sTo;
        const double s1 = fromIsMax ? sFrom : sTo, s2 = fromIsMax ? sTo : sFrom;
        const double edge = fromIsMax ? p.from : p.to, other = fromIsMax ? p.to : p.from;
        const double dd = fromIsMax ? d : -d;
        e.psi = std::clamp(s2 / s1, -1e9, 1.0);
        e.kSigma = kSigmaInternal(e.psi);
        e.lambdaP = slenderness / std::sqrt(e.kSigma);
        e.lambdaLimit = 0.5 + std::sqrt(0.085 - 0.055 * e.psi);
        e.rho = rhoInternal(e.lambdaP, e.psi);
        if (e.psi >= 0.0) {
            e.bEff = e.rho * c;
            const double be1 = 2.0 * e.bEff / (5.0 - e.psi), be2 = e.bEff - be1;
            if (e.rho < 1.0) p.addHole(p.at(edge, dd, be1), p.at(other, -dd, be2));
        } else {
            const double bc = c / (1.0 - e.psi);
            e.bEff = e.rho * bc;
            const double be1 = 0.4 * e.bEff, be2 = 0.6 * e.bEff;
            if (e.rho < 1.0) p.addHole(p.at(edge, dd, be1), p.at(edge, dd, bc - be2));
        }
    } else {
        // `from` is the supported edge, `to` the free edge.
        const bool maxAtFree = sTo >= sFrom;
        e.psi = maxAtFree ? sFrom / sTo : sTo / sFrom;
        e.psi = std::clamp(e.psi, -1e9, 1.0);
        e.kSigma = kSigmaOutstand(e.psi, maxAtFree);
        e.lambdaP = slenderness / std::sqrt(e.kSigma);
        e.lambdaLimit = 0.748;
        e.rho = rhoOutstand(e.lambdaP);
        const double bc = e.psi >= 0.0 ? c : c / (1.0 - e.psi);  // the compressed width
        e.bEff = e.rho * bc;
        if (e.rho < 1.0) {
            if (maxAtFree)  // the compressed zone lies at the free edge, its ineffective part at the tip
                p.addHole(p.at(p.to, -d, bc - e.bEff), p.to);
            else  // b_eff measured from the supported edge
                p.addHole(p.at(p.from, d, e.bEff), p.at(p.from, d, bc));
        }
    }
    return e;
}

struct Section {
    double A = 0.0, cy = 0.0, cz = 0.0;  // area and centroid in the gross axes
    double Iy = 0.0, Iz = 0.0;            // about the section's own centroid
    double yMin = 0.0, yMax = 0.0, zMin = 0.0, zMax = 0.0;
};

// The gross section minus the plates' holes.
Section effectiveSection(const SDBProperties& g, const Model& m)
{
    double A = g.A, Sy = 0.0, Sz = 0.0, Iy = g.Iy, Iz = g.Iz;  // Sy = integral of z, Sz of y
    double yMin = 1e300, yMax = -1e300, zMin = 1e300, zMax = -1e300;
    for (const Plate& p : m.plates) {
        const double t = p.t(), am = (p.a0 + p.a1) / 2.0;
        for (const auto& [u, v] : p.holes) {
            const double w = v - u, um = (u + v) / 2.0, a = w * t;
            const double y = p.alongY ? um : am, z = p.alongY ? am : um;
            const double dy = p.alongY ? w : t, dz = p.alongY ? t : w;
            A -= a;
            Sy -= a * z;
            Sz -= a * y;
            Iy -= a * z * z + dy * dz * dz * dz / 12.0;
            Iz -= a * y * y + dz * dy * dy * dy / 12.0;
        }
        // Extreme fibres: the plate's full extent less the holes.
        std::vector<std::pair<double, double>> holes = p.holes;
        std::sort(holes.begin(), holes.end());
        double lo = p.f0, hi = p.f1;
        const double tol = 1e-12 * m.size;
        for (const auto& [u, v] : holes)
            if (u <= lo + tol) lo = std::max(lo, v);
        for (auto it = holes.rbegin(); it != holes.rend(); ++it)
            if (it->second >= hi - tol) hi = std::min(hi, it->first);
        if (!(hi > lo)) continue;
        const double ylo = p.alongY ? lo : p.a0, yhi = p.alongY ? hi : p.a1;
        const double zlo = p.alongY ? p.a0 : lo, zhi = p.alongY ? p.a1 : hi;
        yMin = std::min(yMin, ylo);
        yMax = std::max(yMax, yhi);
        zMin = std::min(zMin, zlo);
        zMax = std::max(zMax, zhi);
    }
    Section s;
    s.A = A;
    s.cz = Sy / A;
    s.cy = Sz / A;
    s.Iy = Iy - A * s.cz * s.cz;
    s.Iz = Iz - A * s.cy * s.cy;
    // The plates cover the gross extremes; never beyond them.
    s.yMin = std::max(yMin, g.yMin);
    s.yMax = std::min(yMax, g.yMax);
    s.zMin = std::max(zMin, g.zMin);
    s.zMax = std::min(zMax, g.zMax);
    return s;
}

bool usable(const SDBSection& section, double fy)
{
    const SDBProperties& g = section.getProperties();
    return std::isfinite(fy) && fy > 0.0 && g.A > 0.0 && g.Iy > 0.0 && g.Iz > 0.0;
}

EffectiveProperties collect(const SDBProperties& g, const Model& m, std::vector<EffectivePlate> trace)
{
    const Section s = effectiveSection(g, m);
    EffectiveProperties r;
    r.A = g.A;
    r.Aeff = s.A;
    r.Ieffy = s.Iy;
    r.Ieffz = s.Iz;
    // Centroid offsets of rounding size (symmetric removals) are snapped to 0, as the library does.
    r.eNy = std::fabs(s.cz) < 1e-12 * m.size ? 0.0 : s.cz;
    r.eNz = std::fabs(s.cy) < 1e-12 * m.size ? 0.0 : s.cy;
    for (const EffectivePlate& p : trace) r.reduced = r.reduced || p.rho < 1.0;
    r.plates = std::move(trace);
    return r;
}

double epsilonOf(double fy) { return std::sqrt(235000.0 / fy); }

} // namespace

std::optional<EffectiveProperties> effectiveUnderCompression(const SDBSection& section, double fy)
{
    if (!usable(section, fy)) return std::nullopt;
    std::optional<Model> m = modelOf(section);
    if (!m) return std::nullopt;
    const double epsilon = epsilonOf(fy);
    std::vector<EffectivePlate> trace;
    for (Plate& p : m->plates)
        if (auto e = reducePlate(p, 1.0, 1.0, epsilon, 0.5)) trace.push_back(*e);
    return collect(section.getProperties(), *m, std::move(trace));
}

std::optional<EffectiveProperties> effectiveUnderBending(const SDBSection& section, double fy, Axis axis,
                                                         bool positiveMoment)
{
    if (!usable(section, fy)) return std::nullopt;
    std::optional<Model> m = modelOf(section);
    if (!m) return std::nullopt;
    const double epsilon = epsilonOf(fy);
    const bool aboutY = axis == Axis::y;
    const double tiny = 1e-9 * m->size;
    // Compressive stress per unit curvature at the coordinate x (z about y, y about z) for a neutral axis
    // at x0: a positive My compresses z < 0, a positive Mz compresses y > 0.
    const double sign = aboutY ? (positiveMoment ? -1.0 : 1.0) : (positiveMoment ? 1.0 : -1.0);
    auto compression = [sign](double x, double x0) { return sign * (x - x0); };

    std::vector<EffectivePlate> trace;
    // 1. Plates across which the stress is uniform (flanges under My, webs and walls under Mz), from the
    //    gross section (EN 1993-1-5 4.4(3): flanges with psi of the gross section).
    for (Plate& p : m->plates) {
        if (p.alongY != aboutY) continue;
        const double sigma = compression((p.a0 + p.a1) / 2.0, 0.0);
        if (auto e = reducePlate(p, sigma, sigma, epsilon, tiny)) trace.push_back(*e);
    }
    // 2. Plates along which the stress varies, psi from the section with the effective plates of step 1
    //    and the others gross (EN 1993-1-5 4.4(3)); one pass.
    const Section first = effectiveSection(section.getProperties(), *m);
    const double x0 = aboutY ? first.cz : first.cy;
    for (Plate& p : m->plates) {
        if (p.alongY == aboutY) continue;
        if (auto e = reducePlate(p, compression(p.from, x0), compression(p.to, x0), epsilon, tiny))
            trace.push_back(*e);
    }
    const SDBProperties& g = section.getProperties();
    EffectiveProperties r = collect(g, *m, std::move(trace));
    const Section s = effectiveSection(g, *m);
    // Never above the gross Wel: a strip lost next to the neutral axis on the compressed side (a tee's stem
    // under My > 0, Table 4.2 lower row) moves the centroid towards the governing tension fibre and can raise
    // Ieff / z there a little; the class 4 resistance is not taken above the class 3 one.
    auto capped = [](double W, double Wel) { return Wel > 0.0 ? std::min(W, Wel) : W; };
    if (aboutY)
        r.Weffy = capped(s.Iy / std::max(s.cz - s.zMin, s.zMax - s.cz), g.Wely);
    else
        r.Weffz = capped(s.Iz / std::max(s.cy - s.yMin, s.yMax - s.cy), g.Welz);
    return r;
}

} // namespace design
