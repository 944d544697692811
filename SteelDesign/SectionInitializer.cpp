#include "SectionInitializer.h"

#include "Classification.h"

#include <KaMaterial.h>
#include <KaMath.h>
#include <KaStandard.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>

namespace SteelDesign {

namespace {
constexpr double tol = 1e-6;
}

SectionInitializer::SectionInitializer(SDBSection* section, KaConstrSteel* material, const Forces& forces,
                                       VerificationControl control, bool useRolledSectionMethod)
    : section_(section), material_(material), forces_(forces), verificationControl_(control),
      useRolledSectionMethod_(useRolledSectionMethod)
{
    Es_ = material_->getEModul();
    G_ = material_->getGModul();
    sectionClass_ = 1;
    checkSection();
}

SectionInitializer::~SectionInitializer() = default;

bool SectionInitializer::checkSection() { return section_->accept(this) != 0; }

namespace {

SectionInitializer::SectionKind kindOf(const std::string& key)
{
    using K = SectionInitializer::SectionKind;
    if (key.empty()) return K::None;
    if (key == SDBKey::I) return K::I;
    if (key == SDBKey::C) return K::C;
    if (key == SDBKey::Circle) return K::Circle;
    if (key == SDBKey::L) return K::L;
    if (key == SDBKey::O) return K::O;
    if (key == SDBKey::R) return K::R;
    if (key == SDBKey::RH) return K::RH;
    if (key == SDBKey::T) return K::T;
    if (key == SDBKey::U) return K::U;
    if (key == SDBKey::Z) return K::Z;
    if (key == SDBKey::WU) return K::WU;
    if (key == SDBKey::WZ) return K::WZ;
    return K::Other;
}

} // namespace

void SectionInitializer::findSectionType()
{
    sectionType_.clear();
    if (const SDBSectionType* type = section_->getType()) sectionType_ = type->getKey();
    sectionKind_ = kindOf(sectionType_);
}

void SectionInitializer::findSectionClass()
{
    if (verificationControl_ == VerificationControl::Classify) {
        Classification classification(material_, forces_, false);
        sectionClass_ = classification.classify(section_);
        if (sectionClass_ == 4) setErrorCode(ErrorCode::CrossSectionClass4);
    } else {
        sectionClass_ = 3;
    }
}

void SectionInitializer::findMinFy(const std::vector<double>& thicknesses)
{
    findMinFy(std::span<const double>(thicknesses));
}

void SectionInitializer::findMinFy(std::span<const double> thicknesses)
{
    fy_ = KaMath::maxDouble;
    for (double t : thicknesses) fy_ = std::min(fy_, material_->getFyk(t));
}

bool SectionInitializer::isSteel460(double t) const
{
    const double limit = KaMath::isFuzzySmallerEqual(t, 0.04, tol) ? 460000.0 : 430000.0;
    return KaMath::isFuzzyGreaterEqual(fy_, limit, tol);
}

void SectionInitializer::calculateIw(double tw, double tf)
{
    Iw_ = section_->getIw();
    if (!(std::fabs(Iw_ - 0.0) < tol)) return;
    const double h = section_->getHeight();
    const double b = section_->getWidth();
    if (sectionKind_ == SectionKind::I) {
        Iw_ = section_->getIz() * (h - tf) * (h - tf) / 4.0;
    } else if (sectionKind_ == SectionKind::U) {
        const double A1 = (b - tw) * tf * tf * tf / 12.0 + (b - tw) * tf * (h - tf) * (h - tf) / 4.0;
        const double A2 = tw * (h - tf) * (h - tf) * (h - tf) / 12.0;
        Iw_ = ((A1 * A1 + 2.0 * A1 * A2) / section_->getIy()) * (b - tw / 2.0) * (b - tw / 2.0) / 3.0;
    }
}

double SectionInitializer::findW(Axis axis) const
{
    const bool plastic = sectionClass_ == 1 || sectionClass_ == 2;
    const bool elastic = sectionClass_ == 3;
    if (axis == Axis::y) {
        if (plastic) return section_->getWply();
        if (elastic) return section_->getWy();
    } else if (axis == Axis::z) {
        if (plastic) return section_->getWplz();
        if (elastic) return section_->getWz();
    }
    return 0.0;
}

double SectionInitializer::heightToWidth() const { return section_->getHeight() / section_->getWidth(); }

// EN 1993-1-1 6.3.2.2 Table 6.4 (general case) and 6.3.2.3 Table 6.5 (rolled and equivalent welded
// sections); in standard mode 7 the national table with the limit h/b = 3.1 and hollow sections.
void SectionInitializer::findBendingBucklingCurve(bool rolled, bool hotRolled)
{
    const double r = heightToWidth();
    const bool upTo2 = KaMath::isFuzzySmallerEqual(r, 2.0, tol);
    if (!useRolledSectionMethod_) {
        if (rolled)
            bendingBucklingCurve_ = upTo2 ? BucklingCurve::a : BucklingCurve::b;
        else
            bendingBucklingCurve_ = upTo2 ? BucklingCurve::c : BucklingCurve::d;
        return;
    }
    if (static_cast<int>(KaStandard::get()->getMode()) != 7) {
        if (rolled)
            bendingBucklingCurve_ = upTo2 ? BucklingCurve::b : BucklingCurve::c;
        else
            bendingBucklingCurve_ = upTo2 ? BucklingCurve::c : BucklingCurve::d;
        return;
    }
    const bool isI = sectionKind_ == SectionKind::I;
    const bool isHollow = sectionKind_ == SectionKind::O || sectionKind_ == SectionKind::RH;
    if ((isI && rolled) || (isHollow && hotRolled)) {
        if (upTo2)
            bendingBucklingCurve_ = BucklingCurve::b;
        else if (KaMath::isFuzzySmallerEqual(r, 3.1, tol))
            bendingBucklingCurve_ = BucklingCurve::c;
        else
            bendingBucklingCurve_ = BucklingCurve::d;
    } else if ((isI && !rolled) || (isHollow && !hotRolled)) {
        bendingBucklingCurve_ = upTo2 ? BucklingCurve::c : BucklingCurve::d;
    }
}

// EN 1993-1-1 Table 6.2, hollow sections: hot finished a (a0 for S460), cold formed c.
void SectionInitializer::findBucklingCurveHollowProfile(bool hotRolled, bool steel460)
{
    const BucklingCurve curve = !hotRolled ? BucklingCurve::c : (steel460 ? BucklingCurve::a0 : BucklingCurve::a);
    compressionBucklingCurveAxisY_ = curve;
    compressionBucklingCurveAxisZ_ = curve;
}

// EN 1993-1-1 Table 6.2, rolled and welded I sections, buckling about y-y.
void SectionInitializer::findCompressionBucklingCurveSectionIAxisY(double tf, bool rolled, bool steel460)
{
    using BC = BucklingCurve;
    BC& curve = compressionBucklingCurveAxisY_;
    if (!rolled) {
        curve = KaMath::isFuzzyGreater(tf, 0.04, tol) ? BC::c : BC::b;
        return;
    }
    if (KaMath::isFuzzyGreater(heightToWidth(), 1.2, tol)) {
        if (KaMath::isFuzzySmallerEqual(tf, 0.04, tol))
            curve = steel460 ? BC::a0 : BC::a;
        else if (KaMath::isFuzzySmallerEqual(tf, 0.1, tol))
            curve = steel460 ? BC::a : BC::b;
        // tf > 100 mm with h/b > 1.2: not covered by the table, the curve is left as it is.
    } else {
        if (!KaMath::isFuzzyGreater(tf, 0.1, tol))
            curve = steel460 ? BC::a : BC::b;
        else
            curve = steel460 ? BC::c : BC::d;
    }
}

// EN 1993-1-1 Table 6.2, rolled and welded I sections, buckling about z-z.
void SectionInitializer::findCompressionBucklingCurveSectionIAxisZ(double tf, bool rolled, bool steel460)
{
    using BC = BucklingCurve;
    BC& curve = compressionBucklingCurveAxisZ_;
    if (!rolled) {
        curve = KaMath::isFuzzyGreater(tf, 0.04, tol) ? BC::d : BC::c;
        return;
    }
    if (KaMath::isFuzzyGreater(heightToWidth(), 1.2, tol)) {
        if (KaMath::isFuzzySmallerEqual(tf, 0.04, tol))
            curve = steel460 ? BC::a0 : BC::b;
        else if (KaMath::isFuzzySmallerEqual(tf, 0.1, tol))
            curve = steel460 ? BC::a : BC::c;
    } else {
        if (!KaMath::isFuzzyGreater(tf, 0.1, tol))
            curve = steel460 ? BC::a : BC::c;
        else
            curve = steel460 ? BC::c : BC::d;
    }
}

void SectionInitializer::findMaterialClassAndType()
{
    findMinFy(thicknesses_.view());
    findSectionClass();
    findSectionType();
}

void SectionInitializer::setCurves(BucklingCurve y, BucklingCurve z, BucklingCurve bending)
{
    compressionBucklingCurveAxisY_ = y;
    compressionBucklingCurveAxisZ_ = z;
    bendingBucklingCurve_ = bending;
}

int SectionInitializer::visit(SDBSectionI* section)
{
    const double s = section->getS(), t = section->getT();
    thicknesses_.push_back(s);
    thicknesses_.push_back(t);
    setHw(section->getH() - 2.0 * (t + section->getR1()));
    limitingValuesShearBuckling_ = {s, hw_};
    findMaterialClassAndType();
    const bool steel460 = isSteel460(std::min(s, t));
    findCompressionBucklingCurveSectionIAxisY(t, section->isRolled(), steel460);
    findCompressionBucklingCurveSectionIAxisZ(t, section->isRolled(), steel460);
    findBendingBucklingCurve(section->isRolled(), false);
    calculateIw(s, t);
    return 1;
}

int SectionInitializer::visit(SDBSectionC* section)
{
    const double t = section->getT();
    thicknesses_.push_back(t);
    limitingValuesShearBuckling_ = {t, section->getH() - 2.0 * (t - section->getQ())};
    findMaterialClassAndType();
    setCurves(BucklingCurve::c, BucklingCurve::c, BucklingCurve::d);
    return 1;
}

int SectionInitializer::visit(SDBSectionCircle* section)
{
    thicknesses_.push_back(section->getD());
    findMaterialClassAndType();
    setCurves(BucklingCurve::c, BucklingCurve::c, BucklingCurve::d);
    return 1;
}

int SectionInitializer::visit(SDBSectionL* section)
{
    const double s = section->getS();
    thicknesses_.push_back(s);
    setHw(section->getH() - s - section->getR1());
    limitingValuesShearBuckling_ = {s, hw_};
    findMaterialClassAndType();
    setCurves(BucklingCurve::b, BucklingCurve::b, BucklingCurve::d);
    return 1;
}

int SectionInitializer::visit(SDBSectionO* section)
{
    const double t = section->getT();
    thicknesses_.push_back(t);
    limitingValuesShearBuckling_ = {t, section->getD()};
    findMaterialClassAndType();
    findBucklingCurveHollowProfile(section->isHotRolled(), isSteel460(t));
    findBendingBucklingCurve(section->isRolled(), section->isHotRolled());
    return 1;
}

int SectionInitializer::visit(SDBSectionR* section)
{
    thicknesses_.push_back(section->getH());
    thicknesses_.push_back(section->getB());
    findMaterialClassAndType();
    setCurves(BucklingCurve::c, BucklingCurve::c, BucklingCurve::d);
    return 1;
}

int SectionInitializer::visit(SDBSectionRH* section)
{
    const double s = section->getS();
    thicknesses_.push_back(s);
    setHw(section->getH() - 2.0 * (s + section->getR1()));
    limitingValuesShearBuckling_ = {s, hw_};
    findMaterialClassAndType();
    findBucklingCurveHollowProfile(section->isHotRolled(), isSteel460(section->getT()));
    findBendingBucklingCurve(section->isRolled(), section->isHotRolled());
    return 1;
}

int SectionInitializer::visit(SDBSectionT* section)
{
    const double s = section->getS(), t = section->getT();
    thicknesses_.push_back(s);
    thicknesses_.push_back(t);
    setHw(section->getH() - t - section->getR1());
    limitingValuesShearBuckling_ = {s, hw_};
    findMaterialClassAndType();
    setCurves(BucklingCurve::c, BucklingCurve::c, BucklingCurve::d);
    return 1;
}

int SectionInitializer::visit(SDBSectionU* section)
{
    const double s = section->getS(), t = section->getT();
    thicknesses_.push_back(s);
    thicknesses_.push_back(t);
    setHw(section->getH() - 2.0 * (t + section->getR1()));
    limitingValuesShearBuckling_ = {s, hw_};
    findMaterialClassAndType();
    setCurves(BucklingCurve::c, BucklingCurve::c, BucklingCurve::d);
    calculateIw(s, t);
    return 1;
}

int SectionInitializer::visit(SDBSectionZ* section)
{
    const double s = section->getS(), t = section->getT();
    thicknesses_.push_back(s);
    thicknesses_.push_back(t);
    setHw(section->getH() - 2.0 * (t + section->getR1()));
    limitingValuesShearBuckling_ = {s, hw_};
    findMaterialClassAndType();
    setCurves(BucklingCurve::c, BucklingCurve::c, BucklingCurve::d);
    return 1;
}

int SectionInitializer::visit(SDBSectionWZ*) { return 0; }
int SectionInitializer::visit(SDBSectionWU*) { return 0; }
int SectionInitializer::visit(SDBSectionUpstandBeam*) { return 0; }
int SectionInitializer::visit(SDBSectionThick*) { return 0; }
int SectionInitializer::visit(SDBSectionSpring*) { return 0; }
int SectionInitializer::visit(SDBSectionPolygon*) { return 0; }
int SectionInitializer::visit(SDBSectionIX*) { return 0; }
int SectionInitializer::visit(SDBSectionDownstandBeam*) { return 0; }
int SectionInitializer::visit(SDBSectionBeamPoly*) { return 0; }
int SectionInitializer::visit(SDBSectionAsPoint*) { return 0; }
int SectionInitializer::visit(SDBSectionAsLine*) { return 0; }

} // namespace SteelDesign
