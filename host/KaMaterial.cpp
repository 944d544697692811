#include "KaMaterial.h"

#include <array>
#include <cctype>

namespace {

struct GradeRow {
    std::string_view name;
    double fy40, fy80, fu40, fu80;  // N/mm^2
};

// EN 1993-1-1 Table 3.1, EN 10025-2 (S235 .. S450) and EN 10025-4 (S420, S460 M/ML).
constexpr std::array<GradeRow, 6> grades{{
    {"S235", 235, 215, 360, 360},
    {"S275", 275, 255, 430, 410},
    {"S355", 355, 335, 490, 470},
    {"S420", 420, 390, 520, 500},
    {"S450", 440, 410, 550, 530},
    {"S460", 460, 430, 540, 530},
}};

constexpr std::array<std::string_view, grades.size()> names{
    grades[0].name, grades[1].name, grades[2].name, grades[3].name, grades[4].name, grades[5].name};

constexpr double thicknessTolerance = 1e-9;  // m

std::string normalized(std::string_view text)
{
    std::size_t first = 0, last = text.size();
    while (first < last && std::isspace(static_cast<unsigned char>(text[first]))) ++first;
    while (last > first && std::isspace(static_cast<unsigned char>(text[last - 1]))) --last;
    std::string out;
    for (std::size_t i = first; i < last; ++i) out += static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
    return out;
}

} // namespace

KaConstrSteel::KaConstrSteel(std::string_view name, double fy40, double fy80, double fu40, double fu80)
    : KaMaterial(std::string(name), E, G), fy40_(fy40 * 1000.0), fy80_(fy80 * 1000.0), fu40_(fu40 * 1000.0),
      fu80_(fu80 * 1000.0)
{
}

std::optional<KaConstrSteel> KaConstrSteel::fromName(std::string_view name)
{
    const std::string key = normalized(name);
    for (const GradeRow& row : grades) {
        if (key == row.name) return KaConstrSteel(row.name, row.fy40, row.fy80, row.fu40, row.fu80);
    }
    return std::nullopt;
}

std::span<const std::string_view> KaConstrSteel::gradeNames() { return names; }

double KaConstrSteel::getFyk(double t) const { return t <= 0.040 + thicknessTolerance ? fy40_ : fy80_; }

double KaConstrSteel::getFuk(double t) const { return t <= 0.040 + thicknessTolerance ? fu40_ : fu80_; }

bool KaConstrSteel::isThicknessCovered(double t) { return t > 0.0 && t <= 0.080 + thicknessTolerance; }
