#pragma once

#include "KaExport.h"
#include "KaVector3D.h"
#include "SDBSectionVisitor.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// The section database of the host: section kinds with their dimensions and properties.
//
// Units: lengths m, areas m^2, section moduli and first moments m^3, second moments and the torsion
// constant m^4, warping constant m^6.
//
// Axes: y is the major (strong) axis and z the minor one, both through the centroid; z points
// downwards, so the top fibre has the smallest z (getZMin() < 0) and a positive My puts the bottom
// fibre (z > 0) in tension. Each kind's header comment says where its reference point lies; the
// offsets getEy()/getEz() are the centroid's coordinates measured from that reference point, so a
// point given from the reference point has the centroidal coordinates (y - ey, z - ez).
//
// Angles (L) and Z sections: the database answers for the axes through the centroid parallel to the
// legs (L) and to the flanges and the web (Z), not for the inclined principal axes: Iy, Iz, the moduli,
// the first moments and the extreme fibres are those of these axes, and the product of inertia Iyz
// (SDBProperties::Iyz) is neglected by the stress formula. This is what the plate end points of the
// classification are written in (legs and flanges along y and z), and it is the convention of the
// producers' tables for Iy, Iz and Wel.
//
// Every kind built from dimensions computes all its properties once, in its constructor, and stores
// them in SDBProperties. The constructors validate the dimensions and throw SDBDimensionError (an
// std::invalid_argument) whose message names the kind, the dimension and its value.
//
// Properties by kind (EN 1993-1-1 6.2.6(3) with eta = 1.0 for the shear areas):
//   kind    Avz (shear force along z)                  Avy (along y)          webArea        It
//   I rolled A - b1 t1 - b2 t2 + (s + 2r)(t1 + t2)/2,  b1 t1 + b2 t2          hw s,          rolled: flanges, web and
//            at least hw s (6.2.6(3)(a))               (flanges)              hw = h-t1-t2   the fillet junction term
//   I welded hw s (6.2.6(3)(d))                        b1 t1 + b2 t2 (e)                     welded: sum b t^3 / 3
//   U        A - 2 b t + (s + r) t (6.2.6(3)(b))        2 b t                  (h - 2t) s     as I, corner junctions
//   T        A - b t + (s + 2r) t / 2 (6.2.6(3)(c))     b t                    (h - t) s      as I, one junction
//   Z        A - 2 b t + (s + r) t (as a channel)       2 b t                  (h - 2t) s     as U
//   L        h s (leg along z)                          b s (leg along y)      (h - s) s      legs, corner junction
//   RH       A h / (b + h) (6.2.6(3)(f)); walls of      A b / (b + h)          2 (h - 2t) s   EN 10210-2 / 10219-2
//            unequal thickness: 2 (h - 2t) s (d)        A - Avz (e)                           closed-wall formula
//   O        2 A / pi (6.2.6(3)(g))                     2 A / pi               A / 2          pi (D^4 - d^4) / 32
//   C        (h - 2t) t (web, 6.2.6(3)(d))              A - Avz                (h - 2t) t     sum l t^3 / 3 (centre line)
//   WU, WZ   (h - 2t) s (6.2.6(3)(d))                   A - Avz (e)            (h - 2t) s     sum b t^3 / 3
//   R        A (solid)                                  A                      A              Roark's rectangle
//   Circle   A (solid)                                  A                      A              pi D^4 / 32
// A U or Z built with rolled = false takes the WU / WZ row (no fillet term, welded shear areas).
// The fillet junction term of It is the producers' one (El Darwish and Johnston, as in the ECCS
// tables): alpha D^4 per web-flange junction, minus 0.105 t^4 for every free plate end.
// Iw about the shear centre: I: hs^2 I1 I2 / (I1 + I2) with Ii = ti bi^3 / 12, hs = h - t1/2 - t2/2
// (tf b^3 (h - tf)^2 / 24 when doubly symmetric); U: t b'^3 h'^2 / 12 (3 b' t + 2 h' s) / (6 b' t + h' s);
// Z: t b'^3 h'^2 / 12 (b' t + 2 h' s) / (2 b' t + h' s) (b' = b - s/2, h' = h - t); T: b^3 t^3 / 144 +
// s^3 (h - t/2)^3 / 36; L: s^3 ((h - s/2)^3 + (b - s/2)^3) / 36; C: the sectorial integral of the centre
// line; WU and WZ: the U and Z formulas. Closed sections (RH, O) and solid bars (R, Circle) have Iw = 0:
// their warping resistance is negligible against their St. Venant stiffness.
// The governing thickness is the flange thickness (the larger of the two) for I, U, T, Z, WU, WZ, the
// wall t for RH, O and C, the leg s for L, the smaller side for R and D for Circle; the torsion
// thickness is the thickest plate of the section.

// Type keys of the section database, compared as strings.
struct KA_HOST_API SDBKey {
    static const std::string I;
    static const std::string C;
    static const std::string Circle;
    static const std::string L;
    static const std::string O;
    static const std::string R;
    static const std::string RH;
    static const std::string T;
    static const std::string U;
    static const std::string Z;
    static const std::string WU;
    static const std::string WZ;
};

// The section's type record.
class KA_HOST_API SDBSectionType {
public:
    explicit SDBSectionType(std::string key) : key_(std::move(key)) {}
    const std::string& getKey() const { return key_; }

private:
    std::string key_;
};

// A bad dimension of a section: the message names the kind, the dimension and its value,
// e.g. "I section: flange thickness t = 0.2 m must be less than h/2 = 0.15 m".
class KA_HOST_API SDBDimensionError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

// The outline of a section as closed polygons in centroidal coordinates (y, z): the outer contour
// first, then the holes; ringEnds[i] is one past the last point of ring i. Round corners and fillets
// are replaced by chords. Kinds whose first moments have a closed form keep it empty.
struct KA_HOST_API SDBOutline {
    struct Point {
        double y, z;
    };
    std::vector<Point> points;
    std::vector<unsigned> ringEnds;
};

// Every property of a section as the database stores it (one row). Computed from the dimensions when a
// section is built from them; a host that reads its own tables may fill it directly.
struct KA_HOST_API SDBProperties {
    double A = 0.0;                  // area
    double Iy = 0.0, Iz = 0.0;       // second moments about the centroidal y and z axes
    double It = 0.0;                 // St. Venant torsion constant
    double Iw = 0.0;                 // warping constant about the shear centre (0: none in the database)
    double Wely = 0.0, Welz = 0.0;   // elastic section moduli (smallest over the extreme fibres)
    double Wply = 0.0, Wplz = 0.0;   // plastic section moduli
    double Avy = 0.0, Avz = 0.0;     // shear areas for a shear force in y and in z (EN 1993-1-1 6.2.6(3))
    double webArea = 0.0;            // area of the web (hw * tw) used by the interaction checks
    double ey = 0.0, ez = 0.0;       // centroid measured from the kind's reference point
    double zMin = 0.0, zMax = 0.0;   // smallest (top) and largest (bottom) z of the section
    double yMin = 0.0, yMax = 0.0;   // smallest and largest y of the section
    double Sy0 = 0.0, Sz0 = 0.0;     // first moment of the part on one side of the y (z) centroidal axis
    double governingThickness = 0.0; // the governing plate thickness t (flange or wall)
    double torsionThickness = 0.0;   // the thickest plate, where the St. Venant shear stress is largest
    double webThickness = 0.0;       // tw
    double flangeWidth1 = 0.0;       // width of the first (top) flange
    double flangeWidth2 = 0.0;       // width of the second (bottom) flange (0 for T and L: none)
    double Iyz = 0.0;                // product of inertia about y and z (non-zero for L and Z only)
};

class KA_HOST_API SDBSection {
public:
    virtual ~SDBSection();

    const std::string& getName() const { return name_; }
    void setName(std::string name) { name_ = std::move(name); }

    double getHeight() const { return height_; }
    double getWidth() const { return width_; }
    double getWy() const { return props_.Wely; }
    double getWz() const { return props_.Welz; }
    // First moments for shear: index 0 is the part on one side of the centroidal axis (the largest
    // first moment, at the neutral axis); any other index gives 0.
    double getSys(int index) const { return index == 0 ? props_.Sy0 : 0.0; }
    double getSzs(int index) const { return index == 0 ? props_.Sz0 : 0.0; }
    double getZMin() const { return props_.zMin; }
    double getZMax() const { return props_.zMax; }
    double getWebArea() const { return props_.webArea; }
    double getIw() const { return props_.Iw; }
    bool isRolled() const { return rolled_; }
    // The type record, or null for a section that has none.
    const SDBSectionType* getType() const { return hasType_ ? &type_ : nullptr; }

    const SDBProperties& getProperties() const { return props_; }
    void setProperties(const SDBProperties& properties) { props_ = properties; }
    void setRolled(bool rolled) { rolled_ = rolled; }
    void setTypeKey(std::string key) { type_ = SDBSectionType(std::move(key)); hasType_ = true; }
    void clearType() { hasType_ = false; }

    // --- virtual operations, in slot order --------------------------------------------------------
    // Calls the visitor's overload for this kind and returns its result.
    virtual int accept(SDBSectionVisitor* visitor) = 0;
    // First moment about y of the part of the section beyond the horizontal line through the point
    // (the part on the far side of z = point.z from the centroid), as a magnitude: Sy for the shear
    // stress V_z S / (I_y t). 0 at the extreme fibres, largest at the centroid.
    virtual double getSy(const KaVector3D& point) const;
    // The same about z, for the part beyond the vertical line y = point.y.
    virtual double getSz(const KaVector3D& point) const;
    virtual double getEz() const { return props_.ez; }
    virtual double getEy() const { return props_.ey; }
    virtual double getIy() const { return props_.Iy; }
    virtual double getA() const { return props_.A; }
    virtual double getIz() const { return props_.Iz; }
    virtual double getIt() const { return props_.It; }
    virtual double getWply() const { return props_.Wply; }
    virtual double getWplz() const { return props_.Wplz; }
    // A C section's additional dimension q (0 for every other kind). The web height that the checks
    // take for a C section is h - 2 (t - q).
    virtual double getQ() const { return 0.0; }
    virtual double getAvy() const { return props_.Avy; }
    virtual double getAvz() const { return props_.Avz; }
    virtual double getGoverningThickness() const { return props_.governingThickness; }
    virtual double getFlangeWidth1() const { return props_.flangeWidth1; }
    virtual double getFlangeWidth2() const { return props_.flangeWidth2; }
    virtual double getWebThickness() const { return props_.webThickness; }
    virtual double getTorsionThickness() const { return props_.torsionThickness; }

    // The outline (centroidal coordinates) from which the properties were computed; empty for the
    // kinds with closed forms (O, R, Circle) and for sections that carry a host's properties only.
    const SDBOutline& getOutline() const { return outline_; }

protected:
    SDBSection(double height, double width, bool rolled, const std::string& typeKey);
    SDBSection(const SDBSection&) = default;
    SDBSection& operator=(const SDBSection&) = default;

    // Stores the overall depth and width (getHeight, getWidth) when they differ from the base's.
    void setOverallSize(double height, double width)
    {
        height_ = height;
        width_ = width;
    }
    // Computes A, the centroid offsets (from the outline's reference point), Iy, Iz, Iyz, the moduli,
    // Sy0, Sz0 and the extreme fibres from outline_, which is moved to centroidal coordinates.
    void computeFromOutline();

    SDBProperties props_;
    SDBOutline outline_;

private:
    std::string name_;
    double height_;
    double width_;
    bool rolled_;
    bool hasType_ = true;
    SDBSectionType type_;
};

#define KA_SDB_ACCEPT \
    int accept(SDBSectionVisitor* visitor) override { return visitor->visit(this); }

// Doubly or mono-symmetric I section. h depth, b (b2) width of the top (bottom) flange, s web, t (t2)
// top (bottom) flange thickness, r1 root radius (0 for a welded section). Reference point: mid-height
// on the web axis; ez = z of the centroid below mid-height (0 when doubly symmetric, < 0 when the top
// flange is the larger one), so the top fibre lies at z = -(h/2 + ez).
class KA_HOST_API SDBSectionI : public SDBSection {
public:
    SDBSectionI(double h, double b, double s, double t, double r1, bool rolled = true);
    SDBSectionI(double h, double b, double s, double t, double r1, double b2, double t2, bool rolled = false);
    // A rolled I with tapered flanges (IPN, EN 10365 / DIN 1025-1): the inner faces of the flanges slope
    // by flangeSlope (0.14 for IPN), t is the flange thickness halfway between the web face and the tip,
    // r1 the root radius and r2 the toe radius. It and Iw take the formulas of parallel flanges of
    // thickness t.
    static std::unique_ptr<SDBSectionI> tapered(double h, double b, double s, double t, double r1, double r2,
                                                double flangeSlope);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getS() const { return s_; }
    double getT() const { return t_; }
    double getR1() const { return r1_; }
    double getB2() const { return b2_; }
    double getT2() const { return t2_; }
    bool getB2Set() const { return b2Set_; }
    bool getT2Set() const { return t2Set_; }
    double getR2() const { return r2_; }
    double getFlangeSlope() const { return flangeSlope_; }

private:
    void build();
    double h_, b_, s_, t_, r1_, b2_, t2_;
    bool b2Set_, t2Set_;
    double r2_ = 0.0, flangeSlope_ = 0.0;
};

// Cold-formed lipped channel, thin-walled. h depth, b flange width, t wall, c clear distance between
// the two lip ends (lip depth (h - c)/2 over the outside of the flange). Reference point: back of the
// web at mid-height; the flanges point to -y, so ey = -(distance from the web back to the centroid) < 0.
// The cold-formed corners are taken sharp (EN 1993-1-3 5.1(3): their influence may be neglected for
// r <= 5 t); A, I, W and Wpl are those of the wall outline, It and Iw those of the centre line. q = 0:
// with sharp corners the web height h - 2 (t - q) is the flat web between the flanges.
class KA_HOST_API SDBSectionC : public SDBSection {
public:
    SDBSectionC(double h, double b, double t, double c, bool rolled = false);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getT() const { return t_; }
    double getC() const { return c_; }
    double getQ() const override { return 0.0; }

private:
    double h_, b_, t_, c_;
};

// Solid round bar of diameter d. Reference point: the centre.
class KA_HOST_API SDBSectionCircle : public SDBSection {
public:
    explicit SDBSectionCircle(double d, bool rolled = true);
    KA_SDB_ACCEPT
    double getD() const { return d_; }
    double getSy(const KaVector3D& point) const override;
    double getSz(const KaVector3D& point) const override;

private:
    double d_;
};

// Angle. h length of the leg along z, b length of the leg along y, s thickness, r1 root radius, r2 toe
// radius (at the inner edge of both leg ends; EN 10056-1 rolls r2 = r1/2). Reference point: the heel
// (the outer corner); the legs point to -y and -z, so ey < 0 and ez < 0. Axes parallel to the legs.
class KA_HOST_API SDBSectionL : public SDBSection {
public:
    // Without toe radius (r2 = 0).
    SDBSectionL(double h, double b, double s, double r1, bool rolled = true);
    SDBSectionL(double h, double b, double s, double r1, double r2, bool rolled);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getS() const { return s_; }
    double getR1() const { return r1_; }
    double getR2() const { return r2_; }

private:
    void build();
    double h_, b_, s_, r1_, r2_;
};

// Circular hollow section: d outer diameter, t wall. Reference point: the centre.
class KA_HOST_API SDBSectionO : public SDBSection {
public:
    SDBSectionO(double d, double t, bool hotRolled, bool rolled = true);
    KA_SDB_ACCEPT
    double getD() const { return d_; }
    double getT() const { return t_; }
    bool isHotRolled() const { return hotRolled_; }
    double getSy(const KaVector3D& point) const override;
    double getSz(const KaVector3D& point) const override;

private:
    double d_, t_;
    bool hotRolled_;
};

// Solid rectangle h x b. Reference point: the centre.
class KA_HOST_API SDBSectionR : public SDBSection {
public:
    SDBSectionR(double h, double b, bool rolled = true);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getSy(const KaVector3D& point) const override;
    double getSz(const KaVector3D& point) const override;

private:
    double h_, b_;
};

// Rectangular or square hollow section: h depth, b width, s the two webs (vertical walls) and t the two
// flanges (horizontal walls), equal for rolled tubes, r1 outer corner radius. Inner corner radius, with
// t' = max(s, t): hot-finished r1 - t'/2 (EN 10210-2: 1.5 t outside, 1.0 t inside), cold-formed r1 - t'
// (EN 10219-2, concentric corners; the radii are in SDBCatalogue::coldFormedRHS).
// Reference point: the centre.
class KA_HOST_API SDBSectionRH : public SDBSection {
public:
    SDBSectionRH(double h, double b, double s, double t, double r1, bool hotRolled, bool rolled = true);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getS() const { return s_; }
    double getT() const { return t_; }
    double getR1() const { return r1_; }
    bool isHotRolled() const { return hotRolled_; }

private:
    double h_, b_, s_, t_, r1_;
    bool hotRolled_;
};

// T section: h depth, b flange width, s stem, t flange, r1 root radius. Reference point: top of the
// flange on the stem axis; ez = distance from the top to the centroid (> 0).
class KA_HOST_API SDBSectionT : public SDBSection {
public:
    SDBSectionT(double h, double b, double s, double t, double r1, bool rolled = true);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getS() const { return s_; }
    double getT() const { return t_; }
    double getR1() const { return r1_; }

private:
    double h_, b_, s_, t_, r1_;
};

// Channel with parallel flanges: h depth, b flange width (including the web), s web, t flange, r1 root
// radius. Reference point: back of the web at mid-height; the flanges point to -y, so
// ey = -(distance from the web back to the centroid) < 0.
class KA_HOST_API SDBSectionU : public SDBSection {
public:
    SDBSectionU(double h, double b, double s, double t, double r1, bool rolled = true);
    // A rolled channel with tapered flanges (UPN, EN 10365 / DIN 1026-1): the inner faces slope by
    // flangeSlope (0.08 up to h = 300 mm, 0.05 above), t is the flange thickness halfway along the flange
    // from the web face to the tip, r1 the root radius and r2 the toe radius. It and Iw take the
    // formulas of parallel flanges of thickness t.
    static std::unique_ptr<SDBSectionU> tapered(double h, double b, double s, double t, double r1, double r2,
                                                double flangeSlope);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getS() const { return s_; }
    double getT() const { return t_; }
    double getR1() const { return r1_; }
    double getR2() const { return r2_; }
    double getFlangeSlope() const { return flangeSlope_; }

private:
    double h_, b_, s_, t_, r1_;
    double r2_ = 0.0, flangeSlope_ = 0.0;
};

// Z section: h depth, b flange width measured from the back of the web to the tip (the overall width
// is 2 b - s), s web, t flange, r1 root radius. The top flange points to +y, the bottom one to -y.
// Reference point: the centre of the web (the centroid: ey = ez = 0). Axes parallel to the flanges.
class KA_HOST_API SDBSectionZ : public SDBSection {
public:
    SDBSectionZ(double h, double b, double s, double t, double r1, bool rolled = true);
    KA_SDB_ACCEPT
    double getH() const { return h_; }
    double getB() const { return b_; }
    double getS() const { return s_; }
    double getT() const { return t_; }
    double getR1() const { return r1_; }

private:
    double h_, b_, s_, t_, r1_;
};

// Welded sections with flange-width and flange-thickness getters (base of WU and WZ): h depth,
// flangeWidth measured from the back of the web to the tip (including the web), s web, t flange;
// no root radius. WU is placed like U (reference at the web back, flanges to -y), WZ like Z.
class KA_HOST_API SDBSectionW : public SDBSection {
public:
    double getH() const { return h_; }
    double getFlangeWidth() const { return flangeWidth_; }
    double getS() const { return s_; }
    double getT() const { return t_; }

protected:
    SDBSectionW(double h, double flangeWidth, double s, double t, const std::string& typeKey);

private:
    double h_, flangeWidth_, s_, t_;
};

// Welded channel.
class KA_HOST_API SDBSectionWU : public SDBSectionW {
public:
    SDBSectionWU(double h, double flangeWidth, double s, double t);
    KA_SDB_ACCEPT
};

// Welded Z section.
class KA_HOST_API SDBSectionWZ : public SDBSectionW {
public:
    SDBSectionWZ(double h, double flangeWidth, double s, double t);
    KA_SDB_ACCEPT
};

// Kinds that the database knows but the steel checks ignore. They carry whatever properties the host
// gives them (setProperties) and their overall height and width.
#define KA_SDB_OTHER_KIND(Kind, key)                                                              \
    class KA_HOST_API Kind : public SDBSection {                                                  \
    public:                                                                                       \
        explicit Kind(double height = 0.0, double width = 0.0) : SDBSection(height, width, false, key) {} \
        KA_SDB_ACCEPT                                                                             \
    };

KA_SDB_OTHER_KIND(SDBSectionAsLine, "AsLine")
KA_SDB_OTHER_KIND(SDBSectionAsPoint, "AsPoint")
KA_SDB_OTHER_KIND(SDBSectionBeamPoly, "BeamPoly")
KA_SDB_OTHER_KIND(SDBSectionDownstandBeam, "DownstandBeam")
KA_SDB_OTHER_KIND(SDBSectionIX, "IX")
KA_SDB_OTHER_KIND(SDBSectionPolygon, "Polygon")
KA_SDB_OTHER_KIND(SDBSectionSpring, "Spring")
KA_SDB_OTHER_KIND(SDBSectionThick, "Thick")
KA_SDB_OTHER_KIND(SDBSectionUpstandBeam, "UpstandBeam")

#undef KA_SDB_OTHER_KIND
