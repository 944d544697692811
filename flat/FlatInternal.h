#pragma once

// Internal working blocks and routines of the flat calculation interface (not installed for hosts; the
// public header is steeldesign_flat.h). All routines are free functions over plain blocks that the entry
// zero-fills at the start of every call; nothing here allocates or keeps state between calls.
//
// Internal units: lengths of the section in mm (dimensions, coordinates), section properties in m
// (A m^2, I m^4, W m^3, Iw m^6; the section set-up converts the caller's cm units), stresses and strengths in N/mm^2 = MN/m^2, actions in kN, kNm, kNm^2.

#include "steeldesign_flat.h"

#include <cstdint>

namespace SteelDesign::Flat {

inline constexpr int kMaxSegments = 3;
inline constexpr int kMaxPlates = 6;
inline constexpr int kMaxSectionPoints = 16;
inline constexpr int kLoadPointStride = 9;
inline constexpr int kLoadPointBase = 100;
inline constexpr double kLimitStart = 999999.9;

// Which shear force acts at a point: web-type parts carry Vz, flange-type parts Vy, walls of closed
// sections at a corner both.
enum PartType : int { kPartWeb = 0, kPartFlange = 1, kPartBoth = 2 };
// Plate of the classification (EN 1993-1-1 Table 5.2): internal part (sheet 1) or outstand (sheet 2).
enum PlateType : int { kInternal = 0, kOutstand = 1 };

// Section kinds 1..21 (see docs/flat-interface.md).
bool isIKind(int kind);          // 1, 2, 3, 8, 9, 10
bool isWarpingKind(int kind);    // 1, 2, 3, 10: warping torsion (Mw, B) admitted
bool isRolledKind(int kind);     // 1, 2
bool isHollowKind(int kind);     // 20, 21
bool isAngleKind(int kind);      // 15, 16

// The design actions of one call.
struct Actions {
    double N = 0, My = 0, Mz = 0;
    double Vz = 0, Vy = 0; // load3, load5
    double Mt = 0;         // load6, St. Venant torsion
    double Mw = 0;         // load7, warping torsion
    double B = 0;          // load8, bimoment
};

// Control block: switches of control[] and the material and member values of values[].
struct ControlBlock {
    int segmentCount = 0;
    int mode = 0;          // control[1]: 1 elastic path, otherwise the alternative (resistance) path
    int highStrength = 0;  // control[9]
    int elasticOnly = 0;   // control[17]: non-zero forbids plastic resistances
    int loadPosition = 0;  // control[2]
    double E = 0, G = 0, gammaM0 = 0, gammaM1 = 0;
    double segments[kMaxSegments][4] = {}; // t from, t to (mm), fy, fu (N/mm^2)
    bool axisYLoaded = false, axisZLoaded = false;
};

// Section block: the caller's section data as given.
struct SectionBlock {
    int kind = 0;
    int manufacturing = 0; // control[7]: 1 hot-finished (hollow sections)
    double dims[STEELDESIGN_FLAT_SECTION_DIMS_SIZE] = {};
    double props[STEELDESIGN_FLAT_SECTION_VALUES_SIZE] = {};
};

struct Plate {
    double y1 = 0, z1 = 0, y2 = 0, z2 = 0; // end points of the compressed width c (mm); end 1 is the root
    double c = 0, t = 0;                   // width and thickness for c / t (mm)
    int type = kInternal;
    int axisSwitch = 0;   // 0: part whose stress varies with My (webs), 1: with Mz (flanges)
    int parallel = 1;     // number of equal parts that share the axial force (webs of a box: 2)
    double sigma1 = 0, sigma2 = 0; // stresses at the ends (N/mm^2), from the stress evaluation
};

// Classification and resistances of the cross-section stage.
struct CrossSectionState {
    bool classified = false;
    int sectionClass = 0, webClass = 0, flangeClass = 0;
    int classUsed = 3;               // class whose resistances were taken (3 on the alternative path)
    double psiWeb = 0, alphaWeb = 0, ctWeb = 0, ctFlange = 0;
    double NplRd = 0, MyRd = 0, MzRd = 0, VzRd = 0, VyRd = 0; // MN, MNm
    double MNyRd = 0, MNzRd = 0, MyVRd = 0;
    double rhoZ = 0, rhoY = 0;
    double uN = 0, uMy = 0, uMz = 0, uVz = 0, uVy = 0, uNM = 0;
    double sigmaVMax = 0; // largest comparison stress (mode 1) or |sigma| (alternative), N/mm^2
};

// Set-up block: properties derived from the section block by the section set-up.
struct SetupBlock {
    int kind = 0;
    // plate geometry (mm): top flange b1 x tf1, bottom flange b2 x tf2, web tw over hw
    double h = 0, b1 = 0, tf1 = 0, b2 = 0, tf2 = 0, tw = 0, hw = 0, r = 0, weld = 0, tGov = 0;
    double zTop = 0, zBottom = 0; // top and bottom fibre relative to the centroid (mm)
    double zShear = 0;            // shear centre relative to the centroid (mm, downwards positive)
    double yLeft = 0, yRight = 0; // extreme fibres in y (mm)
    // material (N/mm^2)
    double fy = 0, fu = 0, fyd = 0, eps = 0;
    // properties (m)
    double A = 0, Iy = 0, Iz = 0, It = 0, Iw = 0, Wely = 0, Wply = 0, Welz = 0, Wplz = 0, Avz = 0, Avy = 0;
    double zM = 0;     // distance centroid - shear centre (m)
    double Am = 0;     // area enclosed by the wall mid-line of closed sections (mm^2)
    Plate plates[kMaxPlates];
    int plateCount = 0;
    int sectionPointsOff = 0; // control[11]
    int shearOff = 0;         // control[16]
    CrossSectionState cs;
};

struct StressPoint {
    double y = 0, z = 0; // mm
    double t = 0;        // plate thickness at the point (mm)
    int part = kPartWeb;
    double omega = 0;    // sectorial coordinate (m^2)
    double flangeWidth = 0, flangeDepth = 0; // flange width b and distance between flange mid-lines hf (mm)
    double sigma = 0;    // N/mm^2
};

// Stress-point block: the characteristic points of the section kind; load points live in results[].
struct StressPointBlock {
    StressPoint points[kMaxSectionPoints];
    int sectionCount = 0;
    int loadCount = 0;
    double limit[2] = {}; // smallest normal stress of the web-type (0) and flange-type (1) plates
};

// Member block: inputs and results of the lateral-torsional buckling stage and the compression-member check.
struct MemberBlock {
    Actions act;
    int kind = 0, mode = 0, manufacturing = 0, highStrength = 0;
    double E = 0, G = 0, gammaM1 = 0, fy = 0;
    double A = 0, Iy = 0, Iz = 0, It = 0, Iw = 0, Wely = 0, Wply = 0, Welz = 0, Wplz = 0;
    double h = 0, b = 0, t = 0, tf = 0, zM = 0;
    double L = 0, LT = 0, cTheta = 0;
    int loadPosition = 0;
    double zetaGiven = 0, kcGiven = 0, McrGiven = 0;
    double M1 = 0, Mm = 0, M2 = 0, spanLoadShare = 0;
    bool classComputed = false;
    int sectionClass = 0;
    double nSystem = 0, betaMy = 0, betaMz = 0;
    double chiLTmodGiven = 0, MbRdGiven = 0, NpldGiven = 0, MplydGiven = 0, MplzdGiven = 0;

    // critical moment
    double NcrZ = 0, Mcr = 0, c = 0, zp = 0, zeta = 0;
    std::uint16_t formulaFlag = 1;
    // design mode other than 1
    double chiLT = 0, chiLTmod = 0, f = 0, kc = 0, MbRd = 0, beta = 0;
    double lambdaLT = 0, lambdaLT0 = 0, alphaLT = 0, Phi = 0;
    std::uint16_t ignoreCode = 0;
    // design mode 1
    double kappaM = 0, ky = 0, kz = 0, lambdaM = 0, lambdaK = 0, kappa = 0;
    double Npld = 0, Mplyd = 0, Mplzd = 0, ay = 0, az = 0;
    char curve[3] = {};
    double utilisation = 0;
    bool ltbDone = false;
};

// Compression-member check (EN 1993-1-1 6.3.1, interaction 6.3.3 with Annex B).
struct CompressionInput {
    double Lcry = 0, Lcrz = 0;            // buckling lengths (mm)
    double NcryGiven = 0, NcrzGiven = 0;  // kN
    double NbRdGiven = 0, NpldGiven = 0;  // kN
    double CmyGiven = 0, CmzGiven = 0;
    bool momentY = false, momentZ = false;
};
struct CompressionResult {
    double lambdaY = 0, lambdaZ = 0, chiY = 1, chiZ = 1, NcrY = 0, NcrZ = 0, NbyRd = 0, NbzRd = 0;
    double alphaY = 0, alphaZ = 0, PhiY = 0, PhiZ = 0, kyy = 0, kzz = 0, kyz = 0, kzy = 0;
    double uY = 0, uZ = 0, u661 = 0, u662 = 0, utilisation = 0, Cmy = 0, Cmz = 0, NRk = 0, NbRd = 0;
    std::uint16_t code = 0;
};
enum CompressionCode : std::uint16_t {
    kBucklingY = 1,       // flexural buckling about y checked
    kBucklingZ = 2,       // flexural buckling about z checked
    kInteractionMy = 4,   // interaction with My
    kInteractionMz = 8,   // interaction with Mz
    kTensionSkipped = 16, // axial force is tension: nothing checked
    kExceeded = 32,       // utilisation above 1.0
};

// block initialisers
void clearControlBlock(ControlBlock& b);
void clearSectionBlock(SectionBlock& b);
void clearStressPointBlock(StressPointBlock& b);
void clearMemberBlock(MemberBlock& b);

// section set-up, stress points, stresses
void setUpSection(const ControlBlock& control, const SectionBlock& section, SetupBlock& setup);
int setUpStressPoints(const SetupBlock& setup, int kind, int loadCount, StressPointBlock& points);
StressPoint locatePoint(const SetupBlock& setup, int kind, double y, double z);
double pointStress(const SetupBlock& setup, const StressPoint& p, const Actions& a);
double pointShearFromForces(const SetupBlock& setup, const StressPoint& p, const Actions& a);
double pointShearFromTorsion(const SetupBlock& setup, int kind, const StressPoint& p, const Actions& a);
void evaluateStresses(SetupBlock& setup, StressPointBlock& points, const Actions& a, int axisSwitch);

// cross-section stage
bool checkCrossSection(SetupBlock& setup, const ControlBlock& control, int kind, const Actions& a);
void computeResistances(SetupBlock& setup, const ControlBlock& control, int kind, const Actions& a);
// per stress point: writes slots 2..8 of a nine-value point record (out[0], out[1] are the coordinates)
void crossSectionByKindElastic(const SetupBlock& setup, int kind, const StressPoint& p, const Actions& a, double* out);
void crossSectionByKindAlternative(const SetupBlock& setup, int kind, const StressPoint& p, const Actions& a,
                                   double* out);

// member checks
double momentCoefficientZeta(double M1, double Mm, double M2, double spanLoadShare, std::uint16_t* formulaFlag);
double correctionFactorKc(double M1, double Mm, double M2, double spanLoadShare);
void flatLateralTorsionalBuckling(MemberBlock& m);
void compressionMemberCheck(const MemberBlock& m, const CompressionInput& in, double chiLT, CompressionResult& r);

// buckling curves (EN 1993-1-1 Table 6.2) and reduction factors
const char* flexuralCurve(int kind, int axis, double h, double b, double tf, int highStrength, int manufacturing);
double imperfectionFactor(const char* letter);
int curveCode(const char* letter);
double reductionFactorChi(double lambda, double alpha);

} // namespace SteelDesign::Flat
