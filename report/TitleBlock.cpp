#include "TitleBlock.h"

#include "Svg.h"

#include <design/DesignBasis.h>
#include <design/InputError.h>
#include <design/MemberCheck.h>

#include <KaStandard.h>

#include <cstdio>
#include <sstream>

#ifndef STEELDESIGN_VERSION
#define STEELDESIGN_VERSION "unknown"
#endif

namespace report {

namespace {

std::string fixed(double value, int decimals)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

// A field of the title block: its value, or an empty cell ruled for the hand.
std::string fieldCell(std::string_view field, const std::string& value)
{
    std::string out = "<td data-field=\"" + std::string(field) + "\"" + (value.empty() ? " class=\"blank\">" : ">");
    appendEscaped(out, value);
    return out + "</td>";
}

// The national choices of a mode, in words.
std::string modeText(const std::string& mode)
{
    const auto parsed = Standard::parseMode(mode);
    if (!parsed) return "mode " + mode;
    switch (*parsed) {
    case Standard::Mode::EN: return "the recommended values of EN 1993-1-1 (mode EN)";
    case Standard::Mode::UK: return "the UK National Annex to BS EN 1993-1-1 (mode UK)";
    case Standard::Mode::RolledLTB:
        return "a national annex prescribing 6.3.2.3 (rolled and equivalent welded sections) for every "
               "lateral-torsional check (mode RolledLTB)";
    }
    return "mode " + mode;
}

std::string situationText(const std::string& situation)
{
    const auto parsed = Standard::parseDesignSituation(situation);
    if (!parsed) return situation;
    switch (*parsed) {
    case Standard::DesignSituation::Persistent: return "persistent (EN 1990 6.4.3.2)";
    case Standard::DesignSituation::Transient: return "transient (EN 1990 6.4.3.2)";
    case Standard::DesignSituation::Accidental: return "accidental (EN 1990 6.4.3.3)";
    case Standard::DesignSituation::Seismic: return "seismic (EN 1990 6.4.3.4)";
    }
    return situation;
}

// A field for the running header: its value, or a line to fill in.
std::string orLine(const std::string& value) { return value.empty() ? std::string("__________") : value; }

} // namespace

TitleBlock readTitleBlock(std::istream& in, const std::string& name)
{
    TitleBlock b;
    std::pair<const char*, std::string*> fields[] = {{"project", &b.project},   {"element", &b.element},
                                                     {"client", &b.client},     {"prepared", &b.prepared},
                                                     {"checked", &b.checked},   {"approved", &b.approved},
                                                     {"revision", &b.revision}};
    bool given[std::size(fields)] = {};
    auto trimmed = [](std::string_view s) {
        const auto a = s.find_first_not_of(" \t\r");
        if (a == std::string_view::npos) return std::string_view();
        return s.substr(a, s.find_last_not_of(" \t\r") - a + 1);
    };
    // At most 16 KiB are read: a title block is a few lines, and /dev/zero is no title block.
    constexpr std::size_t maxBytes = 16 * 1024;
    std::string whole(maxBytes + 1, '\0');
    in.read(whole.data(), static_cast<std::streamsize>(whole.size()));
    if (in.bad()) throw design::InputError(name + ": cannot be read");
    whole.resize(static_cast<std::size_t>(in.gcount()));
    if (whole.size() > maxBytes) throw design::InputError(name + ": larger than 16 KiB");
    std::istringstream lines(whole);
    std::string line;
    for (std::size_t number = 1; std::getline(lines, line); ++number) {
        const std::string where = name + ": line " + std::to_string(number) + ": ";
        if (line.size() > 500) throw design::InputError(where + "longer than 500 bytes");
        const std::string_view text = trimmed(line);
        if (text.empty() || text.front() == '#') continue;
        const auto colon = text.find(':');
        if (colon == std::string_view::npos)
            throw design::InputError(where + "expected 'field: value', got '" + std::string(text) + "'");
        const std::string_view key = trimmed(text.substr(0, colon));
        std::size_t i = 0;
        while (i < std::size(fields) && key != fields[i].first) ++i;
        if (i == std::size(fields))
            throw design::InputError(where + "unknown field '" + std::string(key) +
                                     "' (project, element, client, prepared, checked, approved, revision)");
        if (given[i]) throw design::InputError(where + "the field '" + std::string(key) + "' is given twice");
        given[i] = true;
        *fields[i].second = std::string(trimmed(text.substr(colon + 1)));
    }
    return b;
}

TitleBlock overlaid(const TitleBlock& base, const TitleBlock& over)
{
    TitleBlock b = base;
    for (auto [to, from] : {std::pair{&b.project, &over.project}, {&b.element, &over.element},
                            {&b.client, &over.client}, {&b.prepared, &over.prepared}, {&b.checked, &over.checked},
                            {&b.approved, &over.approved}, {&b.revision, &over.revision}})
        if (!from->empty()) *to = *from;
    return b;
}

std::string softwareName() { return std::string("steeldesign ") + STEELDESIGN_VERSION; }

std::string cssString(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n' || c == '\r') {
            out += "\\A ";
        } else if (c == '<') {
            out += "\\3C ";
        } else if (static_cast<unsigned char>(c) < 0x20) {
            out += ' ';
        } else {
            out += c;
        }
    }
    return out + "\"";
}

std::string titleBlockHtml(const ReportHeader& h)
{
    const TitleBlock& b = h.block;
    std::string out = "<table class=\"title-block\"><tbody>";
    out += "<tr><th>Project</th>" + fieldCell("project", b.project) + "<th>Revision</th>" +
           fieldCell("revision", b.revision) + "</tr>";
    out += "<tr><th>Element</th>" + fieldCell("element", b.element) + "<th>Date</th>" + fieldCell("date", h.date) + "</tr>";
    out += "<tr><th>Client</th>" + fieldCell("client", b.client) + "<th>Software</th>" +
           fieldCell("software", softwareName()) + "</tr>";
    out += "<tr><th>Prepared</th>" + fieldCell("prepared", b.prepared) + "<th>Input</th><td data-field=\"input\">";
    appendEscaped(out, h.model);
    if (!h.inputHash.empty()) {
        out += "<br><span class=\"hash\">SHA-256 ";
        appendEscaped(out, h.inputHash);
        out += "</span>";
    }
    out += "</td></tr>";
    out += "<tr><th>Checked</th>" + fieldCell("checked", b.checked) + "<th>Approved</th>" +
           fieldCell("approved", b.approved) + "</tr>";
    out += "</tbody></table>";

    // The basis of design: what a checker needs before the first number.
    double gammaM0 = 1.0;
    const auto mode = Standard::parseMode(h.mode);
    const auto situation = Standard::parseDesignSituation(h.situation);
    if (mode && situation) gammaM0 = Standard::Coefficients::get()->getGammaA(*mode, *situation);
    const KaConstrSteel steel = design::steelByName("S235");
    out += "<section class=\"basis\" id=\"basis\"><h3>Basis of design</h3><dl>";
    out += "<dt>Standard</dt><dd>EN 1993-1-1:2005 (with AC:2009 and A1:2014); EN 1993-1-5 for webs in shear; with ";
    appendEscaped(out, modeText(h.mode));
    out += "</dd><dt>Verdicts</dt><dd>";
    out += h.rules == design::Rules::En
               ? "by EN 1993-1-1; where the library's rule departs from it, the library's value is shown beside"
               : "by the library's own rules (--rules library); the EN 1993-1-1 value is shown beside where they differ";
    out += "</dd><dt>Design situation</dt><dd>";
    appendEscaped(out, situationText(h.situation));
    out += "</dd><dt>Partial factors</dt><dd>&gamma;<sub>M0</sub> = " + fixed(gammaM0, 2) +
           ", &gamma;<sub>M1</sub> = " + fixed(design::defaultGammaM1, 2) +
           " (a member given its own shows them on its page)</dd>";
    out += "<dt>Material</dt><dd>E = " + fixed(steel.getEModul() / 1000.0, 0) + " N/mm&sup2;, G = " +
           fixed(steel.getGModul() / 1000.0, 0) +
           " N/mm&sup2;; f<sub>y</sub> by EN 1993-1-1 Table 3.1 for the thickest plate</dd>";
    out += "<dt>Sign conventions</dt><dd>N in kN, tension positive, compression negative; M<sub>y</sub> about the "
           "major axis y, M<sub>z</sub> about the minor axis z (kNm; for angles the principal axes u, v); "
           "V<sub>y</sub>, V<sub>z</sub> along y, z (kN); M<sub>t</sub> torsion (kNm); moment diagrams by their "
           "values at the start, middle and end of the member; lengths in m. Utilization = design effect / "
           "resistance: at most 1.000 is fulfilled.</dd>";
    out += "</dl></section>";
    return out;
}

std::string pageFrameCss(const ReportHeader& h)
{
    const TitleBlock& b = h.block;
    const std::string left = "Project: " + orLine(b.project) + "   Element: " + orLine(b.element);
    const std::string right = "Rev. " + orLine(b.revision) + "   " + h.date + "   Prepared: " + orLine(b.prepared) +
                              "   Checked: " + orLine(b.checked);
    std::string input = h.model;
    if (!h.inputHash.empty()) input += "   SHA-256 " + h.inputHash.substr(0, 16);
    std::string css = "@page{size:A4;margin:17mm 11mm 15mm 11mm;";
    css += "@top-left{content:" + cssString(left) + ";font:8px \"DejaVu Sans\",Arial,sans-serif;color:#333}";
    css += "@top-right{content:" + cssString(right) + ";font:8px \"DejaVu Sans\",Arial,sans-serif;color:#333}";
    css += "@bottom-left{content:" + cssString(softwareName() + "   " + input) +
           ";font:8px \"DejaVu Sans\",Arial,sans-serif;color:#555}";
    css += "@bottom-right{content:\"page \" counter(page) \" of \" counter(pages);"
           "font:8px \"DejaVu Sans\",Arial,sans-serif;color:#333}}";
    return css;
}

std::string signatureBlockHtml(const ReportHeader& h)
{
    const TitleBlock& b = h.block;
    std::string out = "<section id=\"signatures\" class=\"signatures\"><h2>Signatures and revisions</h2>"
                      "<table class=\"signatures\"><thead><tr><th></th><th>Name</th><th>Signature</th><th>Date</th>"
                      "</tr></thead><tbody>";
    const std::pair<const char*, const std::string*> roles[] = {
        {"Prepared", &b.prepared}, {"Checked", &b.checked}, {"Approved", &b.approved}};
    for (const auto& [role, name] : roles) {
        std::string field = role;
        field[0] = static_cast<char>(field[0] - 'A' + 'a');
        out += std::string("<tr><th>") + role + "</th>" + fieldCell(field, *name) +
               "<td class=\"blank\"></td><td class=\"blank\"></td></tr>";
    }
    out += "</tbody></table><table class=\"revisions\"><thead><tr><th>Rev.</th><th>Date</th><th>Description</th>"
           "<th>By</th></tr></thead><tbody><tr>" +
           fieldCell("revision", b.revision) + fieldCell("revision-date", b.revision.empty() ? "" : h.date) +
           "<td class=\"blank\"></td><td class=\"blank\"></td></tr>";
    for (int i = 0; i < 2; ++i)
        out += "<tr><td class=\"blank\"></td><td class=\"blank\"></td><td class=\"blank\"></td><td class=\"blank\"></td></tr>";
    out += "</tbody></table></section>";
    return out;
}

} // namespace report
