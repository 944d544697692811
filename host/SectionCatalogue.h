#pragma once

// The catalogue of standard profiles, compiled into the host library (no files are read at run time),
// and factories for welded and cold-formed sections from their dimensions.
//
// Families, their kinds and flags:
//   IPE, HEA, HEB, HEM   SDBSectionI, key I, rolled (EN 10365)
//   UPE                  SDBSectionU, key U, rolled (parallel flanges, EN 10365 / DIN 1026-2)
//   L                    SDBSectionL, key L, rolled, equal angles with toe radius r1/2 (EN 10056-1)
//   RHS, SHS             SDBSectionRH, key RH, rolled, hot-finished (EN 10210-2, outer radius 1.5 t)
//   CHS                  SDBSectionO, key O, rolled, hot-finished (EN 10210-2)
//   HEAA, HD, HL, UB, UC SDBSectionI, key I, rolled (EN 10365; UB and UC as BS 4-1 names them)
//   PFC                  SDBSectionU, key U, rolled, parallel flange channels
//   L (unequal)          SDBSectionL, key L, rolled, unequal angles (EN 10056-1), longer leg along z
//   IPN                  SDBSectionI::tapered, key I, rolled, flange slope 14 % (DIN 1025-1 / EN 10365)
//   UPN                  SDBSectionU::tapered, key U, rolled, flange slope 8 % (h <= 300 mm) or 5 %
//   TIPE, THEA, THEB,    SDBSectionT, key T, rolled: tees cut at mid-depth from the rolled I of the same
//   THEM                 name ("TIPE 300" is half an IPE 300: h / 2, b, tw, tf, r)
//   CFRHS, CFSHS, CFCHS  cold-formed hollow sections (EN 10219-2): not hot-rolled, not rolled; RHS/SHS with
//                        the corner radii of coldFormedRHS
// Designations as engineers write them: "IPE 300", "HEA 1000", "UPE 200", "L 100x100x10",
// "RHS 200x100x8", "SHS 100x100x5", "CHS 219.1x8", "HEAA 300", "HD 400x1299", "HL 920x390", "HL 1100 R",
// "UB 457x191x67", "UC 305x305x97", "PFC 300x100x46", "L 200x100x10", "CFRHS 200x100x8", "CFSHS 100x100x5",
// "CFCHS 219.1x8". Lookup ignores case and blanks.

#include "SDBSection.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// An unknown designation: the message names it and suggests the nearest ones.
class KA_HOST_API SDBUnknownSectionError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

class KA_HOST_API SDBCatalogue {
public:
    // The section of the designation, named with its catalogue spelling, or null when unknown.
    static std::unique_ptr<SDBSection> find(std::string_view name);
    // The same, but an unknown designation throws SDBUnknownSectionError.
    static std::unique_ptr<SDBSection> get(std::string_view name);
    // The family names in catalogue order.
    static std::vector<std::string> families();
    // The designations of one family (case ignored), or of all families for an empty string; an unknown
    // family gives an empty list.
    static std::vector<std::string> names(std::string_view family = {});
    // Up to count designations nearest to the given one (edit distance of the normalised spellings,
    // the same family first).
    static std::vector<std::string> findNearest(std::string_view name, std::size_t count = 3);
    // Upper case without blanks: the key under which designations are compared.
    static std::string normalise(std::string_view name);

    // A welded I section (no root radius, not rolled), optionally mono-symmetric (b2, t2 > 0).
    static std::unique_ptr<SDBSectionI> weldedI(double h, double b, double tw, double tf, double b2 = 0.0,
                                                double t2 = 0.0);
    // A hot-finished EN 10210 RHS/SHS: outer corner radius 1.5 t (inner t).
    static std::unique_ptr<SDBSectionRH> hotFinishedRHS(double h, double b, double t);
    // A cold-formed EN 10219 RHS/SHS (not hot-rolled, not rolled: a welded tube): outer corner radius
    // 2 t for t <= 6 mm, 2.5 t for 6 < t <= 10 mm, 3 t above (EN 10219-2), inner radius outer - t.
    static std::unique_ptr<SDBSectionRH> coldFormedRHS(double h, double b, double t);
    static double coldFormedOuterRadius(double t);
};
