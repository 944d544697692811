#pragma once

// The elastic critical moment Mcr of a member in bending about its major axis (EN 1993-1-1 6.3.2.2(2)),
// found by a finite-element eigenvalue analysis of a thin-walled beam instead of a formula with C1,
// C2 and C3: any moment diagram, transverse loads at any height, end conditions per end, intermediate
// lateral and torsional restraints and a continuous torsional restraint.
//
// Model (docs/mcr.md): beam elements with 4 degrees of freedom per node, the lateral displacement v of
// the shear centre (along y), its slope v', the twist phi and its rate phi' (warping), each a cubic
// Hermite field. Elastic energy from E Iz v''^2, G It phi'^2, E Iw phi''^2 and c_theta phi^2; the
// destabilising energy from the in-plane moment My(x) (coupling My phi v''), the monosymmetry (Wagner)
// term My beta_y phi'^2 and the height zg of the transverse loads (q zg phi^2, P zg phi^2). The smallest
// positive load factor lambda of K x = lambda G x scales the diagram and the loads to buckling:
// Mcr = lambda * max |My|.
//
// Units: m, kN, kNm, kN/m2 (E, G), kN/m (q), kNm/m per m (c_theta). Axes as the section database: y
// major axis, z minor axis pointing DOWN, so the top flange has negative z. A positive (sagging) My puts
// the bottom fibre in tension and the top flange in compression; a positive transverse load acts along
// +z (downwards) and gives a positive moment on a simply supported member. Heights are measured from the
// shear centre along z: a load on the top flange has zg < 0 and is destabilising.
//
// No exceptions: every input is validated and a failure is reported through CriticalMomentResult::ok
// and ::reason.

#include <string>
#include <vector>

class SDBSection;

namespace design {

// The properties of the section that the analysis needs (m^4, m^6, m).
struct McrSection {
    double Iz = 0.0;      // second moment about the minor axis
    double It = 0.0;      // St. Venant torsion constant
    double Iw = 0.0;      // warping constant about the shear centre
    double betaY = 0.0;   // monosymmetry constant beta_y = (1/Iy) int z (y^2 + z^2) dA - 2 z0 (z down; > 0 when
                          // the top flange is the larger one); 0 for a doubly symmetric section
    double zs = 0.0;      // shear centre below the centroid (z down: < 0 when the top flange is the larger one)
    double zTop = 0.0;    // top fibre measured from the shear centre (negative)
    double zBottom = 0.0; // bottom fibre measured from the shear centre (positive)
};

// The properties of a section of the database: Iz, It and Iw as the database holds them; for an I
// section with unequal flanges (SDBSectionI built with b2, t2) the shear centre and beta_y from its
// plates (flanges and web, welds and fillets neglected); for a tee (SDBSectionT, flange on top) the shear
// centre at the flange's mid-thickness and beta_y from its two plates (fillets neglected). For any other
// kind the shear centre is taken at the centroid and beta_y = 0 (exact for doubly symmetric kinds).
McrSection mcrSection(const SDBSection& section);

// Where a transverse load, or a lateral restraint, acts over the depth.
enum class McrHeight {
    ShearCentre,  // zg = 0
    TopFlange,    // zg = McrSection::zTop
    BottomFlange, // zg = McrSection::zBottom
    Distance,     // zg = McrLevel::z (from the shear centre, z down)
};

struct McrLevel {
    McrHeight at = McrHeight::ShearCentre;
    double z = 0.0; // used for McrHeight::Distance
};

// The end of a member: which of the four displacements are held. The presets are the usual ones.
struct McrEnd {
    bool lateral = true;          // v = 0
    bool twist = true;            // phi = 0
    bool lateralRotation = false; // v' = 0 (lateral bending fixed)
    bool warping = false;         // phi' = 0 (warping fixed)

    static McrEnd fork() { return {}; }                          // v = phi = 0, free to rotate and warp
    static McrEnd forkWarpingFixed() { return {true, true, false, true}; }
    static McrEnd forkLateralBendingFixed() { return {true, true, true, false}; }
    static McrEnd fixed() { return {true, true, true, true}; }   // built in: all four held
    static McrEnd free() { return {false, false, false, false}; } // free end of a cantilever
};

// One value of a moment diagram: My (kNm) at x (m, from the start).
struct McrStation {
    double x = 0.0;
    double M = 0.0;
};

// A moment diagram My(x): the stations interpolated linearly, plus the parabola of a uniform load
// between neighbouring stations, q (x - xa)(xb - x) / 2 (q in kN/m, positive downwards = sagging). This
// holds a diagram of end moments, point loads and a uniform load exactly when there is a station at
// every point load. The stations must increase in x and cover 0 to L.
struct McrMomentDiagram {
    std::vector<McrStation> stations;
    double q = 0.0;

    bool empty() const { return stations.empty(); }
    // My at x (the end values outside 0 to L).
    double at(double x) const;
    // The largest |My| (exact: the stations and the vertex of every parabola).
    double maxAbs() const;
    // The station values and vertices: the moment of largest magnitude, with its sign.
    double extreme() const;

    // Three values (start, middle, end) with the shapes of SteelDesign::MomentDiagram: Polygonal is two
    // straight lines through the three values, Parabolic the parabola through them.
    enum class Shape { Polygonal, Parabolic };
    static McrMomentDiagram threeValues(double length, double start, double middle, double end, Shape shape);
    static McrMomentDiagram uniform(double length, double M);
    static McrMomentDiagram linear(double length, double start, double end);
};

// A point load P (kN, positive downwards) at x (m from the start), applied at a height.
struct McrPointLoad {
    double x = 0.0;
    double P = 0.0;
    McrLevel level{};
};

// A lateral restraint (v = 0 of the point at the given height) at x.
struct McrLateralRestraint {
    double x = 0.0;
    McrLevel level{};
};

// The diagram of a simply supported member of length L under end moments (sagging positive), a
// uniform load q over the whole length and point loads (both positive downwards).
McrMomentDiagram simplySupportedMoments(double length, double startMoment, double endMoment, double q,
                                        const std::vector<McrPointLoad>& pointLoads);

// The diagram of a cantilever built in at x = 0 and free at x = L under a uniform load q and point loads
// (positive downwards: hogging, My < 0).
McrMomentDiagram cantileverMoments(double length, double q, const std::vector<McrPointLoad>& pointLoads);

enum class McrEigenSolver {
    Lanczos, // banded Cholesky of K, Lanczos on L^-1 G L^-T for the largest eigenvalue (default, fast)
    Dense,   // Eigen::GeneralizedSelfAdjointEigenSolver on the dense matrices (reference)
};

struct CriticalMomentInput {
    double E = 210e6; // kN/m2
    double G = 81e6;  // kN/m2
    McrSection section{};
    double length = 0.0; // m
    int elements = 30;   // finite elements over the length (more where loads or restraints add nodes)

    // The moment diagram; when empty it is derived from the transverse loads below as for a simply
    // supported member (simplySupportedMoments with no end moments).
    McrMomentDiagram moments{};

    // Transverse loads: they give the load-height terms (and the diagram when none is given).
    double q = 0.0; // uniform load over the whole length, kN/m, positive downwards
    McrLevel qLevel{};
    std::vector<McrPointLoad> pointLoads;

    McrEnd start = McrEnd::fork();
    McrEnd end = McrEnd::fork();
    std::vector<McrLateralRestraint> lateralRestraints;
    std::vector<double> torsionalRestraints; // positions x where phi = 0
    double cTheta = 0.0;                     // continuous torsional restraint, kNm/m per m (rad)

    bool withC1 = true;    // also solve the uniform-moment reference for C1
    bool withShape = true; // return the buckled shape
    McrEigenSolver solver = McrEigenSolver::Lanczos;
};

struct CriticalMomentResult {
    bool ok = false;
    std::string reason; // why no Mcr was found (invalid input, a mechanism, no buckling)

    double mcr = 0.0;    // kNm: lambda * mMax
    double lambda = 0.0; // load factor on the diagram and the loads
    double mMax = 0.0;   // the largest |My| of the diagram
    double c1 = 0.0;     // mcr / mcrUniform (0 when withC1 is false)
    double mcrUniform = 0.0; // Mcr of a uniform moment of the same sign on the same member and supports
    int elements = 0;        // elements used

    // The buckled shape at the nodes: v (lateral displacement of the shear centre) scaled to a largest
    // |v| of 1, phi (rad) with the same factor; when v vanishes, phi is scaled to a largest |phi| of 1.
    std::vector<double> x, v, phi;
};

CriticalMomentResult criticalMoment(const CriticalMomentInput& input);

} // namespace design
