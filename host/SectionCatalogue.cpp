#include "SectionCatalogue.h"

#include "SectionCatalogueData.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double mm = 1e-3;

enum class Table { I, UPE, Angle, Hollow, Circular, RolledFamily, Channel, ColdHollow, ColdCircular, TaperedI, TaperedU,
                   CutTee };

struct Family {
    const char* name;
    Table table;
};

// Catalogue order.
constexpr Family familyList[] = {
    {"IPE", Table::I},          {"HEA", Table::I},           {"HEB", Table::I},          {"HEM", Table::I},
    {"UPE", Table::UPE},        {"L", Table::Angle},         {"RHS", Table::Hollow},     {"SHS", Table::Hollow},
    {"CHS", Table::Circular},   {"HEAA", Table::RolledFamily}, {"HD", Table::RolledFamily}, {"HL", Table::RolledFamily},
    {"UB", Table::RolledFamily}, {"UC", Table::RolledFamily}, {"PFC", Table::Channel},    {"CFRHS", Table::ColdHollow},
    {"CFSHS", Table::ColdHollow}, {"CFCHS", Table::ColdCircular}, {"IPN", Table::TaperedI}, {"UPN", Table::TaperedU},
    {"TIPE", Table::CutTee},    {"THEA", Table::CutTee},     {"THEB", Table::CutTee},    {"THEM", Table::CutTee}};

// The family of a designation: the letters before the first digit.
std::string familyOf(std::string_view normalised)
{
    std::string f;
    for (char ch : normalised) {
        if (std::isdigit(static_cast<unsigned char>(ch))) break;
        f += ch;
    }
    return f;
}

// Calls visit(name, build) for every catalogue row of a family; build() makes the section.
template <class Visit>
void forEachRow(const Family& family, Visit&& visit)
{
    const std::string prefix = family.name;
    auto inFamily = [&](const char* name) { return familyOf(SDBCatalogue::normalise(name)) == prefix; };
    switch (family.table) {
    case Table::I:
        for (std::size_t i = 0; i < sdbcat::iSectionCount; ++i) {
            const sdbcat::IRow& r = sdbcat::iSections[i];
            if (!inFamily(r.name)) continue;
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionI>(r.h * mm, r.b * mm, r.tw * mm, r.tf * mm, r.r * mm, true);
            });
        }
        break;
    case Table::UPE:
        for (std::size_t i = 0; i < sdbcat::upeSectionCount; ++i) {
            const sdbcat::IRow& r = sdbcat::upeSections[i];
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionU>(r.h * mm, r.b * mm, r.tw * mm, r.tf * mm, r.r * mm, true);
            });
        }
        break;
    case Table::Angle:
        for (std::size_t i = 0; i < sdbcat::angleSectionCount; ++i) {
            const sdbcat::AngleRow& r = sdbcat::angleSections[i];
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionL>(r.leg * mm, r.leg * mm, r.t * mm, r.r1 * mm, r.r2 * mm, true);
            });
        }
        // Unequal angles (EN 10056-1): the longer leg h along z, the shorter b along y.
        for (std::size_t i = 0; i < sdbcat::unequalAngleSectionCount; ++i) {
            const sdbcat::UnequalAngleRow& r = sdbcat::unequalAngleSections[i];
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionL>(r.h * mm, r.b * mm, r.t * mm, r.r1 * mm, r.r2 * mm, true);
            });
        }
        break;
    case Table::RolledFamily:
        for (std::size_t i = 0; i < sdbcat::rolledFamilySectionCount; ++i) {
            const sdbcat::IRow& r = sdbcat::rolledFamilySections[i];
            if (!inFamily(r.name)) continue;
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionI>(r.h * mm, r.b * mm, r.tw * mm, r.tf * mm, r.r * mm, true);
            });
        }
        break;
    case Table::Channel:
        for (std::size_t i = 0; i < sdbcat::channelSectionCount; ++i) {
            const sdbcat::IRow& r = sdbcat::channelSections[i];
            if (!inFamily(r.name)) continue;
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionU>(r.h * mm, r.b * mm, r.tw * mm, r.tf * mm, r.r * mm, true);
            });
        }
        break;
    case Table::ColdHollow:
        for (std::size_t i = 0; i < sdbcat::coldFormedSectionCount; ++i) {
            const sdbcat::HollowRow& r = sdbcat::coldFormedSections[i];
            if (!inFamily(r.name)) continue;
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return SDBCatalogue::coldFormedRHS(r.h * mm, r.b * mm, r.t * mm);
            });
        }
        break;
    case Table::TaperedI:
    case Table::TaperedU:
        for (std::size_t i = 0; i < sdbcat::taperedSectionCount; ++i) {
            const sdbcat::TaperedRow& r = sdbcat::taperedSections[i];
            if (!inFamily(r.name)) continue;
            const bool channel = family.table == Table::TaperedU;
            visit(r.name, [&r, channel]() -> std::unique_ptr<SDBSection> {
                if (channel)
                    return SDBSectionU::tapered(r.h * mm, r.b * mm, r.tw * mm, r.tf * mm, r.r1 * mm, r.r2 * mm, r.slope);
                return SDBSectionI::tapered(r.h * mm, r.b * mm, r.tw * mm, r.tf * mm, r.r1 * mm, r.r2 * mm, r.slope);
            });
        }
        break;
    case Table::CutTee: {
        // Tees cut from the rolled I of the same row at mid-depth: "TIPE 300" is half an IPE 300.
        const std::string parent = prefix.substr(1);
        for (std::size_t i = 0; i < sdbcat::iSectionCount; ++i) {
            const sdbcat::IRow& r = sdbcat::iSections[i];
            if (familyOf(SDBCatalogue::normalise(r.name)) != parent) continue;
            std::string teeName(1, 'T');
            teeName.append(r.name);
            visit(teeName.c_str(), [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionT>(r.h / 2.0 * mm, r.b * mm, r.tw * mm, r.tf * mm, r.r * mm, true);
            });
        }
        break;
    }
    case Table::ColdCircular:
        for (std::size_t i = 0; i < sdbcat::coldFormedCircularSectionCount; ++i) {
            const sdbcat::CircularRow& r = sdbcat::coldFormedCircularSections[i];
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionO>(r.d * mm, r.t * mm, false, false);
            });
        }
        break;
    case Table::Hollow:
        for (std::size_t i = 0; i < sdbcat::hollowSectionCount; ++i) {
            const sdbcat::HollowRow& r = sdbcat::hollowSections[i];
            if (!inFamily(r.name)) continue;
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return SDBCatalogue::hotFinishedRHS(r.h * mm, r.b * mm, r.t * mm);
            });
        }
        break;
    case Table::Circular:
        for (std::size_t i = 0; i < sdbcat::circularSectionCount; ++i) {
            const sdbcat::CircularRow& r = sdbcat::circularSections[i];
            visit(r.name, [&r]() -> std::unique_ptr<SDBSection> {
                return std::make_unique<SDBSectionO>(r.d * mm, r.t * mm, true, true);
            });
        }
        break;
    }
}

// The numbers of a designation ("RHS200X100X8" -> 200, 100, 8).
std::vector<double> numbersOf(const std::string& s)
{
    std::vector<double> out;
    std::size_t i = 0;
    while (i < s.size()) {
        if (std::isdigit(static_cast<unsigned char>(s[i]))) {
            // strtod, not stod: a number out of range ("1E999") gives HUGE_VAL instead of throwing.
            char* end = nullptr;
            out.push_back(std::strtod(s.c_str() + i, &end));
            i = static_cast<std::size_t>(end - s.c_str());
        } else {
            ++i;
        }
    }
    return out;
}

// Relative distance of two number sequences of the same length, or a large value.
double numericDistance(const std::vector<double>& a, const std::vector<double>& b)
{
    if (a.empty() || a.size() != b.size()) return 1e9;
    double d = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) d += std::fabs(a[i] - b[i]) / std::max({std::fabs(a[i]), std::fabs(b[i]), 1e-9});
    return std::isfinite(d) ? d : 1e9;  // a number out of range is far from every size
}

std::size_t editDistance(const std::string& a, const std::string& b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t up = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = up;
        }
    }
    return row[b.size()];
}

} // namespace

std::string SDBCatalogue::normalise(std::string_view name)
{
    std::string out;
    out.reserve(name.size());
    for (char ch : name) {
        const auto u = static_cast<unsigned char>(ch);
        if (std::isspace(u)) continue;
        out += static_cast<char>(std::toupper(u));
    }
    return out;
}

std::unique_ptr<SDBSection> SDBCatalogue::find(std::string_view name)
{
    const std::string key = normalise(name);
    const std::string family = familyOf(key);
    for (const Family& f : familyList) {
        if (family != f.name) continue;
        std::unique_ptr<SDBSection> found;
        forEachRow(f, [&](const char* rowName, auto&& build) {
            if (!found && normalise(rowName) == key) {
                found = build();
                found->setName(rowName);
            }
        });
        return found;
    }
    return nullptr;
}

std::unique_ptr<SDBSection> SDBCatalogue::get(std::string_view name)
{
    if (auto section = find(name)) return section;
    std::string message = "unknown section '" + std::string(name) + "'";
    const auto nearest = findNearest(name);
    if (!nearest.empty()) {
        message += " (did you mean ";
        for (std::size_t i = 0; i < nearest.size(); ++i) {
            if (i > 0) message += i + 1 == nearest.size() ? " or " : ", ";
            message += "'" + nearest[i] + "'";
        }
        message += "?)";
    }
    throw SDBUnknownSectionError(message);
}

std::vector<std::string> SDBCatalogue::families()
{
    std::vector<std::string> out;
    for (const Family& f : familyList) out.emplace_back(f.name);
    return out;
}

std::vector<std::string> SDBCatalogue::names(std::string_view family)
{
    const std::string wanted = normalise(family);
    std::vector<std::string> out;
    for (const Family& f : familyList) {
        if (!wanted.empty() && wanted != f.name) continue;
        forEachRow(f, [&](const char* rowName, auto&&) { out.emplace_back(rowName); });
    }
    return out;
}

std::vector<std::string> SDBCatalogue::findNearest(std::string_view name, std::size_t count)
{
    const std::string key = normalise(name);
    const std::string family = familyOf(key);
    // Same family first; then the nearest sizes by their numbers, then by spelling.
    const std::vector<double> numbers = numbersOf(key);
    struct Candidate {
        bool otherFamily;
        double sizeDistance;
        std::size_t distance;
        std::size_t order;
        std::string name;
    };
    std::vector<Candidate> candidates;
    for (const Family& f : familyList) {
        forEachRow(f, [&](const char* rowName, auto&&) {
            const std::string n = normalise(rowName);
            candidates.push_back({family != f.name, numericDistance(numbers, numbersOf(n)), editDistance(key, n),
                                  candidates.size(), rowName});
        });
    }
    const bool familyKnown =
        std::any_of(candidates.begin(), candidates.end(), [](const Candidate& c) { return !c.otherFamily; });
    std::sort(candidates.begin(), candidates.end(), [&](const Candidate& a, const Candidate& b) {
        if (familyKnown && a.otherFamily != b.otherFamily) return !a.otherFamily;
        if (familyKnown && a.sizeDistance != b.sizeDistance) return a.sizeDistance < b.sizeDistance;
        if (a.distance != b.distance) return a.distance < b.distance;
        return a.order < b.order;
    });
    std::vector<std::string> out;
    for (std::size_t i = 0; i < candidates.size() && out.size() < count; ++i) out.push_back(candidates[i].name);
    return out;
}

std::unique_ptr<SDBSectionI> SDBCatalogue::weldedI(double h, double b, double tw, double tf, double b2, double t2)
{
    if (b2 > 0.0 || t2 > 0.0)
        return std::make_unique<SDBSectionI>(h, b, tw, tf, 0.0, b2 > 0.0 ? b2 : b, t2 > 0.0 ? t2 : tf, false);
    return std::make_unique<SDBSectionI>(h, b, tw, tf, 0.0, false);
}

std::unique_ptr<SDBSectionRH> SDBCatalogue::hotFinishedRHS(double h, double b, double t)
{
    return std::make_unique<SDBSectionRH>(h, b, t, t, 1.5 * t, true, true);
}

double SDBCatalogue::coldFormedOuterRadius(double t)
{
    if (t <= 0.006 + 1e-12) return 2.0 * t;
    if (t <= 0.010 + 1e-12) return 2.5 * t;
    return 3.0 * t;
}

std::unique_ptr<SDBSectionRH> SDBCatalogue::coldFormedRHS(double h, double b, double t)
{
    return std::make_unique<SDBSectionRH>(h, b, t, t, coldFormedOuterRadius(t), false, false);
}
