#pragma once

#include "KaExport.h"

class SDBSection;
class SDBSectionZ;
class SDBSectionWZ;
class SDBSectionWU;
class SDBSectionUpstandBeam;
class SDBSectionU;
class SDBSectionThick;
class SDBSectionT;
class SDBSectionSpring;
class SDBSectionRH;
class SDBSectionR;
class SDBSectionPolygon;
class SDBSectionO;
class SDBSectionL;
class SDBSectionIX;
class SDBSectionI;
class SDBSectionDownstandBeam;
class SDBSectionCircle;
class SDBSectionC;
class SDBSectionBeamPoly;
class SDBSectionAsPoint;
class SDBSectionAsLine;

// Visitor over the section kinds of the section database. A section's accept() calls the overload of
// its own kind and returns that call's int. By convention an analysing visitor returns 1 for a kind it
// handles and 0 for a kind it ignores.
class KA_HOST_API SDBSectionVisitor {
protected:
    SDBSectionVisitor() = default;
    SDBSectionVisitor(const SDBSectionVisitor&) = default;
    SDBSectionVisitor& operator=(const SDBSectionVisitor&) = default;

public:
    virtual ~SDBSectionVisitor();

    virtual int visit(SDBSectionZ* section) = 0;
    virtual int visit(SDBSectionWZ* section) = 0;
    virtual int visit(SDBSectionWU* section) = 0;
    virtual int visit(SDBSectionUpstandBeam* section) = 0;
    virtual int visit(SDBSectionU* section) = 0;
    virtual int visit(SDBSectionThick* section) = 0;
    virtual int visit(SDBSectionT* section) = 0;
    virtual int visit(SDBSectionSpring* section) = 0;
    virtual int visit(SDBSectionRH* section) = 0;
    virtual int visit(SDBSectionR* section) = 0;
    virtual int visit(SDBSectionPolygon* section) = 0;
    virtual int visit(SDBSectionO* section) = 0;
    virtual int visit(SDBSectionL* section) = 0;
    virtual int visit(SDBSectionIX* section) = 0;
    virtual int visit(SDBSectionI* section) = 0;
    virtual int visit(SDBSectionDownstandBeam* section) = 0;
    virtual int visit(SDBSectionCircle* section) = 0;
    virtual int visit(SDBSectionC* section) = 0;
    virtual int visit(SDBSectionBeamPoly* section) = 0;
    virtual int visit(SDBSectionAsPoint* section) = 0;
    virtual int visit(SDBSectionAsLine* section) = 0;
};
