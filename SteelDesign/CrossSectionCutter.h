#pragma once

#include "Export.h"
#include "FlangePart.h"
#include "WebPart.h"

#include <SDBSectionVisitor.h>

#include <memory>
#include <vector>

namespace SteelDesign {

// Cuts a section into the plates that classification tests: outstands (FlangePart) and internal plates
// (WebPart), each with its end points, width c and thickness t. I, C, L, RH, T, U and Z sections are
// cut (visit returns 1); every other kind appends nothing and returns 0.
//
// Points are (x, y, z) with x = 0, in the centroidal axes of the section (z downwards); the section's
// offsets ey and ez place the plates. The plate widths and points follow the rules of this library as
// they stand, including these on purpose:
//  - rectangular hollow sections: every wall gets the full outer dimension (b or h) as c, the bottom
//    wall's two points coincide and the left wall runs diagonally;
//  - lipped channels: the bottom flange gets c = h - 2t and the web c = b - 2t.
class STEELDESIGN_API CrossSectionCutter : public SDBSectionVisitor {
public:
    CrossSectionCutter() = default;
    ~CrossSectionCutter() override;

    const std::vector<std::unique_ptr<FlangePart>>& getFlangeParts() const { return flangeParts_; }
    const std::vector<std::unique_ptr<WebPart>>& getWebParts() const { return webParts_; }

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
    void addFlange(double y1, double z1, double y2, double z2, double c, double t);
    void addWeb(double y1, double z1, double y2, double z2, double c, double t);

    std::vector<std::unique_ptr<FlangePart>> flangeParts_;
    std::vector<std::unique_ptr<WebPart>> webParts_;
};

} // namespace SteelDesign
