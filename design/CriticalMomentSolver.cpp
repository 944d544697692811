#include "CriticalMomentSolver.h"

#include <SDBSection.h>

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <sstream>

namespace design {

// ---------------------------------------------------------------------------------------------------
// Section properties

namespace {

// A tee (flange on top, stem down): the shear centre where the centre lines of flange and stem meet, at
// the flange's mid-thickness; beta_y from the two plates (root fillets neglected, as for the I below).
void teeSection(const SDBSectionT& tee, McrSection& s)
{
    const double h = tee.getH(), b = tee.getB(), tw = tee.getS(), t = tee.getT();
    // Plates in coordinates from the top of the flange (z down): flange, stem.
    struct Plate {
        double b, z1, z2;
    };
    const std::array<Plate, 2> plates{{{b, 0.0, t}, {tw, t, h}}};
    double A = 0.0, Sz = 0.0;
    for (const Plate& p : plates) {
        A += p.b * (p.z2 - p.z1);
        Sz += p.b * (p.z2 * p.z2 - p.z1 * p.z1) / 2.0;
    }
    const double zc = Sz / A; // centroid below the top
    double Iy = 0.0, J = 0.0; // J = int z (y^2 + z^2) dA about the centroid
    for (const Plate& p : plates) {
        const double a = p.z1 - zc, c = p.z2 - zc;
        Iy += p.b * (c * c * c - a * a * a) / 3.0;
        J += p.b * p.b * p.b / 12.0 * (c * c - a * a) / 2.0 + p.b * (c * c * c * c - a * a * a * a) / 4.0;
    }
    s.zs = t / 2.0 - zc;
    s.betaY = J / Iy - 2.0 * s.zs;
    s.zTop = -t / 2.0;
    s.zBottom = h - t / 2.0;
}

} // namespace

McrSection mcrSection(const SDBSection& section)
{
    McrSection s;
    s.Iz = section.getIz();
    s.It = section.getIt();
    s.Iw = section.getIw();
    s.zTop = section.getZMin();
    s.zBottom = section.getZMax();

    if (const auto* tee = dynamic_cast<const SDBSectionT*>(&section)) {
        teeSection(*tee, s);
        return s;
    }

    const auto* i = dynamic_cast<const SDBSectionI*>(&section);
    if (i == nullptr || !i->getB2Set()) return s;
    const double h = i->getH(), b1 = i->getB(), t1 = i->getT(), tw = i->getS(), b2 = i->getB2(), t2 = i->getT2();
    if (b1 == b2 && t1 == t2) return s;

    // The three plates in coordinates from mid-height (z down): top flange, web, bottom flange.
    struct Plate {
        double b, z1, z2; // width (along y) and the z range
    };
    const std::array<Plate, 3> plates{{{b1, -h / 2.0, -h / 2.0 + t1},
                                       {tw, -h / 2.0 + t1, h / 2.0 - t2},
                                       {b2, h / 2.0 - t2, h / 2.0}}};
    double A = 0.0, Sz = 0.0;
    for (const Plate& p : plates) {
        A += p.b * (p.z2 - p.z1);
        Sz += p.b * (p.z2 * p.z2 - p.z1 * p.z1) / 2.0;
    }
    const double zc = Sz / A; // centroid below mid-height
    double Iy = 0.0, J = 0.0; // J = int z (y^2 + z^2) dA about the centroid
    for (const Plate& p : plates) {
        const double a = p.z1 - zc, c = p.z2 - zc;
        Iy += p.b * (c * c * c - a * a * a) / 3.0;
        J += p.b * p.b * p.b / 12.0 * (c * c - a * a) / 2.0 + p.b * (c * c * c * c - a * a * a * a) / 4.0;
    }
    // Shear centre on the line of the flange centroids: hs I2 / (I1 + I2) below the top flange's centre.
    const double I1 = t1 * b1 * b1 * b1 / 12.0, I2 = t2 * b2 * b2 * b2 / 12.0;
    const double hs = h - t1 / 2.0 - t2 / 2.0;
    const double zsMid = -h / 2.0 + t1 / 2.0 + hs * I2 / (I1 + I2);
    s.zs = zsMid - zc;
    s.betaY = J / Iy - 2.0 * s.zs;
    s.zTop = -h / 2.0 - zsMid;
    s.zBottom = h / 2.0 - zsMid;
    return s;
}

// ---------------------------------------------------------------------------------------------------
// Moment diagrams

double McrMomentDiagram::at(double x) const
{
    if (stations.empty()) return 0.0;
    if (x <= stations.front().x) return stations.front().M;
    if (x >= stations.back().x) return stations.back().M;
    const auto it = std::upper_bound(stations.begin(), stations.end(), x,
                                     [](double value, const McrStation& s) { return value < s.x; });
    const McrStation& b = *it;
    const McrStation& a = *(it - 1);
    const double d = b.x - a.x;
    const double t = d > 0.0 ? (x - a.x) / d : 0.0;
    return a.M + (b.M - a.M) * t + q * (x - a.x) * (b.x - x) / 2.0;
}

namespace {

// The station values and the vertex of the parabola of every interval.
template <class F> void forEachCandidate(const McrMomentDiagram& d, F f)
{
    for (std::size_t k = 0; k < d.stations.size(); ++k) {
        f(d.stations[k].M);
        if (k + 1 == d.stations.size() || d.q == 0.0) continue;
        const McrStation& a = d.stations[k];
        const McrStation& b = d.stations[k + 1];
        const double len = b.x - a.x;
        if (len <= 0.0) continue;
        // M = a.M + s (x - xa) + q (x - xa)(xb - x) / 2; dM/dx = s + q (len - 2 (x - xa)) / 2 = 0.
        const double slope = (b.M - a.M) / len;
        const double u = (slope + d.q * len / 2.0) / d.q;
        if (u > 0.0 && u < len) f(d.at(a.x + u));
    }
}

} // namespace

double McrMomentDiagram::maxAbs() const
{
    double m = 0.0;
    forEachCandidate(*this, [&](double M) { m = std::max(m, std::fabs(M)); });
    return m;
}

double McrMomentDiagram::extreme() const
{
    double m = 0.0;
    forEachCandidate(*this, [&](double M) {
        if (std::fabs(M) > std::fabs(m)) m = M;
    });
    return m;
}

McrMomentDiagram McrMomentDiagram::threeValues(double length, double start, double middle, double end, Shape shape)
{
    McrMomentDiagram d;
    if (shape == Shape::Polygonal) {
        d.stations = {{0.0, start}, {length / 2.0, middle}, {length, end}};
    } else {
        d.stations = {{0.0, start}, {length, end}};
        d.q = length > 0.0 ? 8.0 * (middle - (start + end) / 2.0) / (length * length) : 0.0;
    }
    return d;
}

McrMomentDiagram McrMomentDiagram::uniform(double length, double M)
{
    McrMomentDiagram d;
    d.stations = {{0.0, M}, {length, M}};
    return d;
}

McrMomentDiagram McrMomentDiagram::linear(double length, double start, double end)
{
    McrMomentDiagram d;
    d.stations = {{0.0, start}, {length, end}};
    return d;
}

namespace {

std::vector<double> stationPositions(double length, const std::vector<McrPointLoad>& loads)
{
    std::vector<double> xs{0.0, length};
    for (const McrPointLoad& p : loads)
        if (p.x > 0.0 && p.x < length) xs.push_back(p.x);
    std::sort(xs.begin(), xs.end());
    xs.erase(std::unique(xs.begin(), xs.end()), xs.end());
    return xs;
}

} // namespace

McrMomentDiagram simplySupportedMoments(double length, double startMoment, double endMoment, double q,
                                        const std::vector<McrPointLoad>& pointLoads)
{
    McrMomentDiagram d;
    d.q = q;
    if (!(length > 0.0)) return d;
    for (double x : stationPositions(length, pointLoads)) {
        double M = startMoment + (endMoment - startMoment) * x / length + q * x * (length - x) / 2.0;
        for (const McrPointLoad& p : pointLoads) {
            const double a = std::clamp(p.x, 0.0, length);
            M += p.P * (x <= a ? x * (length - a) : a * (length - x)) / length;
        }
        d.stations.push_back({x, M});
    }
    return d;
}

McrMomentDiagram cantileverMoments(double length, double q, const std::vector<McrPointLoad>& pointLoads)
{
    McrMomentDiagram d;
    d.q = q;
    if (!(length > 0.0)) return d;
    for (double x : stationPositions(length, pointLoads)) {
        // Hogging moment of everything beyond x (free end at L).
        double M = -q * (length - x) * (length - x) / 2.0;
        for (const McrPointLoad& p : pointLoads) {
            const double a = std::clamp(p.x, 0.0, length);
            if (a > x) M -= p.P * (a - x);
        }
        d.stations.push_back({x, M});
    }
    // Between stations the parabola of q is measured from the chord: the chord of -q (L - x)^2 / 2 over
    // [xa, xb] lies below the curve by q (x - xa)(xb - x) / 2, so the same sign of q applies.
    return d;
}

// ---------------------------------------------------------------------------------------------------
// Banded symmetric matrices (lower band, half-bandwidth 7: the 8 degrees of freedom of an element)

namespace {

constexpr int kBand = 7;
constexpr int kWidth = kBand + 1;
constexpr int kDofs = 4; // v, v', phi, phi'

struct Band {
    int n = 0;
    std::vector<double> a; // a[i * kWidth + (i - j)] = A(i, j), i >= j, i - j <= kBand

    explicit Band(int size = 0) : n(size), a(static_cast<std::size_t>(size) * kWidth, 0.0) {}
    double get(int i, int j) const
    {
        if (i < j) std::swap(i, j);
        return i - j <= kBand ? a[static_cast<std::size_t>(i) * kWidth + (i - j)] : 0.0;
    }
    double& ref(int i, int j) // i >= j, i - j <= kBand
    {
        return a[static_cast<std::size_t>(i) * kWidth + (i - j)];
    }
    void set(int i, int j, double value)
    {
        if (i < j) std::swap(i, j);
        ref(i, j) = value;
    }
    void add(int i, int j, double value)
    {
        if (i < j) std::swap(i, j);
        ref(i, j) += value;
    }
    // y = A x
    void multiply(const double* x, double* y) const
    {
        for (int i = 0; i < n; ++i) y[i] = 0.0;
        for (int i = 0; i < n; ++i) {
            const double* row = &a[static_cast<std::size_t>(i) * kWidth];
            double s = row[0] * x[i];
            const int dmax = std::min(i, kBand);
            for (int d = 1; d <= dmax; ++d) {
                s += row[d] * x[i - d];
                y[i - d] += row[d] * x[i];
            }
            y[i] += s;
        }
    }
    // Replaces v by w + z phi (x = T x~ with T = I + z e_v e_phi^T): A <- T^T A T.
    void substitute(int iv, int iphi, double z)
    {
        if (z == 0.0) return;
        const int lo = std::max(0, std::min(iv, iphi) - kBand);
        const int hi = std::min(n - 1, std::max(iv, iphi) + kBand);
        const double avv = get(iv, iv), avp = get(iv, iphi);
        for (int j = lo; j <= hi; ++j) {
            if (j == iphi) continue;
            if (std::abs(j - iphi) > kBand) continue;
            add(iphi, j, z * get(iv, j));
        }
        // add(iphi, iv) above added z avv to A(phi, v); the diagonal:
        add(iphi, iphi, 2.0 * z * avp + z * z * avv);
    }
    // Holds degree of freedom i: its row and column vanish and the diagonal becomes diag.
    void hold(int i, double diag)
    {
        const int lo = std::max(0, i - kBand);
        const int hi = std::min(n - 1, i + kBand);
        for (int j = lo; j <= hi; ++j) set(i, j, 0.0);
        set(i, i, diag);
    }
};

// The band Cholesky factor A = L L^T, with the reciprocals of its diagonal (the solves multiply).
struct Factor {
    Band L;
    std::vector<double> inv; // 1 / L(i, i)
};

// False when a pivot is not positive (a mechanism).
bool cholesky(const Band& A, Factor& F)
{
    Band& L = F.L;
    L = A;
    const int n = A.n;
    F.inv.assign(n, 0.0);
    for (int j = 0; j < n; ++j) {
        const int k0 = std::max(0, j - kBand);
        double s = L.ref(j, j);
        for (int k = k0; k < j; ++k) {
            const double l = L.ref(j, k);
            s -= l * l;
        }
        const double original = A.get(j, j);
        if (!(s > 1e-11 * std::fabs(original)) || !(s > 0.0)) return false;
        const double d = std::sqrt(s);
        L.ref(j, j) = d;
        F.inv[j] = 1.0 / d;
        const int imax = std::min(n - 1, j + kBand);
        for (int i = j + 1; i <= imax; ++i) {
            double t = L.ref(i, j);
            for (int k = std::max(k0, i - kBand); k < j; ++k) t -= L.ref(i, k) * L.ref(j, k);
            L.ref(i, j) = t * F.inv[j];
        }
    }
    return true;
}

// x <- L^-1 x (two partial sums keep the dependency chain short)
void forward(const Factor& F, double* x)
{
    const Band& L = F.L;
    for (int i = 0; i < L.n; ++i) {
        const double* row = &L.a[static_cast<std::size_t>(i) * kWidth];
        double s0 = x[i], s1 = 0.0;
        if (i >= kBand) {
            s1 -= row[7] * x[i - 7] + row[6] * x[i - 6] + row[5] * x[i - 5];
            s0 -= row[4] * x[i - 4] + row[3] * x[i - 3] + row[2] * x[i - 2];
            s0 -= row[1] * x[i - 1];
        } else {
            for (int d = 1; d <= i; ++d) s0 -= row[d] * x[i - d];
        }
        x[i] = (s0 + s1) * F.inv[i];
    }
}

// x <- L^-T x
void backward(const Factor& F, double* x)
{
    const Band& L = F.L;
    for (int i = L.n - 1; i >= 0; --i) {
        const double* row = &L.a[static_cast<std::size_t>(i) * kWidth];
        const double xi = x[i] * F.inv[i];
        x[i] = xi;
        const int dmax = std::min(i, kBand);
        for (int d = 1; d <= dmax; ++d) x[i - d] -= row[d] * xi;
    }
}

// ---------------------------------------------------------------------------------------------------
// The model

struct Model {
    std::vector<double> nodes;  // x of the nodes
    std::vector<double> zLateral; // per node: height of a lateral restraint (NaN: none)
    std::vector<bool> heldPhi;    // per node: torsional restraint
    Band K;
    int n = 0; // degrees of freedom
};

double levelZ(const McrLevel& level, const McrSection& s)
{
    switch (level.at) {
    case McrHeight::ShearCentre: return 0.0;
    case McrHeight::TopFlange: return s.zTop;
    case McrHeight::BottomFlange: return s.zBottom;
    case McrHeight::Distance: return level.z;
    }
    return 0.0;
}

bool finite(double x) { return std::isfinite(x); }

std::string validate(const CriticalMomentInput& in)
{
    std::ostringstream r;
    const McrSection& s = in.section;
    if (!finite(in.E) || in.E <= 0.0) return "E must be positive";
    if (!finite(in.G) || in.G <= 0.0) return "G must be positive";
    if (!finite(s.Iz) || s.Iz <= 0.0) return "Iz must be positive (missing minor-axis stiffness)";
    if (!finite(s.It) || s.It < 0.0) return "It must not be negative";
    if (!finite(s.Iw) || s.Iw < 0.0) return "Iw must not be negative";
    if (s.It <= 0.0 && s.Iw <= 0.0) return "It and Iw are both zero (missing torsional stiffness)";
    if (!finite(s.betaY) || !finite(s.zTop) || !finite(s.zBottom)) return "section heights must be finite";
    if (!finite(in.length) || in.length <= 0.0) return "the length must be positive";
    if (in.elements < 1 || in.elements > 1000) return "the number of elements must be between 1 and 1000";
    if (!finite(in.cTheta) || in.cTheta < 0.0) return "c_theta must not be negative";
    if (!finite(in.q)) return "q must be finite";
    const double L = in.length;
    const auto inside = [L](double x) { return finite(x) && x >= 0.0 && x <= L; };
    const auto levelOk = [&s](const McrLevel& l) {
        if (l.at == McrHeight::Distance) return finite(l.z);
        if (l.at == McrHeight::TopFlange || l.at == McrHeight::BottomFlange) return s.zTop != 0.0 || s.zBottom != 0.0;
        return true;
    };
    if (in.q != 0.0 && !levelOk(in.qLevel)) return "the height of q is not known (zTop, zBottom missing)";
    for (const McrPointLoad& p : in.pointLoads) {
        if (!inside(p.x)) return "a point load lies outside the member";
        if (!finite(p.P)) return "a point load must be finite";
        if (!levelOk(p.level)) return "the height of a point load is not known (zTop, zBottom missing)";
    }
    for (const McrLateralRestraint& l : in.lateralRestraints) {
        if (!inside(l.x)) return "a lateral restraint lies outside the member";
        if (!levelOk(l.level)) return "the height of a lateral restraint is not known (zTop, zBottom missing)";
    }
    for (double x : in.torsionalRestraints)
        if (!inside(x)) return "a torsional restraint lies outside the member";
    const McrMomentDiagram& d = in.moments;
    if (!d.empty()) {
        if (d.stations.size() < 2) return "a moment diagram needs at least two stations";
        if (!finite(d.q)) return "the diagram's q must be finite";
        const double tol = 1e-6 * L;
        if (std::fabs(d.stations.front().x) > tol || std::fabs(d.stations.back().x - L) > tol)
            return "the moment diagram must run from x = 0 to x = L";
        for (std::size_t k = 0; k < d.stations.size(); ++k) {
            if (!finite(d.stations[k].x) || !finite(d.stations[k].M)) return "moment stations must be finite";
            if (k > 0 && !(d.stations[k].x > d.stations[k - 1].x))
                return "moment stations must increase in x";
        }
    } else if (in.q == 0.0 && in.pointLoads.empty()) {
        return "no moment diagram and no transverse load";
    }
    return {};
}

// Nodes: the element count spread over the segments between the points that need a node (loads,
// restraints, the kinks of the diagram), each segment getting elements in proportion to its length.
std::vector<double> meshNodes(const CriticalMomentInput& in, const McrMomentDiagram& d)
{
    const double L = in.length;
    std::vector<double> bp{0.0, L};
    for (const McrPointLoad& p : in.pointLoads) bp.push_back(p.x);
    for (const McrLateralRestraint& l : in.lateralRestraints) bp.push_back(l.x);
    for (double x : in.torsionalRestraints) bp.push_back(x);
    if (d.stations.size() <= static_cast<std::size_t>(in.elements / 2) + 2)
        for (const McrStation& s : d.stations) bp.push_back(std::clamp(s.x, 0.0, L));
    std::sort(bp.begin(), bp.end());
    std::vector<double> u;
    for (double x : bp)
        if (u.empty() || x - u.back() > 1e-9 * L) u.push_back(x);
    if (L - u.back() > 1e-9 * L) u.push_back(L);
    u.back() = L;
    std::vector<double> nodes{0.0};
    for (std::size_t k = 0; k + 1 < u.size(); ++k) {
        const double len = u[k + 1] - u[k];
        const int m = std::max(1, static_cast<int>(std::lround(in.elements * len / L)));
        for (int e = 1; e <= m; ++e) nodes.push_back(e == m ? u[k + 1] : u[k] + len * e / m);
    }
    return nodes;
}

int nearestNode(const std::vector<double>& nodes, double x)
{
    const auto it = std::lower_bound(nodes.begin(), nodes.end(), x);
    if (it == nodes.begin()) return 0;
    if (it == nodes.end()) return static_cast<int>(nodes.size()) - 1;
    const int k = static_cast<int>(it - nodes.begin());
    return (x - nodes[k - 1] < nodes[k] - x) ? k - 1 : k;
}

// Gauss-Legendre, 4 points on [0, 1]: exact for the polynomials of degree 7 (cubic x cubic x quadratic).
constexpr std::array<double, 4> kGaussXi{0.0694318442029737, 0.3300094782075719, 0.6699905217924281,
                                         0.9305681557970263};
constexpr std::array<double, 4> kGaussW{0.1739274225687269, 0.3260725774312731, 0.3260725774312731,
                                        0.1739274225687269};

struct Shape {
    double N[4], dN[4], d2N[4]; // in x
};

Shape hermite(double xi, double h)
{
    Shape s;
    const double x2 = xi * xi, x3 = x2 * xi;
    s.N[0] = 1.0 - 3.0 * x2 + 2.0 * x3;
    s.N[1] = h * (xi - 2.0 * x2 + x3);
    s.N[2] = 3.0 * x2 - 2.0 * x3;
    s.N[3] = h * (-x2 + x3);
    s.dN[0] = (-6.0 * xi + 6.0 * x2) / h;
    s.dN[1] = 1.0 - 4.0 * xi + 3.0 * x2;
    s.dN[2] = (6.0 * xi - 6.0 * x2) / h;
    s.dN[3] = -2.0 * xi + 3.0 * x2;
    s.d2N[0] = (-6.0 + 12.0 * xi) / (h * h);
    s.d2N[1] = (-4.0 + 6.0 * xi) / h;
    s.d2N[2] = (6.0 - 12.0 * xi) / (h * h);
    s.d2N[3] = (-2.0 + 6.0 * xi) / h;
    return s;
}

// Global indices of the element's v and phi fields (local order: node a value, slope; node b value, slope).
void elementDofs(int a, int vIdx[4], int pIdx[4])
{
    const int b = a + 1;
    vIdx[0] = kDofs * a;
    vIdx[1] = kDofs * a + 1;
    vIdx[2] = kDofs * b;
    vIdx[3] = kDofs * b + 1;
    pIdx[0] = kDofs * a + 2;
    pIdx[1] = kDofs * a + 3;
    pIdx[2] = kDofs * b + 2;
    pIdx[3] = kDofs * b + 3;
}

// The constraints, applied alike to K (held diagonal 1) and G (held diagonal 0).
void constrain(const Model& m, const CriticalMomentInput& in, Band& A, double heldDiagonal)
{
    const int last = static_cast<int>(m.nodes.size()) - 1;
    for (int k = 0; k <= last; ++k)
        if (!std::isnan(m.zLateral[k])) A.substitute(kDofs * k, kDofs * k + 2, m.zLateral[k]);
    const auto holdEnd = [&](int k, const McrEnd& e) {
        if (e.lateral) A.hold(kDofs * k, heldDiagonal);
        if (e.lateralRotation) A.hold(kDofs * k + 1, heldDiagonal);
        if (e.twist) A.hold(kDofs * k + 2, heldDiagonal);
        if (e.warping) A.hold(kDofs * k + 3, heldDiagonal);
    };
    holdEnd(0, in.start);
    holdEnd(last, in.end);
    for (int k = 0; k <= last; ++k) {
        if (!std::isnan(m.zLateral[k])) A.hold(kDofs * k, heldDiagonal);
        if (m.heldPhi[k]) A.hold(kDofs * k + 2, heldDiagonal);
    }
}

Band stiffness(const Model& m, const CriticalMomentInput& in)
{
    Band K(m.n);
    const McrSection& s = in.section;
    const double EIz = in.E * s.Iz, GIt = in.G * s.It, EIw = in.E * s.Iw, c = in.cTheta;
    for (std::size_t e = 0; e + 1 < m.nodes.size(); ++e) {
        const double h = m.nodes[e + 1] - m.nodes[e];
        int vi[4], pi[4];
        elementDofs(static_cast<int>(e), vi, pi);
        double kv[4][4] = {}, kp[4][4] = {};
        for (int g = 0; g < 4; ++g) {
            const Shape f = hermite(kGaussXi[g], h);
            const double w = kGaussW[g] * h;
            for (int i = 0; i < 4; ++i)
                for (int j = 0; j <= i; ++j) {
                    kv[i][j] += w * EIz * f.d2N[i] * f.d2N[j];
                    kp[i][j] += w * (GIt * f.dN[i] * f.dN[j] + EIw * f.d2N[i] * f.d2N[j] + c * f.N[i] * f.N[j]);
                }
        }
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j <= i; ++j) {
                K.add(vi[i], vi[j], kv[i][j]);
                K.add(pi[i], pi[j], kp[i][j]);
            }
    }
    return K;
}

// The geometric matrix of a diagram (and, with loads, the load-height terms):
// 1/2 x^T G x = - int My phi v'' dx - 1/2 int My beta_y phi'^2 dx + 1/2 int q zg phi^2 dx + 1/2 sum P zg phi^2
// (so that the second variation of the total potential is 1/2 x^T (K - lambda G) x).
Band geometric(const Model& m, const CriticalMomentInput& in, const McrMomentDiagram& d, bool withLoads)
{
    Band G(m.n);
    const double beta = in.section.betaY;
    const double qz = withLoads ? in.q * levelZ(in.qLevel, in.section) : 0.0;
    for (std::size_t e = 0; e + 1 < m.nodes.size(); ++e) {
        const double xa = m.nodes[e];
        const double h = m.nodes[e + 1] - xa;
        int vi[4], pi[4];
        elementDofs(static_cast<int>(e), vi, pi);
        double gvp[4][4] = {}, gpp[4][4] = {};
        for (int g = 0; g < 4; ++g) {
            const Shape f = hermite(kGaussXi[g], h);
            const double w = kGaussW[g] * h;
            const double M = d.at(xa + kGaussXi[g] * h);
            for (int i = 0; i < 4; ++i) {
                for (int j = 0; j < 4; ++j) gvp[i][j] -= w * M * f.d2N[i] * f.N[j];
                for (int j = 0; j <= i; ++j) gpp[i][j] -= w * (M * beta * f.dN[i] * f.dN[j] + qz * f.N[i] * f.N[j]);
            }
        }
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) G.add(vi[i], pi[j], gvp[i][j]);
            for (int j = 0; j <= i; ++j) G.add(pi[i], pi[j], gpp[i][j]);
        }
    }
    if (withLoads)
        for (const McrPointLoad& p : in.pointLoads) {
            const int k = nearestNode(m.nodes, p.x);
            G.add(kDofs * k + 2, kDofs * k + 2, -p.P * levelZ(p.level, in.section));
        }
    return G;
}

struct Eigen1 {
    bool ok = false;
    double mu = 0.0;       // largest eigenvalue of G x = mu K x
    std::vector<double> x; // its vector (empty when not asked for)
};

// A deterministic start vector with every component present.
void startVector(std::vector<double>& q)
{
    std::uint64_t s = 0x9E3779B97F4A7C15ull;
    for (double& v : q) {
        s ^= s << 13;
        s ^= s >> 7;
        s ^= s << 17;
        v = static_cast<double>(s >> 11) * (1.0 / 9007199254740992.0) - 0.5;
    }
}

// Lanczos with full reorthogonalisation on C = L^-1 G L^-T (symmetric, eigenvalues mu). The vector
// operations go through Eigen's maps, which vectorise the dot products.
Eigen1 lanczos(const Factor& L, const Band& G, bool wantVector)
{
    using Vec = Eigen::Map<Eigen::VectorXd>;
    using CVec = Eigen::Map<const Eigen::VectorXd>;
    Eigen1 r;
    const int n = L.L.n;
    const int mMax = std::min(n, 80);
    std::unique_ptr<double[]> Qbuf(new double[static_cast<std::size_t>(mMax) * n]); // filled as it grows
    double* Q = Qbuf.get();
    const auto q = [&](int k) { return Vec(Q + static_cast<std::size_t>(k) * n, n); };
    Eigen::VectorXd w(n), t(n), coef(mMax);
    std::vector<double> alpha, beta;
    alpha.reserve(mMax);
    beta.reserve(mMax);
    {
        std::vector<double> q0(n);
        startVector(q0);
        q(0) = CVec(q0.data(), n).normalized();
    }

    Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd> tri;
    double theta = 0.0, thetaPrev = std::numeric_limits<double>::quiet_NaN();
    int m = 0;
    double scale = 0.0;
    for (int j = 0; j < mMax; ++j) {
        t = q(j);
        backward(L, t.data());
        G.multiply(t.data(), w.data());
        forward(L, w.data());
        const double a = q(j).dot(w);
        alpha.push_back(a);
        // Full reorthogonalisation (classical Gram-Schmidt against every Lanczos vector, which also
        // removes the a q_j and b q_j-1 terms of the three-term recurrence).
        const Eigen::Map<const Eigen::MatrixXd> Qj(Q, n, j + 1);
        coef.head(j + 1).noalias() = Qj.transpose() * w;
        w.noalias() -= Qj * coef.head(j + 1);
        const double b = w.norm();
        scale = std::max({scale, std::fabs(a), b});
        m = j + 1;
        const bool exhausted = b <= 1e-13 * scale || m == mMax;
        if ((m >= 9 && m % 3 == 0) || exhausted) {
            Eigen::VectorXd dg = Eigen::Map<const Eigen::VectorXd>(alpha.data(), m);
            Eigen::VectorXd sd = Eigen::Map<const Eigen::VectorXd>(beta.data(), m - 1);
            tri.computeFromTridiagonal(dg, sd, Eigen::EigenvaluesOnly);
            theta = tri.eigenvalues()(m - 1);
            if (exhausted || std::fabs(theta - thetaPrev) <= 1e-12 * std::fabs(theta)) break;
            thetaPrev = theta;
        }
        beta.push_back(b);
        q(j + 1) = w / b;
    }
    r.mu = theta;
    r.ok = std::isfinite(theta);
    if (wantVector && r.ok) {
        Eigen::VectorXd dg = Eigen::Map<const Eigen::VectorXd>(alpha.data(), m);
        Eigen::VectorXd sd = Eigen::Map<const Eigen::VectorXd>(beta.data(), m - 1);
        tri.computeFromTridiagonal(dg, sd, Eigen::ComputeEigenvectors);
        const Eigen::VectorXd s = tri.eigenvectors().col(m - 1);
        const Eigen::Map<const Eigen::MatrixXd> Qm(Q, n, m);
        const Eigen::VectorXd y = Qm * s;
        r.x.assign(y.data(), y.data() + n);
        backward(L, r.x.data());
    }
    return r;
}

Eigen::MatrixXd dense(const Band& A)
{
    Eigen::MatrixXd D = Eigen::MatrixXd::Zero(A.n, A.n);
    for (int i = 0; i < A.n; ++i)
        for (int j = std::max(0, i - kBand); j <= i; ++j) D(i, j) = D(j, i) = A.get(i, j);
    return D;
}

Eigen1 denseSolve(const Band& K, const Band& G, bool wantVector)
{
    Eigen1 r;
    Eigen::GeneralizedSelfAdjointEigenSolver<Eigen::MatrixXd> ges(
        dense(G), dense(K), wantVector ? Eigen::ComputeEigenvectors | Eigen::Ax_lBx : Eigen::EigenvaluesOnly | Eigen::Ax_lBx);
    if (ges.info() != Eigen::Success) return r;
    const Eigen::Index last = ges.eigenvalues().size() - 1;
    r.mu = ges.eigenvalues()(last);
    r.ok = std::isfinite(r.mu);
    if (wantVector) {
        const Eigen::VectorXd x = ges.eigenvectors().col(last);
        r.x.assign(x.data(), x.data() + x.size());
    }
    return r;
}

} // namespace

CriticalMomentResult criticalMoment(const CriticalMomentInput& in)
{
    CriticalMomentResult res;
    res.reason = validate(in);
    if (!res.reason.empty()) return res;

    const McrMomentDiagram diagram =
        in.moments.empty() ? simplySupportedMoments(in.length, 0.0, 0.0, in.q, in.pointLoads) : in.moments;
    res.mMax = diagram.maxAbs();
    if (!(res.mMax > 0.0)) {
        res.reason = "the moment diagram is zero everywhere";
        return res;
    }

    Model m;
    m.nodes = meshNodes(in, diagram);
    const int nn = static_cast<int>(m.nodes.size());
    res.elements = nn - 1;
    m.n = kDofs * nn;
    m.zLateral.assign(nn, std::numeric_limits<double>::quiet_NaN());
    m.heldPhi.assign(nn, false);
    for (const McrLateralRestraint& l : in.lateralRestraints) {
        const int k = nearestNode(m.nodes, l.x);
        const double z = levelZ(l.level, in.section);
        // Two lateral restraints at different heights at one node hold v and phi.
        if (!std::isnan(m.zLateral[k]) && m.zLateral[k] != z) m.heldPhi[k] = true;
        m.zLateral[k] = z;
    }
    for (double x : in.torsionalRestraints) m.heldPhi[nearestNode(m.nodes, x)] = true;
    // A node whose twist is held: its lateral restraint holds v whatever its height.
    for (int k = 0; k < nn; ++k)
        if (m.heldPhi[k] && !std::isnan(m.zLateral[k])) m.zLateral[k] = 0.0;
    const auto endHoldsTwist = [&](int k) { return (k == 0 && in.start.twist) || (k == nn - 1 && in.end.twist); };
    for (int k : {0, nn - 1})
        if (endHoldsTwist(k) && !std::isnan(m.zLateral[k])) m.zLateral[k] = 0.0;

    Band K = stiffness(m, in);
    constrain(m, in, K, 1.0);
    Factor L;
    if (!cholesky(K, L)) {
        res.reason = "the supports and restraints leave a mechanism (the stiffness matrix is singular)";
        return res;
    }

    const auto solve = [&](const McrMomentDiagram& d, bool withLoads, bool wantVector) {
        Band G = geometric(m, in, d, withLoads);
        constrain(m, in, G, 0.0);
        return in.solver == McrEigenSolver::Dense ? denseSolve(K, G, wantVector) : lanczos(L, G, wantVector);
    };

    const Eigen1 main = solve(diagram, true, in.withShape);
    if (!main.ok) {
        res.reason = "the eigenvalue solver did not converge";
        return res;
    }
    if (!(main.mu > 1e-12)) {
        res.reason = "no buckling: the diagram and the loads do not destabilise the member";
        return res;
    }
    res.lambda = 1.0 / main.mu;
    res.mcr = res.lambda * res.mMax;

    if (in.withC1) {
        const double Mref = diagram.extreme();
        const Eigen1 ref = solve(McrMomentDiagram::uniform(in.length, Mref), false, false);
        if (ref.ok && ref.mu > 1e-12) {
            res.mcrUniform = std::fabs(Mref) / ref.mu;
            res.c1 = res.mcr / res.mcrUniform;
        }
    }

    if (in.withShape && !main.x.empty()) {
        res.x = m.nodes;
        res.v.resize(nn);
        res.phi.resize(nn);
        for (int k = 0; k < nn; ++k) {
            const double phi = main.x[kDofs * k + 2];
            res.phi[k] = phi;
            res.v[k] = std::isnan(m.zLateral[k]) ? main.x[kDofs * k] : m.zLateral[k] * phi;
        }
        double vmax = 0.0, pmax = 0.0, vSigned = 0.0, pSigned = 0.0;
        for (int k = 0; k < nn; ++k) {
            if (std::fabs(res.v[k]) > vmax) vmax = std::fabs(res.v[k]), vSigned = res.v[k];
            if (std::fabs(res.phi[k]) > pmax) pmax = std::fabs(res.phi[k]), pSigned = res.phi[k];
        }
        const double f = vmax > 1e-9 * pmax ? 1.0 / vSigned : (pmax > 0.0 ? 1.0 / pSigned : 1.0);
        for (int k = 0; k < nn; ++k) {
            res.v[k] *= f;
            res.phi[k] *= f;
        }
    }
    res.ok = true;
    return res;
}

} // namespace design
