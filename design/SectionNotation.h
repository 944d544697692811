#pragma once

// Sections by name: a designation of the catalogue ("IPE 300", "HEB 200", "CHS 219.1x8") or a section
// given by its dimensions in mm, in the notation engineers write on drawings:
//
//   WI h x b x tw x tf                 welded I, doubly symmetric ("WI 1200x300x8x20")
//   WI h x b x tw x tf / b2 x t2       welded I with a different bottom flange ("WI 900x300x10x25/250x20")
//   WT h x b x tw x tf                 welded T (flange on top)
//   WBOX h x b x tw x tf               welded box: two webs tw, two flanges tf ("WBOX 400x300x12x16")
//   RHS h x b x t, SHS a x t           hot-finished hollow section (EN 10210-2, outer corner radius 1.5 t)
//   CHS d x t                          hot-finished circular hollow section (EN 10210-2)
//   CFRHS h x b x t, CFSHS a x t,      cold-formed hollow sections (EN 10219-2 corner radii)
//   CFCHS d x t
//   PLATE h x t                        flat plate or bar, h deep (along z) and t thick (along y)
//
// Letters are read without regard to case and blanks; "x" separates the dimensions. Welded sections have
// no root radius and are not rolled. A designation of the catalogue always wins: "RHS 200x100x8" is the
// catalogue's row; a size that the catalogue lacks is built from its dimensions.

#include <SDBSection.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace design {

// A name that is neither in the catalogue nor a valid dimension notation. The message names the
// section and, for a notation, the dimension and its value ("WI 1200x300x0x20: web thickness tw = 0 mm
// must be positive").
class SectionNameError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

// The section of a name; SectionNameError when there is none.
std::unique_ptr<SDBSection> makeSection(std::string_view name);

// The same without exceptions: the section, or null with the message in error.
std::unique_ptr<SDBSection> makeSection(std::string_view name, std::string& error);

// The section of a name given as a tool's input (an argument, a batch row, a Python argument): every
// tool resolves its section names here. InputError "section: <why>" naming the section and, for a
// notation, the dimension and its value.
std::unique_ptr<SDBSection> resolveSection(std::string_view name);

// True when the family of the name (the letters before its first digit) is one of the notations above.
bool isDimensionNotation(std::string_view name);

} // namespace design
