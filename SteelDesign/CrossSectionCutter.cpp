#include "CrossSectionCutter.h"

#include <SDBSection.h>

namespace SteelDesign {

CrossSectionCutter::~CrossSectionCutter() = default;

// Each visit reserves room for the plates of its kind first, so that the two vectors grow once per cut
// rather than once per plate.

void CrossSectionCutter::addFlange(double y1, double z1, double y2, double z2, double c, double t)
{
    flangeParts_.push_back(std::make_unique<FlangePart>(KaVector3D(0.0, y1, z1), KaVector3D(0.0, y2, z2), c, t));
}

void CrossSectionCutter::addWeb(double y1, double z1, double y2, double z2, double c, double t)
{
    webParts_.push_back(std::make_unique<WebPart>(KaVector3D(0.0, y1, z1), KaVector3D(0.0, y2, z2), c, t));
}

// Web, then the top flange's right and left outstands, then the bottom flange's.
int CrossSectionCutter::visit(SDBSectionI* section)
{
    webParts_.reserve(webParts_.size() + 1);
    flangeParts_.reserve(flangeParts_.size() + 4);
    const double h = section->getH(), s = section->getS(), r = section->getR1();
    const double b1 = section->getB();
    const double b2 = section->getB2Set() ? section->getB2() : b1;
    const double t1 = section->getT();
    const double t2 = section->getT2Set() ? section->getT2() : t1;
    const double zs = h / 2.0 + section->getEz();

    addWeb(0.0, -zs + t1 + r, 0.0, zs - t2 - r, h - t1 - t2 - 2.0 * r, s);
    addFlange(s / 2.0 + r, -zs, b1 / 2.0, -zs, (b1 - s - 2.0 * r) / 2.0, t1);
    addFlange(-s / 2.0 - r, -zs, -b1 / 2.0, -zs, (b1 - s - 2.0 * r) / 2.0, t1);
    addFlange(s / 2.0 + r, zs, b2 / 2.0, zs, (b2 - s - 2.0 * r) / 2.0, t2);
    addFlange(-s / 2.0 - r, zs, -b2 / 2.0, zs, (b2 - s - 2.0 * r) / 2.0, t2);
    return 1;
}

// Two flange outstands and the stem, which is an outstand too.
int CrossSectionCutter::visit(SDBSectionT* section)
{
    flangeParts_.reserve(flangeParts_.size() + 3);
    const double h = section->getH(), b = section->getB(), s = section->getS(), t = section->getT();
    const double r = section->getR1();
    const double zt = section->getEz();

    addFlange(s / 2.0 + r, -zt, b / 2.0, -zt, (b - s - 2.0 * r) / 2.0, t);
    addFlange(-s / 2.0 - r, -zt, -b / 2.0, -zt, (b - s - 2.0 * r) / 2.0, t);
    addFlange(0.0, -(zt - t - r), 0.0, h - zt, h - t - r, s);
    return 1;
}

int CrossSectionCutter::visit(SDBSectionU* section)
{
    webParts_.reserve(webParts_.size() + 1);
    flangeParts_.reserve(flangeParts_.size() + 2);
    const double h = section->getH(), b = section->getB(), s = section->getS(), t = section->getT();
    const double r = section->getR1();
    const double e = -section->getEy();

    addWeb(e, -(h / 2.0 - t - r), e, h / 2.0 - t - r, h - 2.0 * (t + r), s);
    addFlange(e - s - r, -h / 2.0, -(b - e), -h / 2.0, b - s - r, t);
    addFlange(e - s - r, h / 2.0, -(b - e), h / 2.0, b - s - r, t);
    return 1;
}

int CrossSectionCutter::visit(SDBSectionZ* section)
{
    webParts_.reserve(webParts_.size() + 1);
    flangeParts_.reserve(flangeParts_.size() + 2);
    const double h = section->getH(), b = section->getB(), s = section->getS(), t = section->getT();
    const double r = section->getR1();
    const double zs = h / 2.0 + section->getEz();

    addWeb(0.0, -zs + t + r, 0.0, zs - t - r, h - 2.0 * (t + r), s);
    addFlange(s / 2.0 + r, -zs, b - s / 2.0, -zs, b - s - r, t);
    addFlange(-s / 2.0 - r, zs, -b + s / 2.0, zs, b - s - r, t);
    return 1;
}

// Both legs are outstands of thickness s.
int CrossSectionCutter::visit(SDBSectionL* section)
{
    flangeParts_.reserve(flangeParts_.size() + 2);
    const double h = section->getH(), b = section->getB(), s = section->getS(), r = section->getR1();
    const double e = -section->getEy();
    const double f = -section->getEz();

    addFlange(e, f - s - r, e, -(h - f), h - s - r, s);
    addFlange(e - s - r, f, -(b - e), f, b - s - r, s);
    return 1;
}

// Four walls, all internal plates of thickness t; widths and points as this library defines them.
int CrossSectionCutter::visit(SDBSectionRH* section)
{
    webParts_.reserve(webParts_.size() + 4);
    const double h = section->getH(), b = section->getB(), t = section->getT(), r = section->getR1();
    const double w = b / 2.0 - t - r;

    addWeb(w, -(h - t) / 2.0, -w, -(h - t) / 2.0, b, t);
    addWeb(w, (h - t) / 2.0, w, (h - t) / 2.0, b, t);
    addWeb((b - t) / 2.0, -h / 2.0 + t + r, (b - t) / 2.0, h / 2.0 - t - r, h, t);
    addWeb((b - t) / 2.0, -h / 2.0 + t + r, -(b - t) / 2.0, h / 2.0 - t - r, h, t);
    return 1;
}

// Flanges and web are internal plates, the lips outstands; all of thickness t.
int CrossSectionCutter::visit(SDBSectionC* section)
{
    webParts_.reserve(webParts_.size() + 3);
    flangeParts_.reserve(flangeParts_.size() + 2);
    const double h = section->getH(), b = section->getB(), t = section->getT(), C = section->getC();
    const double e = -section->getEy();

    addWeb(e - t, -h / 2.0, -(b - e - t), -h / 2.0, b - 2.0 * t, t);
    addWeb(e - t, h / 2.0, -(b - e - t), h / 2.0, h - 2.0 * t, t);
    addWeb(e, -h / 2.0 + t, e, h / 2.0 - t, b - 2.0 * t, t);
    addFlange(-(b - e), -h / 2.0 + t, -(b - e), -C / 2.0, (h - C) / 2.0 - t, t);
    addFlange(-(b - e), h / 2.0 - t, -(b - e), C / 2.0, (h - C) / 2.0 - t, t);
    return 1;
}

int CrossSectionCutter::visit(SDBSectionWZ*) { return 0; }
int CrossSectionCutter::visit(SDBSectionWU*) { return 0; }
int CrossSectionCutter::visit(SDBSectionUpstandBeam*) { return 0; }
int CrossSectionCutter::visit(SDBSectionThick*) { return 0; }
int CrossSectionCutter::visit(SDBSectionSpring*) { return 0; }
int CrossSectionCutter::visit(SDBSectionR*) { return 0; }
int CrossSectionCutter::visit(SDBSectionPolygon*) { return 0; }
int CrossSectionCutter::visit(SDBSectionO*) { return 0; }
int CrossSectionCutter::visit(SDBSectionIX*) { return 0; }
int CrossSectionCutter::visit(SDBSectionDownstandBeam*) { return 0; }
int CrossSectionCutter::visit(SDBSectionCircle*) { return 0; }
int CrossSectionCutter::visit(SDBSectionBeamPoly*) { return 0; }
int CrossSectionCutter::visit(SDBSectionAsPoint*) { return 0; }
int CrossSectionCutter::visit(SDBSectionAsLine*) { return 0; }

} // namespace SteelDesign
