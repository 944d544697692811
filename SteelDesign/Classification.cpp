#include "Classification.h"

#include "CrossSectionCutter.h"
#include "StressUtil.h"

#include <KaMaterial.h>
#include <KaMath.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>

namespace SteelDesign {

namespace {

constexpr double tol = 1e-6;

double epsilonOf(double fy) { return std::fabs(fy) < tol ? 1.0 : std::sqrt(235000.0 / fy); }

// StressCalculator::calculateNormalStress for many points of one section under one set of forces: the
// section properties are read and the quotients N / A, My / Iy and Mz / Iz formed once, and every point
// then costs two products, with the same operations in the same order (so the same values).
class NormalStressField {
public:
    NormalStressField(const SDBSection& section, const Forces& forces)
    {
        const double A = section.getA();
        const double Iy = section.getIy();
        const double Iz = section.getIz();
        // StressCalculator::isValid: usable as a divisor.
        auto usable = [](double x) { return !KaMath::isFuzzyZero(x, KaMath::getEpsMin()); };
        valid_ = usable(A) && usable(Iy) && usable(Iz);
        if (valid_) {
            nA_ = forces.getN() / A;
            myIy_ = forces.getMy() / Iy;
            mzIz_ = forces.getMz() / Iz;
        }
    }

    double at(const KaVector3D& p) const { return valid_ ? nA_ + myIy_ * p.getZ() - mzIz_ * p.getY() : 0.0; }

private:
    bool valid_ = false;
    double nA_ = 0.0, myIy_ = 0.0, mzIz_ = 0.0;
};

// Buckling factor k_sigma of an outstand, EN 1993-1-5 Table 4.2, from the stresses s1 at the supported
// and s2 at the free edge, in this library's order of tests: whenever the supported edge is compressed
// the first row applies, also when the free edge is more compressed (psi > 1).
double kSigmaOf(double s1, double s2)
{
    if (!(s2 >= tol && std::fabs(s1) - tol <= std::fabs(s2))) {
        if (s1 < -tol) {
            const double psi = s2 / s1;
            return 0.57 - 0.21 * psi + 0.07 * psi * psi;
        }
    }
    if (s1 >= tol && std::fabs(s2) <= std::fabs(s1) + tol) return 0.0;
    if (s2 < -tol) {
        const double psi = s1 / s2;
        if (-tol <= psi && psi < 1.000001) return 0.578 / (psi + 0.34);
        if (-1.000001 <= psi && psi < -tol) return 1.7 - 5.0 * psi + 17.1 * psi * psi;
    }
    return 0.0;
}

} // namespace

Classification::Classification(KaConstrSteel* material, const Forces& forces, bool isBucklingResistance)
    : material_(material), forces_(forces), isBucklingResistance_(isBucklingResistance)
{
}

Classification::~Classification() = default;

int Classification::classify(SDBSection* section)
{
    const int handled = section->accept(this);
    return handled == 0 ? 0 : sectionClass_;
}

double Classification::findFy(double t) const { return material_->getFyk(t); }

void Classification::classifySection(SDBSection* section)
{
    CrossSectionCutter cutter;
    section->accept(&cutter);
    const int flangeClass = classifyFlanges(cutter.getFlangeParts());
    const int webClass = classifyWebs(cutter.getWebParts());
    if (webClass == 3 && (flangeClass == 1 || flangeClass == 2))
        sectionClass_ = 2;
    else
        sectionClass_ = std::max(flangeClass, webClass);
}

// The stresses at the plates' end points are evaluated once per point and shared by the tests of the
// plate (compressed fraction, largest compression, stress type, k_sigma, psi).
int Classification::classifyFlanges(const std::vector<std::unique_ptr<FlangePart>>& parts) const
{
    if (parts.empty()) return 0;
    const NormalStressField field(*section_, forces_);
    int worst = 0;
    for (const auto& part : parts)
        worst = std::max(worst, classifyFlange(*part, field.at(part->getFirstPoint()), field.at(part->getSecondPoint())));
    return worst;
}

int Classification::classifyWebs(const std::vector<std::unique_ptr<WebPart>>& parts) const
{
    if (parts.empty()) return 0;
    const NormalStressField field(*section_, forces_);
    int worst = 0;
    for (const auto& part : parts)
        worst = std::max(worst, classifyWeb(*part, field.at(part->getFirstPoint()), field.at(part->getSecondPoint())));
    return worst;
}

int Classification::classifyFlangePart(const FlangePart& part) const
{
    const NormalStressField field(*section_, forces_);
    return classifyFlange(part, field.at(part.getFirstPoint()), field.at(part.getSecondPoint()));
}

int Classification::classifyWebPart(const WebPart& part) const
{
    const NormalStressField field(*section_, forces_);
    return classifyWeb(part, field.at(part.getFirstPoint()), field.at(part.getSecondPoint()));
}

// Outstand flanges, EN 1993-1-1 Table 5.2 sheet 2; s1 and s2 are the normal stresses at the supported
// (first) and the free (second) edge.
int Classification::classifyFlange(const FlangePart& part, double s1, double s2) const
{
    const double t = part.getT();
    const double fy = findFy(t);
    const double epsilon = epsilonOf(fy);

    double alpha = StressUtil::alfaOf(s1, s2);
    const kat::Nullable<double> sigma = StressUtil::maxCompressiveOf(s1, s2);
    if (StressUtil::normalStressTypeOf(s2) == NormalStressType::Tension && alpha > tol) alpha *= std::sqrt(alpha);

    if (alpha <= tol) return 1;  // no compression
    const double kSigma = kSigmaOf(s1, s2);
    const double root = kSigma >= -tol ? std::sqrt(std::max(kSigma, 0.0)) : 0.0;
    if (std::fabs(t) < tol) return 0;
    const double ratio = part.getC() / t;

    auto isClass3 = [&](double e) { return ratio > 10.0 * e / alpha + tol && ratio < 21.0 * e * root + tol; };

    int cls;
    const double limit1 = 9.0 * epsilon / alpha;
    if (ratio < limit1 + tol)
        cls = 1;
    else if (limit1 != 0.0 && ratio < 10.0 * epsilon / alpha + tol)
        cls = 2;
    else if (isClass3(epsilon))
        cls = 3;
    else
        cls = 4;

    if (!isBucklingResistance() && cls == 4) {
        const double s = sigma.hasValue() ? sigma.value() : 0.0;
        const double enlarged = epsilon + std::sqrt(std::fabs(fy / s));
        cls = isClass3(enlarged) ? 3 : 4;
    }
    return cls;
}

// Internal compression parts, EN 1993-1-1 Table 5.2 sheet 1; s1 and s2 are the normal stresses at the
// first and the second end point.
int Classification::classifyWeb(const WebPart& part, double s1, double s2) const
{
    const double t = part.getT();
    const double fy = findFy(t);
    const double alpha = StressUtil::alfaOf(s1, s2);
    if (std::fabs(t) < tol) return 0;

    const double ratio = part.getC() / t;
    const double psi = s2 / s1;  // StressUtil::calculatePsiWeb
    const kat::Nullable<double> sigma = StressUtil::maxCompressiveOf(s1, s2);
    const double epsilon = std::sqrt(235000.0 / fy);

    if (alpha <= tol) return 1;

    const bool largeAlpha = alpha > 0.5 + tol;
    auto isClass3 = [&](double e) {
        if (psi > -1.0 + tol) return 456.0 * e / (13.0 * alpha - 1.0) + tol < ratio && ratio < 42.0 * e / (0.67 + 0.33 * psi) + tol;
        return 41.5 * e / alpha + tol < ratio && ratio < 62.0 * e * (1.0 - psi) * std::sqrt(std::fabs(psi)) + tol;
    };

    int cls;
    if (largeAlpha ? ratio < 396.0 * epsilon / (13.0 * alpha - 1.0) + tol : ratio < 36.0 * epsilon / alpha + tol)
        cls = 1;
    else if (largeAlpha ? (396.0 * epsilon / (13.0 * alpha - 1.0) + tol < ratio &&
                           ratio < 456.0 * epsilon / (13.0 * alpha - 1.0) + tol)
                        : (36.0 * epsilon / alpha + tol < ratio && ratio < 41.5 * epsilon / alpha + tol))
        cls = 2;
    else if (isClass3(epsilon))
        cls = 3;
    else
        cls = 4;

    if (!isBucklingResistance() && cls == 4) {
        const double s = sigma.hasValue() ? sigma.value() : 0.0;
        cls = isClass3(epsilon + std::sqrt(std::fabs(fy / s))) ? 3 : 4;
    }
    return cls;
}

// Angles, EN 1993-1-1 Table 5.2 sheet 3, with the limits applied to each leg's own c/t.
int Classification::classifyAngleLeg(const FlangePart& leg) const
{
    const double t = leg.getT();
    if (std::fabs(t) < tol) return 0;
    const double fy = findFy(t);
    const double epsilon = std::pow(235000.0 / fy, 0.5);
    const double ratio = leg.getC() / t;
    auto isClass3 = [&](double e) { return ratio < 15.0 * e + tol && ratio < 11.5 * e + tol; };
    int cls = isClass3(epsilon) ? 3 : 4;
    if (!isBucklingResistance() && cls == 4) {
        const kat::Nullable<double> s =
            StressUtil(section_, forces_).calculateMaxCompressive(leg.getFirstPoint(), leg.getSecondPoint());
        // sqrt(fy / sigma) of a compressive (negative) sigma, without the absolute value.
        if (s.hasValue()) cls = isClass3(epsilon + std::sqrt(fy / s.value())) ? 3 : 4;
    }
    return cls;
}

void Classification::classifySectionL(SDBSection* section)
{
    CrossSectionCutter cutter;
    section->accept(&cutter);
    if (std::fabs(forces_.getMz()) < tol && std::fabs(forces_.getMy()) < tol) {
        int legClass = 0;  // a leg of zero thickness keeps the previous leg's class
        int worst = 0;
        for (const auto& leg : cutter.getFlangeParts()) {
            if (const int cls = classifyAngleLeg(*leg); cls != 0) legClass = cls;
            worst = std::max(worst, legClass);
        }
        sectionClass_ = worst;
    } else {
        sectionClass_ = classifyFlanges(cutter.getFlangeParts());
    }
}

// Circular hollow sections, EN 1993-1-1 Table 5.2 sheet 3: d/t against 50, 70 and 90 epsilon^2.
int Classification::classifySectionO(SDBSectionO* section)
{
    const double d = section->getD();
    const double t = section->getT();
    const double fy = findFy(t);
    const double epsilon = epsilonOf(fy);
    const double e2 = epsilon * epsilon;
    int cls = 0;
    if (std::fabs(t) >= tol) {
        const double r = d / t;
        if (r < 50.0 * e2 + tol)
            cls = 1;
        else if (50.0 * e2 + tol < r && r < 70.0 * e2 + tol)
            cls = 2;
        else if (70.0 * e2 + tol < r && r < 90.0 * e2 + tol)
            cls = 3;
        else if (r > 90.0 * e2 + tol)
            cls = 4;

        if (!isBucklingResistance() && cls == 4) {
            const double s = StressUtil(section_, forces_).calculateMaxCompressiveStressSectionO(d);
            if (s >= -tol) {
                cls = 1;
            } else {
                const double enlarged = epsilon + std::sqrt(std::fabs(fy / s));
                cls = r > 90.0 * enlarged * enlarged ? 4 : 3;
            }
        }
    }
    sectionClass_ = cls;
    return cls;
}

// Welded channels and Z sections: the flange's b/t against two limits (class 2 below the first, class 3
// below the second, class 4 above). Never class 1; nothing is set for a zero thickness.
int Classification::classifyWelded(double flangeWidth, double t, double limit2, double limit3)
{
    if (std::fabs(t) < tol) return 1;
    const double r = flangeWidth / t;
    const double epsilon = epsilonOf(findFy(t));
    if (r < limit2 * epsilon + tol)
        sectionClass_ = 2;
    else if (r < limit3 * epsilon + tol)
        sectionClass_ = 3;
    else if (r > limit3 * epsilon + tol)
        sectionClass_ = 4;
    return 1;
}

// Sections cut into flange and web plates.
int Classification::classifyPlated(SDBSection* section)
{
    section_ = section;
    classifySection(section);
    return 1;
}

int Classification::visit(SDBSectionI* section) { return classifyPlated(section); }

int Classification::visit(SDBSectionC* section) { return classifyPlated(section); }
int Classification::visit(SDBSectionRH* section) { return classifyPlated(section); }
int Classification::visit(SDBSectionT* section) { return classifyPlated(section); }
int Classification::visit(SDBSectionU* section) { return classifyPlated(section); }
int Classification::visit(SDBSectionZ* section) { return classifyPlated(section); }
int Classification::visit(SDBSectionL* section)
{
    section_ = section;
    classifySectionL(section);
    return 1;
}

int Classification::visit(SDBSectionO* section)
{
    section_ = section;
    sectionClass_ = classifySectionO(section);
    return 1;
}

int Classification::visit(SDBSectionWU* section)
{
    section_ = section;
    return classifyWelded(section->getFlangeWidth(), section->getT(), 37.0, 49.0);
}

int Classification::visit(SDBSectionWZ* section)
{
    section_ = section;
    return classifyWelded(section->getFlangeWidth(), section->getT(), 45.0, 66.0);
}

int Classification::visit(SDBSectionUpstandBeam*) { return 0; }
int Classification::visit(SDBSectionThick*) { return 0; }
int Classification::visit(SDBSectionSpring*) { return 0; }
int Classification::visit(SDBSectionR*) { return 0; }
int Classification::visit(SDBSectionPolygon*) { return 0; }
int Classification::visit(SDBSectionIX*) { return 0; }
int Classification::visit(SDBSectionDownstandBeam*) { return 0; }
int Classification::visit(SDBSectionCircle*) { return 0; }
int Classification::visit(SDBSectionBeamPoly*) { return 0; }
int Classification::visit(SDBSectionAsPoint*) { return 0; }
int Classification::visit(SDBSectionAsLine*) { return 0; }

} // namespace SteelDesign
