#pragma once

#include "BucklingCurve.h"
#include "ErrorCode.h"
#include "Export.h"
#include "Axis.h"
#include "Forces.h"
#include "VerificationControl.h"

#include <SDBSectionVisitor.h>

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

class KaConstrSteel;

namespace SteelDesign {

// The entry of every check: from the section, its steel, the design actions and the verification
// control it derives once the section class, the governing yield strength fy (the smallest over the
// section's plates, kN/m^2), E and G, the type key, the plate thicknesses, the web height hw, the
// (web thickness, web height) pair for shear buckling, the flexural buckling curves about y and z
// (EN 1993-1-1 Table 6.2), the lateral-torsional buckling curve (Tables 6.4 and 6.5) and the warping
// constant Iw.
//
// Handled kinds: I, C, Circle, L, O, R, RH, T, U, Z; for every other kind checkSection() is false and
// the object keeps class 1, fy 0, unset curves.
//
// Initial values (the kind's handler may leave them): curves none, error code NoError, Iw and hw 0.0.
//
// Rules kept as they stand:
//  - the type key is found after the section is classified, so it is still empty while classifying;
//  - the I handler tests S460 with the smaller of web and flange thickness, although fy is taken over
//    both; the RH handler pushes only the web thickness s but tests S460 with t;
//  - a rolled I with h/b > 1.2 and tf > 100 mm leaves the flexural curves as they were (unset);
//  - Iw of a U section from the host's own expression (see calculateIw).
class STEELDESIGN_API SectionInitializer : public SDBSectionVisitor {
public:
    // The type key as a value: the checks branch on it many times per call, so the key is compared with
    // the database's keys once (in findSectionType) and the outcome kept. None while the key is empty
    // (before findSectionType, or for a section without a type record), Other for a key outside the list.
    enum class SectionKind : unsigned char { None, I, C, Circle, L, O, R, RH, T, U, Z, WU, WZ, Other };

    SectionInitializer(SDBSection* section, KaConstrSteel* material, const Forces& forces,
                       VerificationControl control, bool useRolledSectionMethod);
    SectionInitializer(const SectionInitializer&) = default;
    SectionInitializer(SectionInitializer&&) = default;
    SectionInitializer& operator=(const SectionInitializer&) = default;
    SectionInitializer& operator=(SectionInitializer&&) = default;
    ~SectionInitializer() override;

    // Lets the section accept this initializer; true when its kind is handled.
    bool checkSection();
    void findSectionType();
    void findSectionClass();
    // fy = the smallest characteristic yield strength over the thicknesses (KaMath::maxDouble if none).
    void findMinFy(const std::vector<double>& thicknesses);
    // S460 test: fy >= 460000 for t <= 40 mm, fy >= 430000 above (both with tolerance 1e-6).
    bool isSteel460(double t) const;
    // Iw from the host; computed only when the host's value is within 1e-6 of zero:
    //   I: Iw = Iz (h - tf)^2 / 4;
    //   U: A1 = (b - tw) tf^3 / 12 + (b - tw) tf (h - tf)^2 / 4, A2 = tw (h - tf)^3 / 12,
    //      Iw = ((A1^2 + 2 A1 A2) / Iy) (b - tw / 2)^2 / 3;
    //   any other type key: the host's value is kept.
    void calculateIw(double tw, double tf);
    // Section modulus for bending about the axis: plastic for classes 1 and 2, elastic for class 3,
    // 0 for class 4, class 0 and any other axis value.
    double findW(Axis axis) const;
    void findBendingBucklingCurve(bool rolled, bool hotRolled);
    void findBucklingCurveHollowProfile(bool hotRolled, bool steel460);
    void findCompressionBucklingCurveSectionIAxisY(double tf, bool rolled, bool steel460);
    void findCompressionBucklingCurveSectionIAxisZ(double tf, bool rolled, bool steel460);

    int getClass() const { return sectionClass_; }
    double getFy() const { return fy_; }
    double getEs() const { return Es_; }
    double getG() const { return G_; }
    double getIw() const { return Iw_; }
    double getHw() const { return hw_; }
    ErrorCode getErrorCode() const { return errorCode_; }
    const std::string& getSectionType() const { return sectionType_; }
    SectionKind getSectionKind() const { return sectionKind_; }
    std::vector<double> getThicknessVector() const { return thicknesses_.toVector(); }
    // The same thicknesses without a copy (valid while the initializer lives and is not changed).
    std::span<const double> getThicknesses() const { return thicknesses_.view(); }
    std::array<double, 2> getLimitingValuesShearBuckling() const { return limitingValuesShearBuckling_; }
    BucklingCurve getCompressionBucklingCurveAxisY() const { return compressionBucklingCurveAxisY_; }
    BucklingCurve getCompressionBucklingCurveAxisZ() const { return compressionBucklingCurveAxisZ_; }
    BucklingCurve getBendingBucklingCurve() const { return bendingBucklingCurve_; }
    bool getUseRolledSectionMethod() const { return useRolledSectionMethod_; }
    VerificationControl getVerificationControl() const { return verificationControl_; }
    SDBSection* getSection() const { return section_; }
    KaConstrSteel* getMaterial() const { return material_; }
    const Forces& getForces() const { return forces_; }

    void setErrorCode(ErrorCode code) { errorCode_ = code; }
    void setHw(double hw) { hw_ = hw; }

    int visit(SDBSectionZ* section) override;
    int visit(SDBSectionWZ* section) override;
    int visit(SDBSectionWU* section) override;
    int visit(SDBSectionUpstandBeam* section) override;
    int visit(SDBSectionU* section) override;
    int visit(SDBSectionThick* section) override;
    int visit(SDBSectionT* section) override;
    int visit(SDBSectionSpring* section) override;
    int visit(SDBSectionRH* section) override;
    int visit(SDBSectionR* section) override;
    int visit(SDBSectionPolygon* section) override;
    int visit(SDBSectionO* section) override;
    int visit(SDBSectionL* section) override;
    int visit(SDBSectionIX* section) override;
    int visit(SDBSectionI* section) override;
    int visit(SDBSectionDownstandBeam* section) override;
    int visit(SDBSectionCircle* section) override;
    int visit(SDBSectionC* section) override;
    int visit(SDBSectionBeamPoly* section) override;
    int visit(SDBSectionAsPoint* section) override;
    int visit(SDBSectionAsLine* section) override;

private:
    // The plate thicknesses in the order the kind's handler pushes them. Every handled kind pushes one or
    // two, so they are held in place; a list that grows beyond the inline capacity (a handler run more
    // than once) moves to the heap and keeps growing as a vector does.
    class ThicknessList {
    public:
        ThicknessList() = default;
        ThicknessList(const ThicknessList&) = default;
        ThicknessList& operator=(const ThicknessList&) = default;
        // A moved-from list is empty, as a moved-from vector is.
        ThicknessList(ThicknessList&& other) noexcept
            : inline_(other.inline_), size_(other.size_), heap_(std::move(other.heap_))
        {
            other.clear();
        }
        ThicknessList& operator=(ThicknessList&& other) noexcept
        {
            if (this != &other) {
                inline_ = other.inline_;
                size_ = other.size_;
                heap_ = std::move(other.heap_);
                other.clear();
            }
            return *this;
        }

        void push_back(double t)
        {
            if (heap_.empty() && size_ < inline_.size()) {
                inline_[size_++] = t;
                return;
            }
            if (heap_.empty()) heap_.assign(inline_.begin(), inline_.end());
            heap_.push_back(t);
            ++size_;
        }
        std::span<const double> view() const { return {heap_.empty() ? inline_.data() : heap_.data(), size_}; }
        std::vector<double> toVector() const
        {
            const std::span<const double> v = view();
            return std::vector<double>(v.begin(), v.end());
        }

    private:
        void clear()
        {
            size_ = 0;
            heap_.clear();
        }

        std::array<double, 4> inline_{};
        std::size_t size_ = 0;
        std::vector<double> heap_;
    };

    void findMinFy(std::span<const double> thicknesses);
    // The common sequence of every handler after thicknesses, hw and limiting values are set.
    void findMaterialClassAndType();
    void setCurves(BucklingCurve y, BucklingCurve z, BucklingCurve bending);
    double heightToWidth() const;

    SDBSection* section_;
    KaConstrSteel* material_;
    Forces forces_;
    BucklingCurve compressionBucklingCurveAxisY_ = BucklingCurve::none;
    BucklingCurve compressionBucklingCurveAxisZ_ = BucklingCurve::none;
    BucklingCurve bendingBucklingCurve_ = BucklingCurve::none;
    VerificationControl verificationControl_;
    ErrorCode errorCode_ = ErrorCode::NoError;
    std::string sectionType_;
    SectionKind sectionKind_ = SectionKind::None;
    ThicknessList thicknesses_;
    std::array<double, 2> limitingValuesShearBuckling_{0.0, 0.0};
    bool useRolledSectionMethod_;
    int sectionClass_ = 1;
    double fy_ = 0.0;
    double Es_ = 0.0;
    double G_ = 0.0;
    double Iw_ = 0.0;
    double hw_ = 0.0;
};

} // namespace SteelDesign
