#include "EnCriticalMoment.h"

#include "CriticalMomentSolver.h"

#include <SDBSection.h>
#include <SDBSectionVisitor.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

// Rayleigh-Ritz on fork supports (v = phi = 0, v'' = phi'' = 0 at both ends): v = sum a_i sin(i pi x / L),
// phi = sum b_i sin(i pi x / L), i = 1..n. The energy is the one of the finite-element model
// (docs/mcr.md), so the two agree up to the truncation of the series:
//
//   K (diagonal):  K_vv,i = E Iz k_i^4 L/2,   K_pp,i = (G It k_i^2 + E Iw k_i^4 + c_theta) L/2,   k_i = i pi / L
//   G:             G_vp,ij = k_i^2 int M s_i s_j dx                         (from - int My phi v'')
//                  G_pp,ij = - beta_y k_i k_j int M c_i c_j dx              (Wagner, - 1/2 int My beta_y phi'^2)
//                            - q zg L/2 delta_ij  or  - P zg s_i(L/2) s_j(L/2)  (load height)
//
// With the moments scaled to a largest |My| of 1, the smallest positive lambda of K x = lambda G x is Mcr.
// In the variables y = K^1/2 x the problem is C y = mu y, mu = 1 / lambda, with
//
//   C = [ 0    B ]     B_ij = 2 SM_ij / sqrt(E Iz kp_j)                      SM_ij = int_0^1 M s_i s_j dxi
//       [ B^T  H ]     H_ij = - (2 beta_y k_i k_j CM_ij + w e_ij) / sqrt(kp_i kp_j)   CM_ij = int_0^1 M c_i c_j dxi
//
// (kp_j = G It k_j^2 + E Iw k_j^4 + c_theta; w = 8 d zg / L^2 with d the rise of the middle value above
// the chord of the end values; e_ij = delta_ij for a uniform load, sin(i pi/2) sin(j pi/2) for a point
// load at mid-span). The moment integrals follow from the cosine moments P(m) = int_0^1 M cos(m pi xi)
// dxi of the diagram: SM_ij = (P(|i-j|) - P(i+j)) / 2, CM_ij = (P(|i-j|) + P(i+j)) / 2; P is linear in
// the three moment values, so fixed tables of the shape functions give it in 3 (2n + 1) products.
//
// The largest mu is found by inverse iteration on the pencil with a shift sigma kept below lambda_1:
// I - sigma C is positive definite exactly when sigma < lambda_1, which the Cholesky factor of its Schur
// complement I - sigma H - sigma^2 B^T B (n x n) decides. The Rayleigh quotient of C is at most mu_1, so
// 1 / rho bounds lambda_1 from above; the shift moves up towards it after every step, which makes the
// iteration converge in a few steps. The operator is (I - sigma C)^-1 C + I / (2 sigma): its eigenvalue
// of mu_1 is the largest in magnitude whatever the negative eigenvalues (they map into
// (-1 / (2 sigma), 1 / (2 sigma))), so the iteration cannot settle on the reversed diagram's mode.

int g_forceTerms = 0; long g_iters = 0, g_factors = 0, g_calls = 0;
namespace design {

namespace {

constexpr double pi = std::numbers::pi;

// Sine terms: 8 unless a restraint makes the uniform-moment mode shorter than the member (tees and
// mono-symmetric I sections with the smaller flange in compression and c_theta > 0).
constexpr int kTerms = 8;
constexpr int kMaxTerms = 16;
constexpr int kCosines = 2 * kMaxTerms + 1;

// The cosine moments of the shape functions of the diagram: Polygonal the hat functions of the start,
// middle and end values (two straight lines), Parabolic the quadratic Lagrange polynomials on 0, 1/2, 1.
struct Tables {
    double polygonal[3][kCosines];
    double parabolic[3][kCosines];
    double sinMid[kMaxTerms + 1]; // sin(i pi / 2)
};

// int_a^b (c0 + c1 xi + c2 xi^2) cos(m pi xi) dxi
double cosineMoment(int m, double a, double b, double c0, double c1, double c2)
{
    const auto F = [&](double x) {
        if (m == 0) return c0 * x + c1 * x * x / 2.0 + c2 * x * x * x / 3.0;
        const double w = m * pi, s = std::sin(w * x), c = std::cos(w * x);
        return c0 * s / w + c1 * (x * s / w + c / (w * w)) + c2 * (x * x * s / w + 2.0 * x * c / (w * w) - 2.0 * s / (w * w * w));
    };
    return F(b) - F(a);
}

Tables buildTables()
{
    Tables t{};
    for (int m = 0; m < kCosines; ++m) {
        t.polygonal[0][m] = cosineMoment(m, 0.0, 0.5, 1.0, -2.0, 0.0);
        t.polygonal[1][m] = cosineMoment(m, 0.0, 0.5, 0.0, 2.0, 0.0) + cosineMoment(m, 0.5, 1.0, 2.0, -2.0, 0.0);
        t.polygonal[2][m] = cosineMoment(m, 0.5, 1.0, -1.0, 2.0, 0.0);
        t.parabolic[0][m] = cosineMoment(m, 0.0, 1.0, 1.0, -3.0, 2.0);
        t.parabolic[1][m] = cosineMoment(m, 0.0, 1.0, 0.0, 4.0, -4.0);
        t.parabolic[2][m] = cosineMoment(m, 0.0, 1.0, 0.0, -1.0, 2.0);
    }
    for (int i = 0; i <= kMaxTerms; ++i) t.sinMid[i] = (i % 2 == 0) ? 0.0 : ((i / 2) % 2 == 0 ? 1.0 : -1.0);
    return t;
}

const Tables& tables()
{
    static const Tables t = buildTables();
    return t;
}

// The kinds covered: I (doubly and mono-symmetric), channels (U, WU, lipped C), hollow and solid
// rectangles (Iw = 0) and tees. Angles and Z sections bend about non-principal axes; circular
// sections do not buckle laterally.
class CoveredKind final : public SDBSectionVisitor {
public:
    int visit(SDBSectionZ*) override { return 0; }
    int visit(SDBSectionWZ*) override { return 0; }
    int visit(SDBSectionWU*) override { return 1; }
    int visit(SDBSectionUpstandBeam*) override { return 0; }
    int visit(SDBSectionU*) override { return 1; }
    int visit(SDBSectionThick*) override { return 0; }
    int visit(SDBSectionT*) override { return 1; }
    int visit(SDBSectionSpring*) override { return 0; }
    int visit(SDBSectionRH*) override { return 1; }
    int visit(SDBSectionR*) override { return 1; }
    int visit(SDBSectionPolygon*) override { return 0; }
    int visit(SDBSectionO*) override { return 0; }
    int visit(SDBSectionL*) override { return 0; }
    int visit(SDBSectionIX*) override { return 0; }
    int visit(SDBSectionI*) override { return 1; }
    int visit(SDBSectionDownstandBeam*) override { return 0; }
    int visit(SDBSectionCircle*) override { return 0; }
    int visit(SDBSectionC*) override { return 1; }
    int visit(SDBSectionBeamPoly*) override { return 0; }
    int visit(SDBSectionAsPoint*) override { return 0; }
    int visit(SDBSectionAsLine*) override { return 0; }
};

bool finite(double x) { return std::isfinite(x); }

// |M| of the uniform-moment critical moment in mode i (sign s of the moment): the closed form with
// zj = beta_y / 2, |M| = Pz (sqrt((beta_y/2)^2 + kp / (E Iz k^4)) + s beta_y / 2), Pz = E Iz k^2.
double uniformMode(int i, double s, double L, double EIz, double GIt, double EIw, double cTheta, double beta)
{
    const double k = i * pi / L, k2 = k * k;
    const double Pz = EIz * k2;
    const double kp = GIt * k2 + EIw * k2 * k2 + cTheta;
    const double half = 0.5 * beta;
    const double r = std::sqrt(half * half + kp / (EIz * k2 * k2));
    return s > 0.0 ? Pz * (r + half) : Pz * (r - half);
}

// The uniform-moment critical moment (the smallest over the sine modes) and its mode number. Mode 1
// governs unless the Wagner term destabilises (s beta_y < 0) and c_theta > 0.
struct UniformMode {
    double M;
    int mode;
};

UniformMode uniformCritical(double s, double L, double EIz, double GIt, double EIw, double cTheta, double beta)
{
    UniformMode best{uniformMode(1, s, L, EIz, GIt, EIw, cTheta, beta), 1};
    if (!(cTheta > 0.0) || !(s * beta < 0.0)) return best;
    for (int i = 2; i <= 64; ++i) {
        const double M = uniformMode(i, s, L, EIz, GIt, EIw, cTheta, beta);
        if (M < best.M) best = {M, i};
    }
    return best;
}

// The scaled eigenproblem C y = mu y of the Ritz model, n x n blocks in fixed arrays.
struct Ritz {
    int n = kTerms;
    double B[kMaxTerms][kMaxTerms];   // coupling v - phi
    double H[kMaxTerms][kMaxTerms];   // phi - phi (Wagner, load height)
    double BtB[kMaxTerms][kMaxTerms]; // B^T B
    double Lf[kMaxTerms][kMaxTerms];  // Cholesky factor of I - sigma H - sigma^2 B^T B (lower)
    double inv[kMaxTerms];            // 1 / Lf(i, i)

    // True when I - sigma C is positive definite (sigma < lambda_1); the factor is kept.
    bool factor(double sigma)
    {
        ++g_factors;
        const double s2 = sigma * sigma;
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j <= i; ++j) {
                double a = -sigma * H[i][j] - s2 * BtB[i][j];
                if (i == j) a += 1.0;
                for (int k = 0; k < j; ++k) a -= Lf[i][k] * Lf[j][k];
                if (i == j) {
                    if (!(a > 1e-13)) return false;
                    const double d = std::sqrt(a);
                    Lf[i][i] = d;
                    inv[i] = 1.0 / d;
                } else {
                    Lf[i][j] = a * inv[j];
                }
            }
        }
        return true;
    }

    // w = C y (y = [v; phi], 2n)
    void apply(const double* y, double* w) const
    {
        const double* yv = y;
        const double* yp = y + n;
        for (int i = 0; i < n; ++i) {
            double sv = 0.0, sp = 0.0;
            for (int j = 0; j < n; ++j) {
                sv += B[i][j] * yp[j];
                sp += B[j][i] * yv[j] + H[i][j] * yp[j];
            }
            w[i] = sv;
            w[n + i] = sp;
        }
    }

    // z = (I - sigma C)^-1 w with the current factor.
    void solve(double sigma, const double* w, double* z) const
    {
        const double* wv = w;
        const double* wp = w + n;
        double* zv = z;
        double* zp = z + n;
        for (int i = 0; i < n; ++i) {
            double s = wp[i];
            for (int j = 0; j < n; ++j) s += sigma * B[j][i] * wv[j];
            for (int k = 0; k < i; ++k) s -= Lf[i][k] * zp[k];
            zp[i] = s * inv[i];
        }
        for (int i = n - 1; i >= 0; --i) {
            double s = zp[i];
            for (int k = i + 1; k < n; ++k) s -= Lf[k][i] * zp[k];
            zp[i] = s * inv[i];
        }
        for (int i = 0; i < n; ++i) {
            double s = 0.0;
            for (int j = 0; j < n; ++j) s += B[i][j] * zp[j];
            zv[i] = wv[i] + sigma * s;
        }
    }
};

struct Eigenvalue {
    bool ok = false;
    double lambda = 0.0;
};

// The smallest positive lambda (1 / the largest mu of C).
Eigenvalue smallestPositive(Ritz& r)
{
    const int n = r.n, n2 = 2 * n;
    // An upper bound of mu_1: the Frobenius norm of C and Gershgorin's bound of its largest eigenvalue.
    double frob = 0.0, gersh = 0.0;
    for (int i = 0; i < n; ++i) {
        double rowV = 0.0, rowP = r.H[i][i];
        for (int j = 0; j < n; ++j) {
            frob += 2.0 * r.B[i][j] * r.B[i][j] + r.H[i][j] * r.H[i][j];
            rowV += std::fabs(r.B[i][j]);
            rowP += std::fabs(r.B[j][i]) + (j == i ? 0.0 : std::fabs(r.H[i][j]));
        }
        gersh = std::max({gersh, rowV, rowP});
    }
    const double bound = std::min(std::sqrt(frob), gersh);
    if (!(bound > 0.0) || !finite(bound)) return {};
    double sigma = 0.999 / bound; // below lambda_1
    bool factored = false;
    for (int attempt = 0; attempt < 8 && !factored; ++attempt) {
        factored = r.factor(sigma);
        if (!factored) sigma *= 0.5;
    }
    if (!factored) return {};

    // Start: twist in the first sine terms, the lateral displacement that the coupling gives it.
    double y[2 * kMaxTerms], w[2 * kMaxTerms], z[2 * kMaxTerms];
    for (int j = 0; j < n; ++j) y[n + j] = 1.0 / (j + 1);
    for (int i = 0; i < n; ++i) {
        double s = 0.0;
        for (int j = 0; j < n; ++j) s += r.B[i][j] * y[n + j];
        y[i] = s;
    }
    double norm = 0.0;
    for (int i = 0; i < n2; ++i) norm += y[i] * y[i];
    norm = std::sqrt(norm);
    for (int i = 0; i < n2; ++i) y[i] /= norm;

    double upper = std::numeric_limits<double>::infinity(); // lambda_1 <= upper
    double rhoPrev = 0.0;
    ++g_calls;
    for (int it = 0; it < 60; ++it) {
        ++g_iters;
        r.apply(y, w);
        double rho = 0.0;
        for (int i = 0; i < n2; ++i) rho += y[i] * w[i];
        if (rho > 0.0) upper = std::min(upper, 1.0 / rho);
        if (it >= 2 && rho > 0.0 && std::fabs(rho - rhoPrev) <= 1e-10 * rho && upper - sigma <= 0.05 * upper)
            return {true, 1.0 / rho};
        rhoPrev = rho;
        // The step with the operator (I - sigma C)^-1 C + I / (2 sigma).
        r.solve(sigma, w, z);
        const double alpha = 0.5 / sigma;
        norm = 0.0;
        for (int i = 0; i < n2; ++i) {
            z[i] += alpha * y[i];
            norm += z[i] * z[i];
        }
        norm = std::sqrt(norm);
        if (!(norm > 0.0) || !finite(norm)) return {};
        for (int i = 0; i < n2; ++i) y[i] = z[i] / norm;
        // Move the shift up to near the bound; a failed factor proves the trial above lambda_1.
        if (finite(upper) && upper - sigma > 1e-9 * upper) {
            const double trial = sigma + 0.95 * (upper - sigma);
            if (r.factor(trial)) {
                sigma = trial;
            } else {
                upper = trial;
                if (!r.factor(sigma)) return {};
            }
        }
    }
    return {};
}

} // namespace

EnCriticalMoment enCriticalMoment(const MemberRequest& request, double E, double G)
{
    EnCriticalMoment out;
    if (request.section == nullptr) return out;
    const SteelDesign::MomentDistribution& md = request.moments;
    const double L = request.lengths.lateralTorsional;
    const double M1 = md.getMomentWert(SteelDesign::Axis::y, 0);
    const double Mm = md.getMomentWert(SteelDesign::Axis::y, 1);
    const double M2 = md.getMomentWert(SteelDesign::Axis::y, 2);
    const double cTheta = request.cTheta;
    if (!finite(E) || !(E > 0.0) || !finite(G) || !(G > 0.0) || !finite(L) || !(L > 0.0) || !finite(M1) ||
        !finite(Mm) || !finite(M2) || !finite(cTheta) || cTheta < 0.0)
        return out;

    CoveredKind kind;
    if (request.section->accept(&kind) != 1) return out;
    const McrSection s = mcrSection(*request.section);
    if (!finite(s.Iz) || !(s.Iz > 0.0) || !finite(s.It) || !(s.It > 0.0) || !finite(s.Iw) || s.Iw < 0.0 ||
        !finite(s.betaY) || !finite(s.zTop) || !finite(s.zBottom))
        return out;

    const bool parabolic = md.getMomentDiagram(SteelDesign::Axis::y) == SteelDesign::MomentDiagram::Parabolic;
    // The largest |My| and the extreme value with its sign (first of equal magnitudes, as
    // McrMomentDiagram::extreme): the values, and the vertex of a parabola inside the span.
    const double d = Mm - 0.5 * (M1 + M2); // rise of the middle value above the chord
    double extreme = M1;
    const auto candidate = [&extreme](double M) {
        if (std::fabs(M) > std::fabs(extreme)) extreme = M;
    };
    if (parabolic) {
        // M(xi) = M1 (1 - xi) + M2 xi + 4 d xi (1 - xi): vertex at xi = 1/2 + (M2 - M1) / (8 d).
        if (d != 0.0) {
            const double xi = 0.5 + (M2 - M1) / (8.0 * d);
            if (xi > 0.0 && xi < 1.0) candidate(M1 * (1.0 - xi) + M2 * xi + 4.0 * d * xi * (1.0 - xi));
        }
    } else {
        candidate(Mm);
    }
    candidate(M2);
    const double Mmax = std::fabs(extreme);
    if (!(Mmax > 0.0)) return out;

    // The transverse load that the diagram implies and its height from the shear centre.
    const SteelDesign::ApplicationPoint point = md.getApplicationPoint();
    double zg = 0.0;
    if (d != 0.0 && point != SteelDesign::ApplicationPoint::Center) {
        if (s.zTop == 0.0 && s.zBottom == 0.0) return out; // heights unknown
        zg = point == SteelDesign::ApplicationPoint::Top ? s.zTop : s.zBottom;
    }

    const double EIz = E * s.Iz, GIt = G * s.It, EIw = E * s.Iw;
    const double sign = extreme > 0.0 ? 1.0 : -1.0;
    const UniformMode uniform = uniformCritical(sign, L, EIz, GIt, EIw, cTheta, s.betaY);
    // The other sign's mode too: a diagram of both signs buckles where either governs.
    const int mode = std::max(uniform.mode, uniformCritical(-sign, L, EIz, GIt, EIw, cTheta, s.betaY).mode);
    int n = kTerms;
    if (mode > 1) n = mode <= 3 ? 12 : kMaxTerms;
    if (mode > 5) return out; // a mode too short for the series
    if (g_forceTerms) n = g_forceTerms;

    // Moments scaled to a largest |My| of 1: lambda is then Mcr in kNm.
    const double m0 = M1 / Mmax, m1 = Mm / Mmax, m2 = M2 / Mmax;
    const Tables& t = tables();
    const double(*shape)[kCosines] = parabolic ? t.parabolic : t.polygonal;
    double P[kCosines];
    for (int m = 0; m <= 2 * n; ++m) P[m] = m0 * shape[0][m] + m1 * shape[1][m] + m2 * shape[2][m];

    Ritz r;
    r.n = n;
    double k[kMaxTerms], rp[kMaxTerms];
    for (int j = 0; j < n; ++j) {
        k[j] = (j + 1) * pi / L;
        const double k2 = k[j] * k[j];
        rp[j] = 1.0 / std::sqrt(GIt * k2 + EIw * k2 * k2 + cTheta);
    }
    const double cv = 2.0 / std::sqrt(EIz);
    const double w = 8.0 * (d / Mmax) * zg / (L * L);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            const int a = i > j ? i - j : j - i, b = i + j + 2;
            const double SM = 0.5 * (P[a] - P[b]);
            const double CM = 0.5 * (P[a] + P[b]);
            r.B[i][j] = cv * SM * rp[j];
            double load = 0.0;
            if (w != 0.0) load = parabolic ? (i == j ? w : 0.0) : w * t.sinMid[i + 1] * t.sinMid[j + 1];
            r.H[i][j] = -(2.0 * s.betaY * k[i] * k[j] * CM + load) * rp[i] * rp[j];
        }
    }
    for (int i = 0; i < n; ++i)
        for (int j = 0; j <= i; ++j) {
            double sum = 0.0;
            for (int l = 0; l < n; ++l) sum += r.B[l][i] * r.B[l][j];
            r.BtB[i][j] = r.BtB[j][i] = sum;
        }

    const Eigenvalue e = smallestPositive(r);
    if (!e.ok || !finite(e.lambda) || !(e.lambda > 0.0)) return out;

    out.ok = true;
    out.Mcr = e.lambda;
    out.C1 = out.Mcr / uniform.M;
    out.kwt = pi / L * std::sqrt(EIw / GIt);
    out.zg = zg;
    out.method = n == kTerms ? "Rayleigh-Ritz, 8 sine terms"
                             : (n == 12 ? "Rayleigh-Ritz, 12 sine terms" : "Rayleigh-Ritz, 16 sine terms");
    return out;
}

} // namespace design
