// `steeldesign section NAME [--json]`: dimensions and properties of a catalogue section.
// `steeldesign sections [--family F] [--json]`: the catalogue's designations.
// Text in mm, cm2, cm4, cm3, cm6; JSON in m-based SI units (m, m2, m3, m4, m6).

#include "Commands.h"
#include "Options.h"

#include <design/SectionNotation.h>
#include <design/ShearCentre.h>
#include <report/ResultJson.h>

#include <SectionCatalogue.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

namespace cli {

using namespace report;

namespace {

std::string fixed(double value, int decimals)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

// Four significant figures, without exponent for the magnitudes of section tables.
std::string figures(double value)
{
    char buffer[64];
    const double a = value < 0 ? -value : value;
    const int decimals = a >= 1000 ? 0 : a >= 100 ? 1 : a >= 10 ? 2 : a >= 1 ? 3 : 4;
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

void printText(const SDBSection& s)
{
    const SectionDimensions d = sectionDimensions(s);
    const SDBProperties& p = s.getProperties();
    auto line = [](const char* label, const std::string& value, const char* unit) {
        std::cout << "  " << label;
        for (std::size_t n = std::char_traits<char>::length(label); n < 10; ++n) std::cout << ' ';
        std::cout << value << ' ' << unit << '\n';
    };
    std::cout << s.getName() << "  (type " << sectionTypeKey(s) << ", " << (s.isRolled() ? "rolled" : "welded");
    if (d.hasHotRolled && !(s.isRolled() == false && d.r == 0.0))
        std::cout << ", " << (d.hotRolled ? "hot-finished" : "cold-formed");
    std::cout << ")\n";
    std::cout << "Dimensions\n";
    line("h", fixed(d.h * 1e3, 1), "mm");
    line("b", fixed(d.b * 1e3, 1), "mm");
    line("tw", fixed(d.tw * 1e3, 2), "mm");
    line("tf", fixed(d.tf * 1e3, 2), "mm");
    if (d.hasSecondFlange) {
        line("b2", fixed(d.b2 * 1e3, 1), "mm");
        line("t2", fixed(d.t2 * 1e3, 2), "mm");
    }
    line("r", fixed(d.r * 1e3, 2), "mm");
    std::cout << "Properties\n";
    line("A", figures(p.A * 1e4), "cm2");
    line("Avz", figures(p.Avz * 1e4), "cm2");
    line("Avy", figures(p.Avy * 1e4), "cm2");
    line("Iy", figures(p.Iy * 1e8), "cm4");
    line("Iz", figures(p.Iz * 1e8), "cm4");
    line("It", figures(p.It * 1e8), "cm4");
    line("Iw", figures(p.Iw * 1e12), "cm6");
    line("Wel,y", figures(p.Wely * 1e6), "cm3");
    line("Wel,z", figures(p.Welz * 1e6), "cm3");
    line("Wpl,y", figures(p.Wply * 1e6), "cm3");
    line("Wpl,z", figures(p.Wplz * 1e6), "cm3");
    line("ey", fixed(p.ey * 1e3, 2), "mm");
    line("ez", fixed(p.ez * 1e3, 2), "mm");
    const design::SectionAxes axes = design::sectionAxes(s);
    line("Iu", figures(axes.principal.Iu * 1e8), "cm4");
    line("Iv", figures(axes.principal.Iv * 1e8), "cm4");
    line("alpha", fixed(axes.alphaDegrees(), 2), "deg (y to u)");
    if (axes.shearCentre.known) {
        line("ysc", fixed(axes.shearCentre.ysc * 1e3, 2), "mm (shear centre from the centroid)");
        line("zsc", fixed(axes.shearCentre.zsc * 1e3, 2), "mm");
        line("i0", fixed(axes.i0 * 1e3, 2), "mm (polar radius of gyration about the shear centre)");
    }
}


} // namespace

namespace {

struct SectionOptions {
    std::string name;
    bool json = false;
};

struct ListOptions {
    std::string family;
    bool json = false;
};

} // namespace

void registerSectionCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<SectionOptions>();
    CLI::App* sub = app.add_subcommand("section", "dimensions and properties of a section (\"IPE 300\", \"WI 1200x300x8x20\")");
    sub->add_option("name", options->name, "designation or dimensions, e.g. \"IPE 300\", \"WBOX 400x300x12x16\" (case and blanks ignored)")
        ->required();
    sub->add_flag("--json", options->json, "JSON output in m-based SI units");
    sub->callback([options, &result]() {
        const std::unique_ptr<SDBSection> section = design::resolveSection(options->name);
        if (options->json)
            std::cout << sectionJson(*section).dump(2) << '\n';
        else
            printText(*section);
        result.exitCode = 0;
    });
}

void registerSectionsCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<ListOptions>();
    CLI::App* sub = app.add_subcommand("sections", "list the catalogue's designations");
    sub->add_option("--family", options->family, "only this family, e.g. IPE, HEB, UB, PFC, CFSHS");
    sub->add_flag("--json", options->json, "JSON output");
    sub->callback([options, &result]() {
        const auto families = SDBCatalogue::families();
        std::vector<std::string> selected;
        if (options->family.empty()) {
            selected = families;
        } else {
            const std::string wanted = SDBCatalogue::normalise(options->family);
            for (const auto& f : families)
                if (f == wanted) selected.push_back(f);
            if (selected.empty()) {
                std::string known;
                for (const auto& f : families) known += (known.empty() ? "" : ", ") + f;
                throw InputError("--family: unknown family '" + options->family + "' (known: " + known + ")");
            }
        }
        nlohmann::json list = nlohmann::json::array();
        for (const auto& family : selected) {
            const auto names = SDBCatalogue::names(family);
            if (options->json) {
                for (const auto& n : names) list.push_back({{"name", n}, {"family", family}});
            } else {
                std::cout << family << " (" << names.size() << "):";
                for (const auto& n : names) std::cout << "\n  " << n;
                std::cout << '\n';
            }
        }
        if (options->json) std::cout << list.dump(2) << '\n';
        result.exitCode = 0;
    });
}

} // namespace cli
