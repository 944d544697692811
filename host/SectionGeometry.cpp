#include "SectionGeometry.h"

#include <algorithm>
#include <cmath>

namespace sdbgeom {

namespace {

constexpr double halfPi = 1.57079632679489661923;

struct Direction {
    double y, z;
};

Direction unit(double dy, double dz)
{
    const double l = std::hypot(dy, dz);
    return l > 0.0 ? Direction{dy / l, dz / l} : Direction{0.0, 0.0};
}

void push(SDBOutline& outline, double y, double z)
{
    const std::size_t begin = outline.ringEnds.empty() ? 0 : outline.ringEnds.back();
    if (outline.points.size() > begin) {
        const SDBOutline::Point& last = outline.points.back();
        if (last.y == y && last.z == z) return;  // no zero-length edges
    }
    outline.points.push_back({y, z});
}

// Signed area of ring i.
double ringArea(const SDBOutline& o, std::size_t begin, std::size_t end)
{
    double a = 0.0;
    for (std::size_t i = begin; i < end; ++i) {
        const auto& p = o.points[i];
        const auto& q = o.points[i + 1 < end ? i + 1 : begin];
        a += p.y * q.z - q.y * p.z;
    }
    return a / 2.0;
}

// Integrals over the part of the outline where w = coordinate - c has the wanted sign (w >= 0 when
// upper, w <= 0 otherwise): area and int w dA. Along the cut line w = 0, so with the boundary forms
// A = closed-integral(-w dy) and int w dA = closed-integral(-w^2/2 dy) (horizontal cut; the vertical cut
// uses +u dz and +u^2/2 dz) the cut line contributes nothing and only the clipped edges are summed.
struct PartIntegrals {
    double area = 0.0;
    double moment = 0.0;  // int w dA
};

PartIntegrals clippedIntegrals(const SDBOutline& o, bool horizontal, double c, bool upper)
{
    PartIntegrals r;
    std::size_t begin = 0;
    for (std::size_t end : o.ringEnds) {
        for (std::size_t i = begin; i < end; ++i) {
            const auto& p = o.points[i];
            const auto& q = o.points[i + 1 < end ? i + 1 : begin];
            // w: distance from the cut across it; s: the coordinate along it.
            double w0 = (horizontal ? p.z : p.y) - c, w1 = (horizontal ? q.z : q.y) - c;
            double s0 = horizontal ? p.y : p.z, s1 = horizontal ? q.y : q.z;
            if (!upper) {
                w0 = -w0;
                w1 = -w1;
            }
            if (w0 < 0.0 && w1 < 0.0) continue;
            if (w0 < 0.0 || w1 < 0.0) {
                const double f = w0 / (w0 - w1);  // where w = 0
                const double sc = s0 + f * (s1 - s0);
                if (w0 < 0.0) {
                    w0 = 0.0;
                    s0 = sc;
                } else {
                    w1 = 0.0;
                    s1 = sc;
                }
            }
            if (!upper) {
                w0 = -w0;
                w1 = -w1;
            }
            const double ds = s1 - s0;
            const double sign = horizontal ? -1.0 : 1.0;
            r.area += sign * ds * (w0 + w1) / 2.0;
            r.moment += sign * ds * (w0 * w0 + w0 * w1 + w1 * w1) / 6.0;
        }
        begin = end;
    }
    return r;
}

} // namespace

void addRing(SDBOutline& outline, const Corner* corners, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const Corner& prev = corners[(i + count - 1) % count];
        const Corner& cur = corners[i];
        const Corner& next = corners[(i + 1) % count];
        if (cur.r <= 0.0) {
            push(outline, cur.y, cur.z);
            continue;
        }
        const Direction in = unit(cur.y - prev.y, cur.z - prev.z);
        const Direction out = unit(next.y - cur.y, next.z - cur.z);
        // Tangent points T1 = P - in r and T2 = P + out r; centre C = T1 + out r;
        // point(phi) = C + r (-out cos(phi) + in sin(phi)), phi from 0 to pi/2.
        const double cy = cur.y - in.y * cur.r + out.y * cur.r;
        const double cz = cur.z - in.z * cur.r + out.z * cur.r;
        for (int k = 0; k <= arcSegmentsPerQuarter; ++k) {
            const double phi = halfPi * k / arcSegmentsPerQuarter;
            const double cs = std::cos(phi), sn = std::sin(phi);
            push(outline, cy + cur.r * (-out.y * cs + in.y * sn), cz + cur.r * (-out.z * cs + in.z * sn));
        }
    }
    // Close the ring; drop a last point equal to the first.
    const std::size_t begin = outline.ringEnds.empty() ? 0 : outline.ringEnds.back();
    if (outline.points.size() > begin + 1) {
        const auto& first = outline.points[begin];
        const auto& last = outline.points.back();
        if (first.y == last.y && first.z == last.z) outline.points.pop_back();
    }
    outline.ringEnds.push_back(static_cast<unsigned>(outline.points.size()));
}

void addRingAnyAngle(SDBOutline& outline, const Corner* corners, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const Corner& prev = corners[(i + count - 1) % count];
        const Corner& cur = corners[i];
        const Corner& next = corners[(i + 1) % count];
        const Direction in = unit(cur.y - prev.y, cur.z - prev.z);
        const Direction out = unit(next.y - cur.y, next.z - cur.z);
        const double cross = in.y * out.z - in.z * out.y;
        const double dot = in.y * out.y + in.z * out.z;
        const double theta = std::atan2(std::fabs(cross), dot);  // the turn at the corner, 0 to pi
        if (cur.r <= 0.0 || theta < 1e-12) {
            push(outline, cur.y, cur.z);
            continue;
        }
        const double side = cross > 0.0 ? 1.0 : -1.0;  // the turn's sense
        const double tangent = cur.r * std::tan(theta / 2.0);
        // The tangent point on the incoming edge, the normal towards the centre, the centre.
        const double t1y = cur.y - in.y * tangent, t1z = cur.z - in.z * tangent;
        const double ny = -side * in.z, nz = side * in.y;
        const double cy = t1y + ny * cur.r, cz = t1z + nz * cur.r;
        const int segments = std::max(1, static_cast<int>(std::ceil(arcSegmentsPerQuarter * theta / halfPi)));
        // From the centre to T1 is -n; it turns by theta in the sense of the corner.
        const double a0 = std::atan2(-nz, -ny);
        for (int k = 0; k <= segments; ++k) {
            const double a = a0 + side * theta * k / segments;
            push(outline, cy + cur.r * std::cos(a), cz + cur.r * std::sin(a));
        }
    }
    const std::size_t begin = outline.ringEnds.empty() ? 0 : outline.ringEnds.back();
    if (outline.points.size() > begin + 1) {
        const auto& first = outline.points[begin];
        const auto& last = outline.points.back();
        if (first.y == last.y && first.z == last.z) outline.points.pop_back();
    }
    outline.ringEnds.push_back(static_cast<unsigned>(outline.points.size()));
}

AreaProperties centreOutline(SDBOutline& o)
{
    // Orient: outer ring positive, holes negative.
    std::size_t begin = 0;
    for (std::size_t r = 0; r < o.ringEnds.size(); ++r) {
        const std::size_t end = o.ringEnds[r];
        const double a = ringArea(o, begin, end);
        if ((r == 0 && a < 0.0) || (r > 0 && a > 0.0))
            std::reverse(o.points.begin() + static_cast<long>(begin), o.points.begin() + static_cast<long>(end));
        begin = end;
    }
    double A = 0.0, Sy = 0.0, Sz = 0.0, Iyy = 0.0, Izz = 0.0, Iyz = 0.0;
    begin = 0;
    for (std::size_t end : o.ringEnds) {
        for (std::size_t i = begin; i < end; ++i) {
            const auto& p = o.points[i];
            const auto& q = o.points[i + 1 < end ? i + 1 : begin];
            const double cr = p.y * q.z - q.y * p.z;
            A += cr / 2.0;
            Sy += cr * (p.z + q.z) / 6.0;
            Sz += cr * (p.y + q.y) / 6.0;
            Iyy += cr * (p.z * p.z + p.z * q.z + q.z * q.z) / 12.0;
            Izz += cr * (p.y * p.y + p.y * q.y + q.y * q.y) / 12.0;
            Iyz += cr * (2.0 * p.y * p.z + p.y * q.z + q.y * p.z + 2.0 * q.y * q.z) / 24.0;
        }
        begin = end;
    }
    AreaProperties r;
    r.A = A;
    r.cy = Sz / A;
    r.cz = Sy / A;
    r.Iy = Iyy - A * r.cz * r.cz;
    r.Iz = Izz - A * r.cy * r.cy;
    r.Iyz = Iyz - A * r.cy * r.cz;
    bool first = true;
    for (auto& p : o.points) {
        p.y -= r.cy;
        p.z -= r.cz;
        if (first) {
            r.yMin = r.yMax = p.y;
            r.zMin = r.zMax = p.z;
            first = false;
        }
        r.yMin = std::min(r.yMin, p.y);
        r.yMax = std::max(r.yMax, p.y);
        r.zMin = std::min(r.zMin, p.z);
        r.zMax = std::max(r.zMax, p.z);
    }
    return r;
}

double firstMomentBeyond(const SDBOutline& o, bool horizontal, double c)
{
    const PartIntegrals part = clippedIntegrals(o, horizontal, c, c >= 0.0);
    // int coordinate dA = int w dA + c * area.
    return std::fabs(part.moment + c * part.area);
}

double plasticModulus(const SDBOutline& o, bool horizontal, double lo, double hi)
{
    const double total = clippedIntegrals(o, horizontal, lo - 1.0, true).area;
    for (int k = 0; k < 80 && hi - lo > 1e-14; ++k) {
        const double mid = (lo + hi) / 2.0;
        if (clippedIntegrals(o, horizontal, mid, true).area > total / 2.0)
            lo = mid;
        else
            hi = mid;
    }
    const double c = (lo + hi) / 2.0;
    return std::fabs(clippedIntegrals(o, horizontal, c, true).moment) +
           std::fabs(clippedIntegrals(o, horizontal, c, false).moment);
}

double chainWarpingConstant(const double* y, const double* z, std::size_t nodes, double t)
{
    // Centroid of the centre line.
    double A = 0.0, Sy = 0.0, Sz = 0.0;
    for (std::size_t i = 0; i + 1 < nodes; ++i) {
        const double l = std::hypot(y[i + 1] - y[i], z[i + 1] - z[i]);
        A += l * t;
        Sz += l * t * (y[i] + y[i + 1]) / 2.0;
        Sy += l * t * (z[i] + z[i + 1]) / 2.0;
    }
    if (A <= 0.0) return 0.0;
    const double yc = Sz / A, zc = Sy / A;
    // int f g ds of two linear functions over a segment of length l.
    auto lin = [](double l, double f0, double f1, double g0, double g1) {
        return l / 6.0 * (2.0 * f0 * g0 + f0 * g1 + f1 * g0 + 2.0 * f1 * g1);
    };
    double w0 = 0.0;  // sectorial coordinate about the centroid as pole, 0 at the first node
    double Iw = 0.0, Aw = 0.0, Iwy = 0.0, Iwz = 0.0, Iyy = 0.0, Izz = 0.0, Iyz = 0.0;
    for (std::size_t i = 0; i + 1 < nodes; ++i) {
        const double y0 = y[i] - yc, z0 = z[i] - zc, y1 = y[i + 1] - yc, z1 = z[i + 1] - zc;
        const double l = std::hypot(y1 - y0, z1 - z0);
        const double w1 = w0 + (y0 * z1 - z0 * y1);
        Aw += t * l * (w0 + w1) / 2.0;
        Iw += t * lin(l, w0, w1, w0, w1);
        Iwy += t * lin(l, w0, w1, y0, y1);
        Iwz += t * lin(l, w0, w1, z0, z1);
        Iyy += t * lin(l, y0, y1, y0, y1);
        Izz += t * lin(l, z0, z1, z0, z1);
        Iyz += t * lin(l, y0, y1, z0, z1);
        w0 = w1;
    }
    // Remove the projection of w on span{1, y, z} (y and z are centroidal, so 1 is orthogonal to them).
    double result = Iw - Aw * Aw / A;
    const double det = Iyy * Izz - Iyz * Iyz;
    if (det > 0.0) {
        const double by = (Iwy * Izz - Iwz * Iyz) / det;
        const double bz = (Iwz * Iyy - Iwy * Iyz) / det;
        result -= by * Iwy + bz * Iwz;
    }
    return std::max(result, 0.0);
}

} // namespace sdbgeom
