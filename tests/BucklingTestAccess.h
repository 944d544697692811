#pragma once

// Reaches the private steps of BucklingResistance for the tests of the member checks, and builds the
// members that those tests share.

#include "TestSections.h"

#include <KaMaterial.h>
#include <KaStandard.h>
#include <SteelDesign/BucklingResistance.h>

#include <vector>

struct BucklingResistanceTestAccess {
    using BR = SteelDesign::BucklingResistance;
    static double chi(const BR& b, double lambda, SteelDesign::BucklingCurve curve, SteelDesign::BucklingType type,
                      bool forceLTBMethod)
    {
        return b.calculateChi(lambda, curve, type, forceLTBMethod);
    }
    static double correctionFactor(const BR& b) { return b.findCorrectionFactor(); }
    static double zeta(const BR& b, SteelDesign::MomentDiagramCases c, double psi) { return b.calculateZeta(c, psi); }
    static double zeta0(const BR& b) { return b.calculateZeta0(); }
    static double zeta0S(const BR& b, double k) { return b.calculateZeta0S(k); }
    static double zeta0Theta(const BR& b, double k) { return b.calculateZeta0Theta(k); }
    static void lambdaLT0AndBeta(const BR& b, Standard::Mode mode)
    {
        b.findLambdaLT0(mode);
        b.findbeta(mode);
    }
    static void equivalentMomentFactor(const BR& b, SteelDesign::Axis axis) { b.findEquivalentMomentFactor(axis); }
    static void interactionFactors(const BR& b) { b.calculateInteractionFactors(); }
    static double normalStress(const BR& b, const KaVector3D& p) { return b.calculateNormalStress(p); }
    static double lambdaW(const BR& b) { return b.calculateLambdaW(); }
    static double eta(double fy) { return BR::calculateEta(fy); }
    static double chiW(double lambdaW, double eta) { return BR::chiWFor(lambdaW, eta); }
};

namespace buckling_test {

using namespace SteelDesign;

inline KaConstrSteel steel(const char* name) { return *KaConstrSteel::fromName(name); }

// Sets the standard mode for the lifetime of the object.
class ModeScope {
public:
    explicit ModeScope(Standard::Mode mode) : old_(KaStandard::get()->getMode()) { KaStandard::get()->setMode(mode); }
    ~ModeScope() { KaStandard::get()->setMode(old_); }
    ModeScope(const ModeScope&) = delete;
    ModeScope& operator=(const ModeScope&) = delete;

private:
    Standard::Mode old_;
};

// HEB 200 with the producers' table values: A = 78.08 cm2, Iy = 5696 cm4, Iz = 2003 cm4, Wel,y = 569.6 cm3,
// Wel,z = 200.3 cm3, Wpl,y = 642.5 cm3, Wpl,z = 305.8 cm3, It = 59.28 cm4, Iw = 171.1e3 cm6.
inline SDBSectionI heb200()
{
    return withRow(SDBSectionI(0.200, 0.200, 0.009, 0.015, 0.018),
                   {78.08e-4, 5696e-8, 2003e-8, 569.6e-6, 200.3e-6, 642.5e-6, 305.8e-6, 59.28e-8, 171.1e-9});
}

// Everything a member check needs, kept alive together.
struct Member {
    SDBSection* section;
    KaConstrSteel material;
    Forces forces;
    SectionInitializer initializer;
    BucklingResults results;
    BucklingResistance resistance;

    Member(SDBSection& s, const char* grade, const Forces& f, double length, const MomentDistribution& moments = {},
           bool rolledMethod = false, VerificationControl control = VerificationControl::Classify,
           double gammaM1 = 1.0, double cTheta = 0.0, double shearPanel = 0.0, bool torsionallyDeformable = false,
           bool cmFloor = false)
        : section(&s), material(steel(grade)), forces(f),
          initializer(section, &material, forces, control, rolledMethod),
          resistance(results, section, initializer, forces, moments, gammaM1, length, cTheta, shearPanel,
                     torsionallyDeformable, cmFloor)
    {
    }
    Member(const Member&) = delete;
    Member& operator=(const Member&) = delete;
};

inline MomentDistribution momentsY(double M1, double Mm, double M2, MomentDiagram diagram = MomentDiagram::Polygonal,
                                   double maxMoment = 0.0, ApplicationPoint point = ApplicationPoint::Center,
                                   double mcr = 0.0)
{
    return MomentDistribution({M1, Mm, M2}, diagram, {0.0, 0.0, 0.0}, MomentDiagram::Polygonal, maxMoment, point, mcr);
}

} // namespace buckling_test
