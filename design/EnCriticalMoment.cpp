#include "EnCriticalMoment.h"

#include "CriticalMomentSolver.h"

#include <SDBSection.h>
#include <SDBSectionVisitor.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numbers>

// The energy is the one of the finite-element model (docs/mcr.md): fork supports (v = phi = 0, free to
// rotate laterally and to warp), the load factor lambda on the diagram My(x) and the transverse load,
//
//   int E Iz v''^2 + G It phi'^2 + E Iw phi''^2 + c_theta phi^2
//     = lambda ( - 2 int My phi v'' - int My beta_y phi'^2 - int q zg phi^2 - P zg phi(L/2)^2 ).
//
// The lateral displacement is eliminated exactly: its equation with forks gives E Iz v'' = -lambda My phi,
// which leaves the twist alone,
//
//   int G It phi'^2 + E Iw phi''^2 + c_theta phi^2 + lambda (int My beta_y phi'^2 + int q zg phi^2
//     + P zg phi(L/2)^2) - lambda^2 int My^2 phi^2 / (E Iz) = 0,
//
// and the twist is a sine series (Rayleigh-Ritz), phi = sum b_i sin(i pi x / L), i = 1..n, whose stiffness
// is diagonal: kp_i L/2 with kp_i = G It k_i^2 + E Iw k_i^4 + c_theta, k_i = i pi / L. Scaled by it, and
// with the moments divided by the largest |My| (so that lambda is Mcr in kNm):
//
//   A(lambda) = I - lambda H - lambda^2 Q,
//   Q_ij = 2 / (E Iz) int_0^1 My^2 s_i s_j dxi / sqrt(kp_i kp_j)              (s_i = sin(i pi xi))
//   H_ij = - (2 beta_y k_i k_j int_0^1 My c_i c_j dxi + w e_ij) / sqrt(kp_i kp_j)   (c_i = cos(i pi xi))
//
// with w = 8 d zg / L^2 (d the rise of the middle value above the chord of the end values) and e_ij =
// delta_ij for a uniform load, sin(i pi/2) sin(j pi/2) for a point load at mid-span. The integrals follow
// from the cosine moments int_0^1 f cos(m pi xi) dxi of My and My^2 (products of sines and cosines are
// sums of cosines), which fixed tables of the diagram's shape functions give.
//
// Mcr is the smallest lambda > 0 at which A is singular. With any B such that B^T B = Q (Q is positive
// semi-definite), these lambda are the reciprocals of the positive eigenvalues mu of the symmetric
// C = [0 B; B^T H], and A(sigma) is the Schur complement of I - sigma C: I - sigma C is positive definite
// exactly when sigma < lambda_1, which a Cholesky factor of A(sigma) decides. The largest mu is found by
// inverse iteration with a shift sigma kept below lambda_1 on T = (I - sigma C)^-1 C + I / (2 sigma):
// the eigenvalue of mu_1 is the largest in magnitude whatever the negative ones (they map into
// (-1 / (2 sigma), 1 / (2 sigma))). Its Rayleigh quotient bounds mu_1 from below, so 1 / it bounds lambda_1
// from above, and the shift moves up towards that bound. B never appears: the iteration carries the twist
// part y_phi of the vector, B^T y_v and |y_v|^2.
//
// The series: 8 terms, then 16 and 32 while it has not converged. Accepted when
// (a) Mcr dropped by less than 0.5 % from n/2 to n terms: the Ritz values fall monotonically, and for
//     smooth modes the drop bounds the remaining error. A point load off the shear centre puts a
//     concentrated torque, so a kink, into the twist, which the sines approach slowly when the warping
//     length is short against the half-wave L/n of the last term (kwt n < 1: tees, hollow sections);
//     there the drop must stay below 0.15 %, the remaining error having been found up to about four
//     times the drop;
// (b) the uniform-moment critical moment of mode n + 1, for each sign of moment in the diagram, is at
//     least twice the moment of that sign at buckling: otherwise a mode shorter than the series resolves
//     could be critical (tees and mono-symmetric I sections with the small flange in compression, where
//     the Wagner term makes short twisting waves cheap, or a large c_theta).
// A diagram that no series resolves goes to the finite-element analysis (which allocates).

namespace design {

namespace {

constexpr double pi = std::numbers::pi;

constexpr int kMaxTerms = 32;
constexpr int kCosines = 2 * kMaxTerms + 1;
constexpr double kSeriesTolerance = 0.005;      // accepted drop of Mcr from n/2 to n terms, (a)
constexpr double kSeriesToleranceKink = 0.0015; // the same with a sharp torque kink, (a)
constexpr double kShortModeMargin = 2.0;        // uniform-moment Mcr of mode n + 1 over the moment at buckling, (b)

// ---------------------------------------------------------------------------------------------------
// Tables: the cosine moments int_0^1 f(xi) cos(m pi xi) dxi of the diagram's shape functions (f = p_a)
// and of their products (f = p_a p_b), for the two shapes. Polygonal: the hat functions of the start,
// middle and end values (two straight lines); Parabolic: the quadratic Lagrange polynomials on 0, 1/2, 1.

struct Poly {
    double c[5] = {0.0, 0.0, 0.0, 0.0, 0.0}; // coefficients of xi^0..xi^4
};

Poly product(const Poly& a, const Poly& b)
{
    Poly p;
    for (int i = 0; i <= 2; ++i)
        for (int j = 0; j <= 2; ++j) p.c[i + j] += a.c[i] * b.c[j];
    return p;
}

// int_a^b f(xi) cos(m pi xi) dxi, by I_n = [x^n sin(wx)/w] - n/w J_(n-1), J_n = [-x^n cos(wx)/w] + n/w I_(n-1).
double cosineMoment(const Poly& f, int m, double a, double b)
{
    double total = 0.0;
    if (m == 0) {
        for (int n = 0; n <= 4; ++n) total += f.c[n] * (std::pow(b, n + 1) - std::pow(a, n + 1)) / (n + 1);
        return total;
    }
    const double w = m * pi;
    const double sa = std::sin(w * a), ca = std::cos(w * a), sb = std::sin(w * b), cb = std::cos(w * b);
    double I = (sb - sa) / w, J = -(cb - ca) / w; // n = 0
    total += f.c[0] * I;
    for (int n = 1; n <= 4; ++n) {
        const double pa = std::pow(a, n), pb = std::pow(b, n);
        const double In = (pb * sb - pa * sa) / w - n / w * J;
        const double Jn = -(pb * cb - pa * ca) / w + n / w * I;
        I = In;
        J = Jn;
        total += f.c[n] * I;
    }
    return total;
}

struct Tables {
    // [shape][a][m] for p_a; [shape][pair][m] for p_a p_b, pairs 00, 11, 22, 01, 02, 12.
    double single[2][3][kCosines];
    double pair[2][6][kCosines];
    double sinMid[kMaxTerms]; // sin((i + 1) pi / 2)
};

constexpr int kPairA[6] = {0, 1, 2, 0, 0, 1};
constexpr int kPairB[6] = {0, 1, 2, 1, 2, 2};

Tables buildTables()
{
    Tables t{};
    // The shape functions on the two halves of the span.
    Poly f[2][3][2];
    f[0][0][0].c[0] = 1.0, f[0][0][0].c[1] = -2.0;                      // polygonal: start
    f[0][1][0].c[1] = 2.0, f[0][1][1].c[0] = 2.0, f[0][1][1].c[1] = -2.0; // middle
    f[0][2][1].c[0] = -1.0, f[0][2][1].c[1] = 2.0;                      // end
    for (int half = 0; half < 2; ++half) {
        f[1][0][half].c[0] = 1.0, f[1][0][half].c[1] = -3.0, f[1][0][half].c[2] = 2.0; // parabolic: start
        f[1][1][half].c[1] = 4.0, f[1][1][half].c[2] = -4.0;                         // middle
        f[1][2][half].c[1] = -1.0, f[1][2][half].c[2] = 2.0;                         // end
    }
    for (int shape = 0; shape < 2; ++shape)
        for (int m = 0; m < kCosines; ++m) {
            for (int a = 0; a < 3; ++a)
                t.single[shape][a][m] = cosineMoment(f[shape][a][0], m, 0.0, 0.5) + cosineMoment(f[shape][a][1], m, 0.5, 1.0);
            for (int p = 0; p < 6; ++p) {
                const int a = kPairA[p], b = kPairB[p];
                t.pair[shape][p][m] = cosineMoment(product(f[shape][a][0], f[shape][b][0]), m, 0.0, 0.5) +
                                      cosineMoment(product(f[shape][a][1], f[shape][b][1]), m, 0.5, 1.0);
            }
        }
    for (int i = 0; i < kMaxTerms; ++i) t.sinMid[i] = (i % 2 == 1) ? 0.0 : ((i / 2) % 2 == 0 ? 1.0 : -1.0);
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

// ---------------------------------------------------------------------------------------------------
// The member, its diagram scaled to a largest |My| of 1, and what every series length shares.

struct Member {
    double L, EIz, GIt, EIw, cTheta, beta;
    double w;        // 8 d zg / L^2 of the scaled diagram
    bool parabolic;
    double m[3];     // start, middle and end moments, scaled
    double P[kCosines];  // cosine moments of My
    double P2[kCosines]; // cosine moments of My^2
    double k[kMaxTerms];  // i pi / L
    double rp[kMaxTerms]; // 1 / sqrt(kp_i)
    int ready = 0;        // terms for which the arrays are filled

    void prepare(int n)
    {
        if (n <= ready) return;
        const Tables& t = tables();
        const int shape = parabolic ? 1 : 0;
        const double(*single)[kCosines] = t.single[shape];
        const double(*pair)[kCosines] = t.pair[shape];
        double mm[6];
        for (int p = 0; p < 6; ++p) mm[p] = (p < 3 ? 1.0 : 2.0) * m[kPairA[p]] * m[kPairB[p]];
        for (int c = ready == 0 ? 0 : 2 * ready + 1; c <= 2 * n; ++c) {
            P[c] = m[0] * single[0][c] + m[1] * single[1][c] + m[2] * single[2][c];
            double s = 0.0;
            for (int p = 0; p < 6; ++p) s += mm[p] * pair[p][c];
            P2[c] = s;
        }
        for (int j = ready; j < n; ++j) {
            k[j] = (j + 1) * pi / L;
            const double k2 = k[j] * k[j];
            rp[j] = 1.0 / std::sqrt(GIt * k2 + EIw * k2 * k2 + cTheta);
        }
        ready = n;
    }
};

// |M| of the uniform-moment critical moment in mode i for a moment of sign s: the closed form with
// zj = beta_y / 2, Pz (sqrt((beta_y/2)^2 + kp / (E Iz k^4)) + s beta_y / 2), Pz = E Iz k^2 (one sine term
// is exact for uniform moment).
double uniformMode(int i, double s, const Member& m)
{
    const double k = i * pi / m.L, k2 = k * k;
    const double kp = m.GIt * k2 + m.EIw * k2 * k2 + m.cTheta;
    const double half = 0.5 * m.beta;
    const double r = std::sqrt(half * half + kp / (m.EIz * k2 * k2));
    return m.EIz * k2 * (s > 0.0 ? r + half : r - half);
}

// The uniform-moment critical moment: mode 1 unless the Wagner term destabilises (s beta_y < 0) and
// c_theta > 0, when a shorter mode may govern.
double uniformCritical(double s, const Member& m)
{
    double best = uniformMode(1, s, m);
    if (m.cTheta > 0.0 && s * m.beta < 0.0)
        for (int i = 2; i <= 4 * kMaxTerms; ++i) best = std::min(best, uniformMode(i, s, m));
    return best;
}

// ---------------------------------------------------------------------------------------------------
// The cache of the last critical moments per thread.

struct McrKey {
    double L, EIz, GIt, EIw, cTheta, beta, w;
    double m[3];
    double zg;
    bool parabolic;
    bool operator==(const McrKey& o) const
    {
        return L == o.L && EIz == o.EIz && GIt == o.GIt && EIw == o.EIw && cTheta == o.cTheta && beta == o.beta &&
               w == o.w && m[0] == o.m[0] && m[1] == o.m[1] && m[2] == o.m[2] && zg == o.zg && parabolic == o.parabolic;
    }
    std::size_t hash() const
    {
        std::size_t h = parabolic ? 0x9e3779b97f4a7c15ull : 0x51ed270b27bd4ad3ull;
        for (const double v : {L, EIz, GIt, EIw, cTheta, beta, w, m[0], m[1], m[2], zg}) {
            std::uint64_t bits;
            std::memcpy(&bits, &v, sizeof bits);
            h ^= bits + 0x9e3779b97f4a7c15ull + (h << 6) + (h >> 2);
        }
        return h;
    }
};

struct McrCacheEntry {
    McrKey key{};
    EnCriticalMoment value;
    bool used = false;
};

constexpr std::size_t kMcrCacheSize = 64;

std::array<McrCacheEntry, kMcrCacheSize>& mcrCache()
{
    thread_local std::array<McrCacheEntry, kMcrCacheSize> cache{};
    return cache;
}

// ---------------------------------------------------------------------------------------------------
// The series of N terms. The products run over rows in the update form (y += a row).

template <int N>
struct Series {
    alignas(16) double Q[N][N]; // symmetric positive semi-definite
    alignas(16) double H[N][N]; // symmetric
    alignas(16) double Lt[2][N][N]; // factors L D L^T of A(sigma) (L unit lower): the current one and a
    alignas(16) double Lr[2][N][N]; // trial, L by columns (Lt[k] = column k) and by rows (Lr[i] = row i)
    double invD[2][N];              // 1 / D(i, i)
    int cur = 0;

    void assemble(const Member& m)
    {
        const Tables& t = tables();
        const double cq = 1.0 / m.EIz; // 2 / (E Iz) times the 1/2 of the product formula
        for (int i = 0; i < N; ++i)
            for (int j = 0; j <= i; ++j) {
                const int a = i - j, b = i + j + 2;
                const double r = m.rp[i] * m.rp[j];
                Q[i][j] = Q[j][i] = cq * (m.P2[a] - m.P2[b]) * r;
                H[i][j] = H[j][i] = -m.beta * m.k[i] * m.k[j] * (m.P[a] + m.P[b]) * r;
            }
        if (m.w != 0.0) {
            if (m.parabolic) {
                for (int i = 0; i < N; ++i) H[i][i] -= m.w * m.rp[i] * m.rp[i];
            } else {
                for (int i = 0; i < N; i += 2)
                    for (int j = 0; j < N; j += 2) H[i][j] -= m.w * t.sinMid[i] * t.sinMid[j] * m.rp[i] * m.rp[j];
            }
        }
    }

    // True when A(sigma) = I - sigma H - sigma^2 Q is positive definite (sigma < lambda_1: every pivot
    // of L D L^T positive); the factor then becomes the current one. Right-looking on the lower triangle.
    bool factor(double sigma)
    {
        const int slot = 1 - cur;
        double(*Lc)[N] = Lt[slot];
        double(*Lrow)[N] = Lr[slot];
        double* dinv = invD[slot];
        const double s2 = sigma * sigma;
        alignas(16) double A[N][N];
        for (int i = 0; i < N; ++i)
            for (int j = 0; j <= i; ++j) A[i][j] = -sigma * H[i][j] - s2 * Q[i][j];
        for (int i = 0; i < N; ++i) A[i][i] += 1.0;
        for (int k = 0; k < N; ++k) {
            const double D = A[k][k];
            if (!(D > 1e-13)) return false;
            dinv[k] = 1.0 / D;
            for (int i = k + 1; i < N; ++i) Lc[k][i] = Lrow[i][k] = A[i][k] * dinv[k];
            for (int i = k + 1; i < N; ++i) {
                const double l = Lc[k][i];
                for (int j = k + 1; j <= i; ++j) A[i][j] -= l * A[j][k];
            }
        }
        cur = slot;
        return true;
    }

    // z = A(sigma)^-1 r with the current factor (both triangular solves by columns).
    void solve(const double* r, double* z) const
    {
        const double(*Lc)[N] = Lt[cur];
        const double(*Lrow)[N] = Lr[cur];
        const double* dinv = invD[cur];
        for (int i = 0; i < N; ++i) z[i] = r[i];
        for (int k = 0; k < N; ++k) { // L u = r
            const double u = z[k];
            for (int i = k + 1; i < N; ++i) z[i] -= Lc[k][i] * u;
        }
        for (int i = 0; i < N; ++i) z[i] *= dinv[i];
        for (int k = N - 1; k > 0; --k) { // L^T z = D^-1 u
            const double u = z[k];
            for (int i = 0; i < k; ++i) z[i] -= Lrow[k][i] * u;
        }
    }

    // y = Q x
    void multiplyQ(const double* x, double* y) const
    {
        for (int i = 0; i < N; ++i) y[i] = 0.0;
        for (int j = 0; j < N; ++j) {
            const double a = x[j];
            for (int i = 0; i < N; ++i) y[i] += Q[j][i] * a;
        }
    }
};

// The smallest positive lambda of N terms (to about the relative precision given) and the twist part of
// its vector (N). A coarser solution (lambda and the twist of N/2 terms) gives the start when there is one.
template <int N>
bool solveSeries(const Member& m, double precision, double coarseLambda, const double* coarse, double& lambda,
                 double* yp)
{
    Series<N> r;
    r.assemble(m);

    // The first shift: just below the coarse lambda (an upper bound of this one), else below a lower
    // bound of lambda_1. For C y = mu y, mu^2 y_phi = (Q + mu H) y_phi, so mu = (h + sqrt(h^2 + 4 q)) / 2
    // with q, h the Rayleigh quotients of Q and H at y_phi; it grows with both, so the Frobenius norm of Q
    // and Gershgorin's bound of the largest eigenvalue of H bound mu_1 from above.
    double sigma = 0.0;
    bool factored = false;
    if (coarseLambda > 0.0) {
        for (double f : {0.995, 0.9}) {
            sigma = f * coarseLambda;
            if ((factored = r.factor(sigma))) break;
        }
    }
    if (!factored) {
        double q = 0.0, h = -std::numeric_limits<double>::infinity();
        for (int i = 0; i < N; ++i) {
            double row = r.H[i][i];
            for (int j = 0; j < N; ++j) {
                q += r.Q[i][j] * r.Q[i][j];
                if (j != i) row += std::fabs(r.H[i][j]);
            }
            h = std::max(h, row);
        }
        q = std::sqrt(q);
        const double muBound = 0.5 * (h + std::sqrt(h * h + 4.0 * q));
        if (!(muBound > 0.0) || !finite(muBound)) return false;
        sigma = 0.999 / muBound;
        for (int attempt = 0; attempt < 8 && !factored; ++attempt)
            if (!(factored = r.factor(sigma))) sigma *= 0.5;
        if (!factored) return false;
    }

    // The vector y = [y_v; y_phi] is carried as y_phi, t = B^T y_v and s = |y_v|^2. Start: the coarse
    // twist, or twist in the first sine terms, with y_v = B y_phi / mu (the relation of an eigenvector).
    if (coarse != nullptr) {
        for (int i = 0; i < N / 2; ++i) yp[i] = coarse[i];
        for (int i = N / 2; i < N; ++i) yp[i] = 0.0;
    } else {
        for (int i = 0; i < N; ++i) yp[i] = 1.0 / (i + 1);
    }
    double t[N], z[N], q[N], dp[N];
    r.multiplyQ(yp, q);
    const double c = coarseLambda > 0.0 ? coarseLambda : sigma; // about 1 / mu
    double s = 0.0, pp = 0.0;
    for (int i = 0; i < N; ++i) {
        t[i] = c * q[i];
        s += c * c * yp[i] * q[i];
        pp += yp[i] * yp[i];
    }
    double norm = std::sqrt(s + pp);
    if (!(norm > 0.0) || !finite(norm)) return false;
    for (int i = 0; i < N; ++i) {
        yp[i] /= norm;
        t[i] /= norm;
    }
    s /= norm * norm;

    double upper = std::numeric_limits<double>::infinity(); // lambda_1 <= upper
    for (int it = 0; it < 60; ++it) {
        // z = (I - sigma C)^-1 y: z_phi = A^-1 (y_phi + sigma t), z_v = y_v + sigma B z_phi; then
        // T0 y = (z - y) / sigma = [B z_phi; (z_phi - y_phi) / sigma].
        for (int i = 0; i < N; ++i) dp[i] = yp[i] + sigma * t[i];
        r.solve(dp, z);
        r.multiplyQ(z, q);
        double tz = 0.0, nu = 0.0, zq = 0.0, dd = 0.0;
        for (int i = 0; i < N; ++i) {
            dp[i] = (z[i] - yp[i]) / sigma;
            tz += t[i] * z[i];
            nu += yp[i] * dp[i];
            zq += z[i] * q[i];
            dd += dp[i] * dp[i];
        }
        nu += tz;                     // y . T0 y
        const double res = zq + dd - nu * nu; // |T0 y - nu y|^2
        const double mu = nu / (1.0 + sigma * nu);
        if (mu > 0.0) {
            upper = std::min(upper, 1.0 / mu);
            // Converged: nu lies within the square of the residual over the gap of an eigenvalue of T0
            // (with the shift close below lambda_1 the gap is nearly nu itself), and lambda_1 is bracketed
            // within 2 %: the shift is proven below it, 1 / mu bounds it from above.
            if (res <= precision * nu * nu && upper - sigma <= 0.02 * upper) {
                lambda = 1.0 / mu;
                return true;
            }
        }
        // The next vector: T0 y + y / (2 sigma), normalised.
        const double alpha = 0.5 / sigma;
        double sNext = zq + 2.0 * alpha * tz + alpha * alpha * s;
        pp = 0.0;
        for (int i = 0; i < N; ++i) {
            yp[i] = dp[i] + alpha * yp[i];
            t[i] = q[i] + alpha * t[i];
            pp += yp[i] * yp[i];
        }
        sNext = std::max(sNext, 0.0);
        norm = std::sqrt(sNext + pp);
        if (!(norm > 0.0) || !finite(norm)) return false;
        const double scale = 1.0 / norm;
        for (int i = 0; i < N; ++i) {
            yp[i] *= scale;
            t[i] *= scale;
        }
        s = sNext * scale * scale;
        // Once the vector has settled, move the shift up towards the bound; a failed factor proves the
        // trial above lambda_1.
        if (finite(upper) && upper - sigma > 0.02 * upper && res <= 1e-2 * nu * nu) {
            const double trial = sigma + 0.95 * (upper - sigma);
            if (r.factor(trial))
                sigma = trial;
            else
                upper = trial;
        }
    }
    return false;
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

    // The largest moment of each sign: the three values (two straight lines), or the end values and the
    // vertex of the parabola M(xi) = M1 (1 - xi) + M2 xi + 4 d xi (1 - xi) when it lies inside the span.
    const bool parabolic = md.getMomentDiagram(SteelDesign::Axis::y) == SteelDesign::MomentDiagram::Parabolic;
    const double d = Mm - 0.5 * (M1 + M2); // rise of the middle value above the chord
    double extreme = M1;                   // the largest |My| with its sign, the first of equal ones
    double sagging = std::max(M1, 0.0), hogging = std::max(-M1, 0.0);
    const auto candidate = [&](double M) {
        if (std::fabs(M) > std::fabs(extreme)) extreme = M;
        sagging = std::max(sagging, M);
        hogging = std::max(hogging, -M);
    };
    if (parabolic) {
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

    Member m;
    m.L = L;
    m.EIz = E * s.Iz;
    m.GIt = G * s.It;
    m.EIw = E * s.Iw;
    m.cTheta = cTheta;
    m.beta = s.betaY;
    m.parabolic = parabolic;
    m.w = 8.0 * (d / Mmax) * zg / (L * L);
    m.m[0] = M1 / Mmax;
    m.m[1] = Mm / Mmax;
    m.m[2] = M2 / Mmax;

    // A uniform moment: the closed form (one sine term is exact), C1 = 1.
    if (M1 == Mm && Mm == M2) {
        const double sign = M1 > 0.0 ? 1.0 : -1.0;
        out.ok = true;
        out.Mcr = uniformCritical(sign, m);
        out.C1 = 1.0;
        out.kwt = pi / L * std::sqrt(m.EIw / m.GIt);
        out.zg = 0.0;
        out.terms = 1;
        out.method = "closed form of uniform moment";
        return out;
    }

    // A member met before (the same section properties, length, shape of the diagram, load height and
    // restraint: Mcr depends on the moments only through their ratios) takes the Mcr found then. A few
    // entries per thread, matched on every input bit: a model's load cases repeat members and diagrams.
    McrKey key{m.L, m.EIz, m.GIt, m.EIw, m.cTheta, m.beta, m.w, {m.m[0], m.m[1], m.m[2]}, zg, parabolic};
    McrCacheEntry& slot = mcrCache()[key.hash() % kMcrCacheSize];
    if (slot.used && slot.key == key) {
        return slot.value;
    }

    // Accepted when converged (drop from n/2 terms) and no mode shorter than the series resolves can
    // govern (mode n + 1 of uniform moment, per sign present in the diagram).
    const bool torqueAtMidSpan = !parabolic && zg != 0.0;
    const double kwt = pi / L * std::sqrt(m.EIw / m.GIt);
    const auto accepted = [&](int n, double coarse, double fine) {
        // The kink of a concentrated torque is sharp when the warping length sqrt(E Iw / G It) = kwt L / pi
        // is short against the shortest half-wave L / n.
        const double tolerance = torqueAtMidSpan && kwt * n < 1.0 ? kSeriesToleranceKink : kSeriesTolerance;
        if (!(coarse - fine <= tolerance * fine)) return false;
        if (sagging > 0.0 && uniformMode(n + 1, 1.0, m) < kShortModeMargin * fine * sagging / Mmax) return false;
        if (hogging > 0.0 && uniformMode(n + 1, -1.0, m) < kShortModeMargin * fine * hogging / Mmax) return false;
        return true;
    };

    double y4[4], y8[8], y16[16], y32[32];
    double l4 = 0.0, l8 = 0.0, l16 = 0.0, l32 = 0.0;
    double Mcr = 0.0;
    m.prepare(8);
    if (solveSeries<4>(m, 1e-6, 0.0, nullptr, l4, y4) && solveSeries<8>(m, 1e-9, l4, y4, l8, y8)) {
        if (accepted(8, l4, l8)) {
            Mcr = l8;
            out.terms = 8;
            out.seriesChange = (l4 - l8) / l8;
            out.method = "Rayleigh-Ritz, 8 sine terms";
        } else {
            m.prepare(16);
            if (solveSeries<16>(m, 1e-9, l8, y8, l16, y16)) {
                if (accepted(16, l8, l16)) {
                    Mcr = l16;
                    out.terms = 16;
                    out.seriesChange = (l8 - l16) / l16;
                    out.method = "Rayleigh-Ritz, 16 sine terms";
                } else {
                    m.prepare(32);
                    if (solveSeries<32>(m, 1e-9, l16, y16, l32, y32) && accepted(32, l16, l32)) {
                        Mcr = l32;
                        out.terms = 32;
                        out.seriesChange = (l16 - l32) / l32;
                        out.method = "Rayleigh-Ritz, 32 sine terms";
                    }
                }
            }
        }
    }
    if (!(Mcr > 0.0) || !finite(Mcr)) {
        // No series resolves the mode: the finite-element analysis (allocates; rare).
        const CriticalMomentResult fe = criticalMoment(criticalMomentInput(request, s, E, G));
        Mcr = fe.ok ? fe.mcr : 0.0;
        if (!(Mcr > 0.0) || !finite(Mcr)) return out;
        out.terms = 0;
        out.seriesChange = 0.0;
        out.method = "finite elements (the sine series does not resolve the mode)";
    }

    out.ok = true;
    out.Mcr = Mcr;
    out.C1 = Mcr / uniformCritical(extreme > 0.0 ? 1.0 : -1.0, m);
    out.kwt = kwt;
    out.zg = zg;
    slot.key = key;
    slot.value = out;
    slot.used = true;
    return out;
}

} // namespace design
