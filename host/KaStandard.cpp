#include "KaStandard.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <string>

namespace {

bool equalsIgnoreCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    }
    return true;
}

} // namespace

namespace Standard {

std::optional<Mode> parseMode(std::string_view text)
{
    if (equalsIgnoreCase(text, "EN")) return Mode::EN;
    if (equalsIgnoreCase(text, "UK")) return Mode::UK;
    if (equalsIgnoreCase(text, "RolledLTB")) return Mode::RolledLTB;
    int value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (ec == std::errc() && ptr == end && !text.empty()) return static_cast<Mode>(value);
    return std::nullopt;
}

std::optional<DesignSituation> parseDesignSituation(std::string_view text)
{
    for (int i = 0; i < designSituationCount; ++i) {
        auto situation = static_cast<DesignSituation>(i);
        if (equalsIgnoreCase(text, toString(situation))) return situation;
    }
    return std::nullopt;
}

const char* toString(DesignSituation situation)
{
    switch (situation) {
    case DesignSituation::Persistent: return "persistent";
    case DesignSituation::Transient: return "transient";
    case DesignSituation::Accidental: return "accidental";
    case DesignSituation::Seismic: return "seismic";
    }
    return "unknown";
}

const char* toString(Mode mode)
{
    switch (mode) {
    case Mode::EN: return "EN";
    case Mode::UK: return "UK";
    case Mode::RolledLTB: return "RolledLTB";
    }
    return "EN";
}

Coefficients* Coefficients::get()
{
    static Coefficients instance;
    return &instance;
}

Coefficients::Coefficients() { resetToDefaults(); }

void Coefficients::resetToDefaults()
{
    for (auto& row : gammaM0_)
        for (double& value : row) value = 1.00;
}

int Coefficients::rowOf(Mode mode)
{
    switch (mode) {
    case Mode::UK: return 1;
    case Mode::RolledLTB: return 2;
    default: return 0;
    }
}

double Coefficients::getGammaA(Mode mode, DesignSituation situation) const
{
    int column = static_cast<int>(situation);
    if (column < 0 || column >= designSituationCount) column = 0;
    return gammaM0_[rowOf(mode)][column];
}

void Coefficients::setGammaA(Mode mode, DesignSituation situation, double gamma)
{
    int column = static_cast<int>(situation);
    if (column < 0 || column >= designSituationCount || !std::isfinite(gamma) || gamma <= 0.0) return;
    gammaM0_[rowOf(mode)][column] = gamma;
}

} // namespace Standard

KaStandard* KaStandard::get()
{
    static KaStandard instance;
    return &instance;
}
