#pragma once

#include "Export.h"
#include "FlangePart.h"
#include "Forces.h"
#include "WebPart.h"

#include <SDBSectionVisitor.h>

#include <memory>
#include <vector>

class KaConstrSteel;
class KaVector3D;

namespace SteelDesign {

// Cross-section classification to EN 1993-1-1 Table 5.2 under the given design actions.
//
// The section is cut into plates (CrossSectionCutter); each plate's class follows from its c/t ratio,
// epsilon = sqrt(235000 / fy) with fy of its own thickness, and its normal-stress distribution
// (compressed fraction alpha, stress ratio psi, buckling factor k_sigma of EN 1993-1-5 Table 4.2).
// Handled kinds: I, C, RH, T, U, Z (flanges and webs), L (legs), O (d/t), WU and WZ (b/t of the
// flange). Circle, R and every other kind give class 0.
//
// Rules of this library kept as they stand:
//  - a class-3 web with class-1 or class-2 flanges makes the section class 2;
//  - when a plate comes out class 4 and the check is not for a buckling resistance, the class-3 limit is
//    tested again with epsilon' = epsilon + sqrt(|fy / sigma_com,Ed|) (added, not multiplied), sigma the
//    largest compressive stress of the plate; angles under axial force use sqrt(fy / sigma) without the
//    absolute value (so the re-test leaves them in class 4);
//  - a flange whose free edge is in tension has alpha replaced by alpha^1.5;
//  - angles under axial force alone are class 3 or 4, never 1 or 2; WU and WZ are never class 1.
class STEELDESIGN_API Classification : public SDBSectionVisitor {
public:
    Classification(KaConstrSteel* material, const Forces& forces, bool isBucklingResistance);
    Classification(const Classification&) = default;
    Classification& operator=(const Classification&) = default;
    ~Classification() override;

    // The class 1..4 of the section, or 0 for a kind that is not classified.
    int classify(SDBSection* section);

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

    // The class of one plate, for reports (the section class is formed from these). Valid after
    // classify() of the section the plate was cut from.
    int classifyFlangePart(const FlangePart& part) const;
    int classifyWebPart(const WebPart& part) const;
    // The class of an angle's leg under axial force alone (Table 5.2 sheet 3): 3 or 4, or 0 for a leg of
    // zero thickness (which the section class passes over).
    int classifyAngleLeg(const FlangePart& leg) const;

private:
    int classifyPlated(SDBSection* section);
    void classifySection(SDBSection* section);
    void classifySectionL(SDBSection* section);
    int classifySectionO(SDBSectionO* section);
    int classifyWelded(double flangeWidth, double t, double limit2, double limit3);
    int classifyFlange(const FlangePart& part, double s1, double s2) const;
    int classifyWeb(const WebPart& part, double s1, double s2) const;
    int classifyFlanges(const std::vector<std::unique_ptr<FlangePart>>& parts) const;
    int classifyWebs(const std::vector<std::unique_ptr<WebPart>>& parts) const;
    double findFy(double t) const;
    bool isBucklingResistance() const { return isBucklingResistance_; }

    KaConstrSteel* material_;
    SDBSection* section_ = nullptr;
    Forces forces_;
    int sectionClass_ = 0;
    bool isBucklingResistance_;
};

} // namespace SteelDesign
