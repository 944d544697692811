#include "SectionNotation.h"

#include "InputError.h"
#include "NumberInput.h"

#include <SectionCatalogue.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <vector>

namespace design {

namespace {

constexpr double mm = 1e-3;
// The largest dimension taken: 10 m. Beyond it a number is a typing error, not a section.
constexpr double largestDimension = 10000.0;

enum class Notation { WeldedI, WeldedT, WeldedBox, HotRHS, HotSHS, HotCHS, ColdRHS, ColdSHS, ColdCHS, Plate };

struct NotationInfo {
    const char* family;
    Notation notation;
    const char* form;  // the dimensions it takes, for messages
};

constexpr NotationInfo notations[] = {
    {"WI", Notation::WeldedI, "h x b x tw x tf [/ b2 x t2]"},
    {"WT", Notation::WeldedT, "h x b x tw x tf"},
    {"WBOX", Notation::WeldedBox, "h x b x tw x tf"},
    {"RHS", Notation::HotRHS, "h x b x t"},
    {"SHS", Notation::HotSHS, "a x t or a x a x t"},
    {"CHS", Notation::HotCHS, "d x t"},
    {"CFRHS", Notation::ColdRHS, "h x b x t"},
    {"CFSHS", Notation::ColdSHS, "a x t or a x a x t"},
    {"CFCHS", Notation::ColdCHS, "d x t"},
    {"PLATE", Notation::Plate, "h x t"},
};

std::string familyOf(const std::string& normalised)
{
    std::string f;
    for (char ch : normalised) {
        if (std::isdigit(static_cast<unsigned char>(ch)) || ch == '.') break;
        f += ch;
    }
    return f;
}

const NotationInfo* notationOf(const std::string& family)
{
    for (const NotationInfo& n : notations)
        if (family == n.family) return &n;
    return nullptr;
}

std::string mmText(double v)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%g", v);
    return buffer;
}

// Numbers of the notation in mm: groups separated by '/', numbers within a group by 'X'.
struct Dimensions {
    std::vector<double> main, second;
    bool hasSecond = false;
};

class Parser {
public:
    Parser(std::string name, const NotationInfo& info) : name_(std::move(name)), info_(info) {}

    [[noreturn]] void fail(const std::string& text) const { throw SectionNameError(name_ + ": " + text); }

    Dimensions parse(const std::string& body) const
    {
        Dimensions d;
        const std::size_t slash = body.find('/');
        d.main = numbers(body.substr(0, slash));
        if (slash != std::string::npos) {
            d.hasSecond = true;
            d.second = numbers(body.substr(slash + 1));
        }
        return d;
    }

    // A dimension in mm: finite, positive and at most 10 m.
    void positive(const char* what, double v) const
    {
        if (!(v > 0.0)) fail(std::string(what) + " = " + mmText(v) + " mm must be positive");
        if (v > largestDimension)
            fail(std::string(what) + " = " + mmText(v) + " mm is larger than " + mmText(largestDimension) + " mm");
    }
    void less(const char* what, double v, const char* limitName, double limit) const
    {
        if (!(v < limit))
            fail(std::string(what) + " = " + mmText(v) + " mm must be less than " + limitName + " = " +
                 mmText(limit) + " mm");
    }
    void count(const std::vector<double>& values, std::size_t expected) const
    {
        if (values.size() != expected)
            fail("expected " + std::string(info_.form) + " in mm, got " + std::to_string(values.size()) +
                 (values.size() == 1 ? " number" : " numbers"));
    }
    const NotationInfo& info() const { return info_; }

private:
    std::vector<double> numbers(const std::string& group) const
    {
        std::vector<double> out;
        std::size_t start = 0;
        while (start <= group.size()) {
            std::size_t end = group.find('X', start);
            if (end == std::string::npos) end = group.size();
            const std::string item = group.substr(start, end - start);
            if (item.empty()) fail("expected " + std::string(info_.form) + " in mm, found an empty dimension");
            double v = 0.0;
            const NumberProblem problem = readNumber(item, v);
            if (problem == NumberProblem::NotANumber)
                fail("'" + item + "' is not a number (expected " + info_.form + " in mm)");
            if (problem != NumberProblem::None)
                fail("'" + item + "' is out of range (expected " + info_.form + " in mm)");
            out.push_back(v);
            start = end + 1;
        }
        return out;
    }

    std::string name_;
    const NotationInfo& info_;
};

// "WI1200X300X8X20" -> "WI 1200x300x8x20".
std::string displayName(const std::string& family, const std::string& body)
{
    std::string out = family + " ";
    for (char ch : body) out += ch == 'X' ? 'x' : ch;
    return out;
}

std::unique_ptr<SDBSection> build(const Parser& p, const Dimensions& d)
{
    const Notation n = p.info().notation;
    if (d.hasSecond && n != Notation::WeldedI)
        p.fail("'/' is only for the bottom flange of a welded I (WI h x b x tw x tf / b2 x t2)");
    const std::vector<double>& v = d.main;
    switch (n) {
    case Notation::WeldedI: {
        p.count(v, 4);
        const double h = v[0], b = v[1], tw = v[2], tf = v[3];
        p.positive("depth h", h);
        p.positive("flange width b", b);
        p.positive("web thickness tw", tw);
        p.positive("flange thickness tf", tf);
        double b2 = 0.0, t2 = 0.0;
        if (d.hasSecond) {
            p.count(d.second, 2);
            b2 = d.second[0];
            t2 = d.second[1];
            p.positive("bottom flange width b2", b2);
            p.positive("bottom flange thickness t2", t2);
        }
        if (d.hasSecond)
            p.less("flange thicknesses tf + t2", tf + t2, "depth h", h);
        else
            p.less("two flange thicknesses 2 tf", 2.0 * tf, "depth h", h);
        p.less("web thickness tw", tw, "flange width b", b);
        if (d.hasSecond) p.less("web thickness tw", tw, "bottom flange width b2", b2);
        return SDBCatalogue::weldedI(h * mm, b * mm, tw * mm, tf * mm, b2 * mm, t2 * mm);
    }
    case Notation::WeldedT: {
        p.count(v, 4);
        const double h = v[0], b = v[1], tw = v[2], tf = v[3];
        p.positive("depth h", h);
        p.positive("flange width b", b);
        p.positive("web thickness tw", tw);
        p.positive("flange thickness tf", tf);
        p.less("flange thickness tf", tf, "depth h", h);
        p.less("web thickness tw", tw, "flange width b", b);
        return std::make_unique<SDBSectionT>(h * mm, b * mm, tw * mm, tf * mm, 0.0, false);
    }
    case Notation::WeldedBox: {
        p.count(v, 4);
        const double h = v[0], b = v[1], tw = v[2], tf = v[3];
        p.positive("depth h", h);
        p.positive("width b", b);
        p.positive("web thickness tw", tw);
        p.positive("flange thickness tf", tf);
        p.less("two flange thicknesses 2 tf", 2.0 * tf, "depth h", h);
        p.less("two web thicknesses 2 tw", 2.0 * tw, "width b", b);
        return std::make_unique<SDBSectionRH>(h * mm, b * mm, tw * mm, tf * mm, 0.0, false, false);
    }
    case Notation::HotRHS:
    case Notation::ColdRHS:
    case Notation::HotSHS:
    case Notation::ColdSHS: {
        const bool square = n == Notation::HotSHS || n == Notation::ColdSHS;
        double h = 0.0, b = 0.0, t = 0.0;
        if (square && v.size() == 2) {
            h = b = v[0];
            t = v[1];
        } else {
            p.count(v, 3);
            h = v[0];
            b = v[1];
            t = v[2];
            if (square && h != b) p.fail("a square hollow section has equal sides, got " + mmText(h) + " x " + mmText(b));
        }
        p.positive(square ? "side a" : "depth h", h);
        p.positive(square ? "side a" : "width b", b);
        p.positive("wall thickness t", t);
        const bool cold = n == Notation::ColdRHS || n == Notation::ColdSHS;
        // The outer corner radius (1.5 t hot-finished, 2 t to 3 t cold-formed) must fit the smaller side.
        const double radius = cold ? SDBCatalogue::coldFormedOuterRadius(t * mm) / mm : 1.5 * t;
        p.less("two corner radii 2 r", 2.0 * radius, "the smaller side", std::min(h, b) + 1e-9);
        return cold ? SDBCatalogue::coldFormedRHS(h * mm, b * mm, t * mm)
                    : SDBCatalogue::hotFinishedRHS(h * mm, b * mm, t * mm);
    }
    case Notation::HotCHS:
    case Notation::ColdCHS: {
        p.count(v, 2);
        const double D = v[0], t = v[1];
        p.positive("diameter d", D);
        p.positive("wall thickness t", t);
        p.less("two wall thicknesses 2 t", 2.0 * t, "diameter d", D);
        const bool hot = n == Notation::HotCHS;
        return std::make_unique<SDBSectionO>(D * mm, t * mm, hot, hot);
    }
    case Notation::Plate: {
        p.count(v, 2);
        p.positive("depth h", v[0]);
        p.positive("thickness t", v[1]);
        return std::make_unique<SDBSectionR>(v[0] * mm, v[1] * mm, true);
    }
    }
    return nullptr;
}

std::unique_ptr<SDBSection> fromNotation(std::string_view name)
{
    const std::string key = SDBCatalogue::normalise(name);
    const std::string family = familyOf(key);
    const NotationInfo* info = notationOf(family);
    if (!info) return nullptr;
    const std::string body = key.substr(family.size());
    const std::string shown = displayName(family, body);
    const Parser parser(shown, *info);
    if (body.empty()) parser.fail(std::string("expected ") + info->form + " in mm");
    std::unique_ptr<SDBSection> section;
    try {
        section = build(parser, parser.parse(body));
    } catch (const SDBDimensionError& e) {
        parser.fail(e.what());
    }
    section->setName(shown);
    return section;
}

} // namespace

bool isDimensionNotation(std::string_view name)
{
    return notationOf(familyOf(SDBCatalogue::normalise(name))) != nullptr;
}

std::unique_ptr<SDBSection> makeSection(std::string_view name)
{
    if (auto section = SDBCatalogue::find(name)) return section;
    if (auto section = fromNotation(name)) return section;
    try {
        return SDBCatalogue::get(name);  // throws with the nearest designations
    } catch (const SDBUnknownSectionError& e) {
        throw SectionNameError(e.what());
    }
}

std::unique_ptr<SDBSection> resolveSection(std::string_view name)
{
    try {
        return makeSection(name);
    } catch (const std::exception& e) {
        throw InputError(std::string("section: ") + e.what());
    }
}

std::unique_ptr<SDBSection> makeSection(std::string_view name, std::string& error)
{
    try {
        return makeSection(name);
    } catch (const std::exception& e) {
        error = e.what();
        return nullptr;
    }
}

} // namespace design
