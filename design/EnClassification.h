#pragma once

// The plates of a section and their classification by EN 1993-1-1 Table 5.2 with every rule EN's, for
// the EN 1993-1-1 cross-section check (EnCrossSection.h).
//
// The section model: each kind is cut into
//  - plates for the classification: internal parts (Table 5.2 sheet 1) and outstands (sheet 2) with the
//    width c and thickness t of Table 5.2 and the two ends of c in centroidal coordinates (for an outstand
//    the supported edge first, the free edge second), evaluated in the plate's mid-plane;
//  - rectangles (flanges, webs, walls, legs; a rolled section's root fillets as small squares of the
//    fillet's area) for the plastic stress distributions: the compressed fraction alpha of Table 5.2 and the
//    reduced yield strength (1 - rho) fy on the shear areas (6.2.8(3), 6.2.10(3)).
//
// The widths c, as taken here:
//   I      web h - t1 - t2 - 2r (welded: r = 0), flange outstands (b - tw - 2r) / 2
//   U, WU  web h - 2t - 2r, flange outstands b - tw - r;  Z, WZ likewise
//   T      flange outstands (b - tw - 2r) / 2, the stem an outstand of c = h - tf - r with its free edge at
//          the tip (Table 5.2 sheet 2)
//   L      each leg an outstand of c = leg - t - r (sheet 2, under bending), Table 5.2 sheet 3 under
//          compression with h the longer leg
//   RH     tubes (corner radius > 0, hot-finished and cold-formed): c = h - 3t for the webs and b - 3t for the
//          flanges, each wall with its own thickness (the usual practice: the flat width between the corner
//          radii, which are about 1.5 t outside for both); welded boxes (no corner radius): the clear widths
//   C      web h - 2t, flanges b - 2t as internal parts (the lips taken as edge supports), lips outstands of
//          (h - c) / 2 - t
//   O      d / t against 50, 70 and 90 eps² (Table 5.2 sheet 3)
//   R, Circle  class 1: a solid bar has no plate edge supported by another plate; its buckling as a plate
//          with free long edges is the buckling of the member (6.3), so a flat bar is class 1 too.
//
// Stresses: the elastic stress at a point is N/A + My z / Iy - Mz y / Iz (tension positive, the library's
// formula); here compression is positive. The plastic distributions are those of the design N with the
// moment's sign: the plastic neutral axis is where the section, yielding in compression on the moment's
// compressed side and in tension on the other, carries N (for a doubly symmetric I web this is
// alpha = (1 + N_c / (c tw fy)) / 2, N_c the compression).
//
// epsilon of each plate is sqrt(235 / fy) with the fy of the plate's own thickness (Table 3.1), on the
// safe side of the section's fy; the plastic distributions take the section's fy (the smallest).

#include <KaMaterial.h>
#include <SDBSection.h>
#include <SteelDesign/Forces.h>

#include <array>
#include <cstdint>

namespace design {

enum class EnKind : std::uint8_t { None, I, U, Z, T, L, RH, O, C, R, Circle };

// "I", "U", ... for the trace.
const char* toString(EnKind kind);

// Which shear area a rectangle belongs to (EN 1993-1-1 6.2.6(3)): the one of a shear force along z (webs,
// walls along z, the leg along z), along y (flanges), or both (solid bars).
enum EnShearArea : std::uint8_t { ShearAreaNone = 0, ShearAreaZ = 1, ShearAreaY = 2, ShearAreaBoth = 3 };

// The element types of the model's and the classification's arrays carry no default values: the arrays are
// read up to their counts only, and filling them with zeros on every call would cost more than the check.
struct EnRect {
    double y0, y1, z0, z1;  // centroidal coordinates, y0 < y1, z0 < z1
    std::uint8_t shearArea;
};

struct EnPlate {
    const char* name;
    bool internal;  // Table 5.2 sheet 1; otherwise an outstand (sheet 2)
    bool alongY;    // c runs along y (the stress varies with Mz) or along z (with My)
    double c, t;
    double y1, z1;  // first end of c (an outstand's supported edge)
    double y2, z2;  // second end (an outstand's free edge)
    double mid;     // the mid-plane's coordinate across c (z for alongY, y otherwise)
};

inline constexpr int enMaxRects = 8;
inline constexpr int enMaxPlates = 6;

struct EnSectionModel {
    EnKind kind = EnKind::None;
    bool rolled = false;
    bool doublySymmetricI = false;
    // Dimensions as the kind has them (m); those a kind lacks stay 0.
    double h = 0.0, b = 0.0, b2 = 0.0;  // depth, (top) flange width, bottom flange width (I)
    double tw = 0.0, tf = 0.0, tf2 = 0.0;  // web, (top) flange, bottom flange (I) thickness; walls of RH: s, t
    double r = 0.0;                      // root radius (rolled open sections)
    double hw = 0.0;                     // web height between the flanges (I, U, Z: h - t1 - t2)
    double d = 0.0, t = 0.0;             // O: outer diameter and wall; Circle: d; C, L: t (leg / wall)
    double Am = 0.0;                     // RH: area enclosed by the wall's mid-line (Bredt)
    double size = 0.0;                   // the largest overall dimension, for tolerances
    int thicknessCount = 0, rectCount = 0, plateCount = 0;
    std::array<double, 3> thicknesses;        // of the plates, for fy (Table 3.1); up to thicknessCount
    std::array<EnRect, enMaxRects> rects;     // up to rectCount
    std::array<EnPlate, enMaxPlates> plates;  // up to plateCount
};

// The model of the section; kind None for a kind that the EN check does not cover (or a section that is
// not usable: no area). No allocation.
void buildEnSectionModel(SDBSection& section, EnSectionModel& model);

// ---- plastic stress distributions along one axis ---------------------------------------------------------

// The rectangles projected on z (aboutY: bending about y) or on y: strips [lo, hi] with an area per unit
// length w, each scaled by the yield factor of its rectangle.
struct EnProfile {
    std::array<double, enMaxRects> lo, hi, w;  // up to n
    int n = 0;
    double total = 0.0;  // the factored area
};

// factor: per rectangle (null: 1 for all).
void enProfile(const EnSectionModel& model, bool aboutY, const double* factor, EnProfile& out);
double enAreaBelow(const EnProfile& p, double u);
// The coordinate u below which the (factored) area is `area`.
double enCoordinateAtArea(const EnProfile& p, double area);
// The plastic modulus of the profile: the sum of the factored first moments about its equal-area axis.
double enPlasticModulus(const EnProfile& p);

// ---- classification --------------------------------------------------------------------------------------

struct EnPlateClass {
    double fy, epsilon;
    double sigma1, sigma2;    // elastic compressive stress at the two ends (kN/m², compression > 0)
    double alpha;             // compressed fraction of c, plastic distribution (0: none)
    bool freeEdgeCompressed;  // outstand, plastic: the compressed part lies at the free edge
    bool elasticCompressed;   // some compression in the elastic distribution
    double psi;               // sigma at the other end / largest compression (elastic; 1 without compression)
    bool psiAtFreeEdge;       // outstand, elastic: the largest compression at the free edge
    double kSigma;            // outstand: EN 1993-1-5 Table 4.2 (0 for internal parts and when not needed)
    double limit1, limit2, limit3;  // the c/t limits of classes 1, 2, 3 (0: not needed)
    int cls;
};

struct EnClassification {
    int sectionClass = 0;
    bool noNormalStress = false;  // N = My = Mz = 0: class 1
    bool elastic = false;         // the request's elastic verification: class 3 without classification
    int plateCount = 0;
    // Angles under compression, Table 5.2 sheet 3: h / t <= 15 eps and (b + h) / (2 t) <= 11.5 eps.
    bool angleCompression = false;
    double angleEpsilon = 0.0, angleHt = 0.0, angleBht = 0.0;
    int angleClass = 0;
    // Circular hollow sections, Table 5.2 sheet 3: d / t against 50, 70, 90 eps².
    bool tube = false;
    double tubeEpsilon = 0.0, tubeDt = 0.0;
    int tubeClass = 0;
    std::array<EnPlateClass, enMaxPlates> plates;  // up to plateCount, in the model's order (last: not zeroed)
};

// Classifies the model under the forces; fy is the section's (the smallest over its plates). elastic:
// class 3 without classification. No allocation.
void classifyEn(const EnSectionModel& model, const SDBSection& section, const KaConstrSteel& steel, double fy,
                const SteelDesign::Forces& forces, bool elastic, EnClassification& out);

// Table 5.2 sheet 1 (internal part) and sheet 2 (outstand) for one plate: the class-1/2 limits with the
// plastic alpha, the class-3 limit with the elastic psi; exposed for the tests.
int classifyInternal(double ratio, double epsilon, double alpha, bool elasticCompressed, double psi,
                     EnPlateClass* detail = nullptr);
int classifyOutstand(double ratio, double epsilon, double alpha, bool freeEdgeCompressed, bool elasticCompressed,
                     double psi, bool psiAtFreeEdge, EnPlateClass* detail = nullptr);

} // namespace design
