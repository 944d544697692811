#include "HtmlReport.h"

#include "CommandLine.h"
#include "ResultJson.h"
#include "ResultText.h"
#include "Svg.h"
#include "TitleBlock.h"

#include <batch/OutputFile.h>
#include <batch/Parallel.h>
#include <batch/RowRequests.h>

#include <design/BucklingCurves.h>
#include <design/Departures.h>
#include <design/EnEvaluation.h>
#include <design/InteractionCurve.h>
#include <design/MemberDesign.h>
#include <design/MomentDiagram.h>
#include <design/NumberInput.h>
#include <design/SectionNotation.h>
#include <design/ShearCentre.h>
#include <design/Trace.h>
#include <design/TraceSheet.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <sstream>

namespace report {

namespace {

using namespace batch;

using SteelDesign::Axis;
using SteelDesign::BucklingResults;

// The columns of the batch's CSV and one row's cells, as the batch writes them.
std::vector<std::string> csvColumnsOf(design::Rules rules)
{
    {
        std::ostringstream header;
        writeHeader(header, OutputFormat::Csv, rules);
        std::vector<std::string> names;
        std::string name;
        std::istringstream in(header.str());
        while (std::getline(in, name, ',')) {
            if (!name.empty() && name.back() == '\n') name.pop_back();
            names.push_back(name);
        }
        return names;
    }
}

const std::vector<std::string>& csvColumns(design::Rules rules)
{
    static const std::vector<std::string> en = csvColumnsOf(design::Rules::En);
    static const std::vector<std::string> library = csvColumnsOf(design::Rules::Library);
    return rules == design::Rules::En ? en : library;
}

// The column of the other rules' governing utilization.
const char* otherColumn(design::Rules rules)
{
    return rules == design::Rules::En ? "libraryUtilization" : "enUtilization";
}

std::vector<std::string> splitCsvLine(const std::string& line)
{
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quoted) {
            if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                cells.back() += '"';
                ++i;
            } else if (c == '"') {
                quoted = false;
            } else {
                cells.back() += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            cells.emplace_back();
        } else if (c != '\n') {
            cells.back() += c;
        }
    }
    return cells;
}

std::vector<std::string> csvCells(const RowResult& result)
{
    std::ostringstream row;
    writeRows(row, std::vector<RowResult>{result}, OutputFormat::Csv, 1);
    return splitCsvLine(row.str());
}

std::string cell(const std::vector<std::string>& cells, std::string_view column, design::Rules rules)
{
    const auto& columns = csvColumns(rules);
    for (std::size_t i = 0; i < columns.size() && i < cells.size(); ++i)
        if (columns[i] == column) return cells[i];
    return "";
}

std::string verdictClass(const RowResult& r)
{
    if (r.rejected) return "rejected";
    switch (r.verdict) {
    case design::Verdict::Fulfilled: return "fulfilled";
    case design::Verdict::NotFulfilled: return "not-fulfilled";
    case design::Verdict::NotVerified: return "not-verified";
    }
    return "";
}

std::string verdictText(const RowResult& r) { return r.rejected ? "rejected" : design::toString(r.verdict); }

// A utilization as ranked in the overview: a value that is not a number counts as the largest.
double rankOf(const RowResult& r)
{
    if (r.rejected) return -1.0;
    // Not verified ranks first, whatever its partial utilization: it is drawn to the top, hatched.
    if (r.verdict == design::Verdict::NotVerified) return INFINITY;
    return std::isnan(r.governingUtilization) ? INFINITY : r.governingUtilization;
}

std::string anchorOf(std::size_t index)
{
    std::string anchor(1, 'm');
    anchor += std::to_string(index + 1);
    return anchor;
}

void element(std::string& out, std::string_view tag, std::string_view attributes, std::string_view text)
{
    out += '<';
    out += tag;
    if (!attributes.empty()) {
        out += ' ';
        out += attributes;
    }
    out += '>';
    appendEscaped(out, text);
    out += "</";
    out += tag;
    out += '>';
}

std::string attr(std::string_view name, std::string_view value)
{
    std::string out(name);
    out += "=\"";
    appendEscaped(out, value);
    out += '"';
    return out;
}

// --- charts ---------------------------------------------------------------------------------------------

constexpr double chartWidth = 330.0, chartHeight = 250.0;

std::string interactionChart(const ReportMember& m)
{
    const SteelDesign::Forces& f = m.cross.forces;
    const std::vector<design::InteractionPoint> curve = design::interactionCurveNMy(m.cross, 36);
    double nMin = std::min(f.getN(), 0.0), nMax = std::max(f.getN(), 0.0);
    double mMin = std::min(f.getMy(), 0.0), mMax = std::max(f.getMy(), 0.0);
    bool any = false, all = true;
    for (const auto& p : curve) {
        any = any || p.valid;
        all = all && p.valid;
        if (!p.valid) continue;
        nMin = std::min(nMin, p.N), nMax = std::max(nMax, p.N);
        mMin = std::min(mMin, p.My), mMax = std::max(mMax, p.My);
    }
    const double nPad = 0.08 * std::max(nMax - nMin, 1.0), mPad = 0.08 * std::max(mMax - mMin, 1.0);
    SvgPlot plot("chart chart-interaction", chartWidth, chartHeight, {mMin - mPad, mMax + mPad}, {nMin - nPad, nMax + nPad});
    plot.axes("My [kNm]", "N [kN]");
    if (!any) {
        plot.message("no N-My curve: the check verifies no pair of N and My");
    } else if (all) {
        std::vector<std::pair<double, double>> points;
        points.reserve(curve.size());
        for (const auto& p : curve) points.emplace_back(p.My, p.N);
        plot.polyline(points, "curve", true);
    } else {
        // Runs of valid points, the gaps left open: there the check does not verify the pair (class 4, or
        // not covered), and no curve is drawn.
        std::size_t start = 0;
        while (start < curve.size() && curve[start].valid) ++start;  // a gap exists: begin after one
        std::vector<std::pair<double, double>> run;
        for (std::size_t k = 1; k <= curve.size(); ++k) {
            const auto& p = curve[(start + k) % curve.size()];
            if (p.valid) run.emplace_back(p.My, p.N);
            if (!p.valid || k == curve.size()) {
                if (run.size() == 1) plot.point(run[0].first, run[0].second, "curve-point", "", "a point of the curve");
                if (run.size() > 1) plot.polyline(run, "curve open");
                run.clear();
            }
        }
        plot.text(mMin, nMin - 0.5 * nPad, "gaps: class 4 or not covered by the check", "curve-label", "start");
    }
    const std::string label = "N = " + number(f.getN(), 1) + " kN, My = " + number(f.getMy(), 1) + " kNm";
    plot.point(f.getMy(), f.getN(), "design-point", "Ed", "design point: " + label);
    return plot.finish();
}

constexpr int curveSamples = 36;

std::vector<std::pair<double, double>> curvePoints(double alpha, double lambdaMax)
{
    std::vector<std::pair<double, double>> points;
    for (int i = 0; i <= curveSamples; ++i) {
        const double lambda = lambdaMax * i / curveSamples;
        points.emplace_back(lambda, design::reductionFactor(alpha, lambda));
    }
    return points;
}

// The ranges of slenderness of the buckling charts: 2.5 to 6 in steps of 0.5.
std::string curvesId(double lambdaMax) { return "curves-" + chartNumber(lambdaMax * 10.0, 0); }

// The curves a0 to d of (6.49), once for each range of the buckling charts, for the charts to `use`.
std::string bucklingCurveDefinitions()
{
    using SteelDesign::BucklingCurve;
    std::string out = "<svg class=\"definitions\" width=\"0\" height=\"0\" aria-hidden=\"true\" "
                      "xmlns=\"http://www.w3.org/2000/svg\"><defs>";
    for (double lambdaMax = 2.5; lambdaMax <= 6.0; lambdaMax += 0.5) {
        SvgPlot plot("", chartWidth, chartHeight, {0.0, lambdaMax}, {0.0, 1.1});
        const std::size_t mark = plot.mark();
        for (const BucklingCurve c : {BucklingCurve::a0, BucklingCurve::a, BucklingCurve::b, BucklingCurve::c, BucklingCurve::d}) {
            const double alpha = design::imperfectionFactor(c);
            plot.polyline(curvePoints(alpha, lambdaMax), "curve");
            // At lambda = 1 the five curves stand furthest apart (0.05 to 0.08 of chi): the labels do not meet.
            plot.text(1.0, design::reductionFactor(alpha, 1.0), SteelDesign::toString(c), "curve-label");
        }
        // A used shape takes the style of its definition: the presentation is written on it, not left to
        // the style sheet.
        out += "<g id=\"" + curvesId(lambdaMax) + "\" fill=\"none\" stroke=\"#9e9e9e\" font-size=\"9\">" +
               plot.markupSince(mark) + "</g>";
    }
    return out + "</defs></svg>";
}

std::string bucklingChart(const ReportMember& m, const design::MemberOutcome* outcome)
{
    struct Mark {
        double lambda, chi;
        const char* label;
        const char* css;
    };
    std::vector<Mark> marks;
    const BucklingResults* r = outcome ? &outcome->results : nullptr;
    if (r && r->getChi(Axis::y).hasValue()) marks.push_back({r->getLambda(Axis::y), r->getChi(Axis::y).value(), "y", "point-y"});
    if (r && r->getChi(Axis::z).hasValue()) marks.push_back({r->getLambda(Axis::z), r->getChi(Axis::z).value(), "z", "point-z"});
    if (r && r->getChiLT().hasValue()) marks.push_back({r->getLambdaLT(), r->getChiLT().value(), "LT", "point-lt"});
    double lambdaMax = 2.5;
    for (const Mark& k : marks)
        if (std::isfinite(k.lambda)) lambdaMax = std::max(lambdaMax, std::ceil(k.lambda * 2.0 + 0.2) / 2.0);
    lambdaMax = std::min(lambdaMax, 6.0);
    SvgPlot plot("chart chart-buckling", chartWidth, chartHeight, {0.0, lambdaMax}, {0.0, 1.1});
    plot.axes("non-dimensional slenderness λ̄", "reduction factor χ");
    // The five curves are drawn once in the page for each range of slenderness (bucklingCurveDefinitions);
    // the member's own curves are drawn again on top.
    plot.raw("<use href=\"#" + curvesId(lambdaMax) + "\"/>");
    SteelDesign::BucklingCurve drawn = SteelDesign::BucklingCurve::none;
    for (const Axis axis : {Axis::y, Axis::z}) {
        if (!r || !r->getChi(axis).hasValue()) continue;
        const auto own = r->getBucklingCurveCompression(axis).valueOr(SteelDesign::BucklingCurve::none);
        if (own == SteelDesign::BucklingCurve::none || own == drawn) continue;
        plot.polyline(curvePoints(design::imperfectionFactor(own), lambdaMax), "curve own");
        drawn = own;
    }
    // The lateral-torsional curve the member used (6.57 for the method for rolled sections), with the
    // imperfection factor of its curve (the record's alpha is that of the last reduction factor formed).
    const SteelDesign::BucklingCurve curveLT =
        r ? r->getBucklingCurveBending().valueOr(SteelDesign::BucklingCurve::none) : SteelDesign::BucklingCurve::none;
    if (r && r->getChiLT().hasValue() && outcome->rolledMethod && curveLT != SteelDesign::BucklingCurve::none) {
        const double alphaLT = design::imperfectionFactor(curveLT);
        std::vector<std::pair<double, double>> points;
        for (int i = 0; i <= curveSamples; ++i) {
            const double lambda = lambdaMax * i / curveSamples;
            points.emplace_back(lambda, design::reductionFactorLT(alphaLT, lambda, r->getLambdaLT0(), r->getBeta()));
        }
        plot.polyline(points, "curve lt");
    }
    for (const Mark& k : marks) {
        if (!std::isfinite(k.lambda) || !std::isfinite(k.chi)) continue;
        const std::string title = std::string(k.label) + ": λ̄ = " + number(k.lambda, 3) + ", χ = " + number(k.chi, 3);
        plot.point(std::min(k.lambda, lambdaMax), k.chi, std::string("point ") + k.css, k.label, title);
    }
    // The legend, in the empty upper right of the plot.
    double row = 1.04;
    auto legend = [&](const char* css, const std::string& text, bool point) {
        const double x0 = lambdaMax * 0.56, x1 = lambdaMax * 0.64;
        if (point) plot.point((x0 + x1) / 2, row, std::string("point ") + css, "", text);
        else plot.line(x0, row, x1, row, css);
        plot.text(lambdaMax * 0.66, row - 0.015, text, "legend");
        row -= 0.075;
    };
    legend("curve", "curves a0 to d", false);
    if (drawn != SteelDesign::BucklingCurve::none)
        legend("curve own", std::string("member: curve ") + SteelDesign::toString(drawn), false);
    if (r && r->getChiLT().hasValue() && outcome->rolledMethod && curveLT != SteelDesign::BucklingCurve::none)
        legend("curve lt", std::string("LT (6.57): curve ") + SteelDesign::toString(curveLT), false);
    for (const Mark& k : marks)
        if (std::isfinite(k.lambda) && std::isfinite(k.chi))
            legend(k.css, std::string(k.label) + ": λ̄ " + number(k.lambda, 2) + ", χ " + number(k.chi, 3), true);
    if (!m.member) plot.message("no member check (no buckling length)");
    else if (marks.empty()) plot.message("no reduction factor computed for these actions");
    return plot.finish();
}

std::string momentChart(const ReportMember& m)
{
    const SteelDesign::Forces& f = m.cross.forces;
    std::array<double, 3> my{f.getMy(), f.getMy(), f.getMy()}, mz{f.getMz(), f.getMz(), f.getMz()};
    auto shapeY = SteelDesign::MomentDiagram::Polygonal, shapeZ = SteelDesign::MomentDiagram::Polygonal;
    if (m.member) {
        my = design::momentValues(m.member->moments, Axis::y);
        mz = design::momentValues(m.member->moments, Axis::z);
        shapeY = m.member->moments.getMomentDiagram(Axis::y);
        shapeZ = m.member->moments.getMomentDiagram(Axis::z);
    }
    const bool withZ = std::any_of(mz.begin(), mz.end(), [](double v) { return v != 0.0; });
    // Straight lines need their three points; a parabola is drawn through 25.
    auto samplesOf = [](SteelDesign::MomentDiagram shape) { return shape == SteelDesign::MomentDiagram::Parabolic ? 24 : 2; };
    std::vector<std::pair<double, double>> lineY, lineZ;
    double lo = 0.0, hi = 0.0;
    for (int i = 0, n = samplesOf(shapeY); i <= n; ++i) {
        const double xi = static_cast<double>(i) / n, v = design::momentAt(my, shapeY, xi);
        lineY.emplace_back(xi, v);
        lo = std::min(lo, v), hi = std::max(hi, v);
    }
    for (int i = 0, n = samplesOf(shapeZ); withZ && i <= n; ++i) {
        const double xi = static_cast<double>(i) / n, v = design::momentAt(mz, shapeZ, xi);
        lineZ.emplace_back(xi, v);
        lo = std::min(lo, v), hi = std::max(hi, v);
    }
    const double pad = 0.15 * std::max(hi - lo, 1.0);
    // Moments drawn on the tension side: positive My (bottom fibre in tension) downwards.
    SvgPlot plot("chart chart-moments", chartWidth, chartHeight, {0.0, 1.0}, {-(hi + pad), -(lo - pad)});
    plot.negateYLabels();  // the values are drawn negated (positive down); the ticks read the moments
    plot.axes(m.member ? "position along the member x / L" : "x / L (no member check: My constant)",
              "moment [kNm], positive down", 5, 4);
    auto draw = [&](std::vector<std::pair<double, double>> points, const char* css) {
        for (auto& p : points) p.second = -p.second;
        points.insert(points.begin(), {0.0, 0.0});
        points.emplace_back(1.0, 0.0);
        plot.polyline(points, css, true);
    };
    draw(lineY, "diagram-y");
    if (withZ) draw(lineZ, "diagram-z");
    const double xs[3] = {0.0, 0.5, 1.0};
    const char* names[3] = {"start", "middle", "end"};
    for (int i = 0; i < 3; ++i) {
        const std::string value = number(my[i], 1);
        plot.point(xs[i], -my[i], "moment-value", value, std::string("My at the ") + names[i] + ": " + value + " kNm");
        if (withZ)
            plot.point(xs[i], -mz[i], "moment-value z", number(mz[i], 1),
                       std::string("Mz at the ") + names[i] + ": " + number(mz[i], 1) + " kNm");
    }
    return plot.finish();
}

// --- member section -------------------------------------------------------------------------------------

std::string lengthText(double l) { return l > 0.0 ? number(l, 3) + " m" : "-"; }

// The properties the checks read, with their source, so that a value of the page can be recomputed by hand.
std::string sectionPropertiesText(const SDBSection& s)
{
    using namespace design::tracetext;
    const SDBProperties& p = s.getProperties();
    std::string text = (design::isDimensionNotation(s.getName()) ? "dimensions: " : "catalogue: ") +
                       std::string("A = ") + cm2(p.A) + ", Iy = " + cm4(p.Iy) + ", Iz = " + cm4(p.Iz) + ", It = " +
                       cm4(p.It) + ", Iw = " + cm6(p.Iw) + ", Wel,y = " + cm3(p.Wely) + ", Wpl,y = " + cm3(p.Wply) +
                       ", Wel,z = " + cm3(p.Welz) + ", Wpl,z = " + cm3(p.Wplz);
    const design::SectionAxes axes = design::sectionAxes(s);
    if (axes.principal.rotated)
        text += "; principal axes: Iu = " + cm4(axes.principal.Iu) + ", Iv = " + cm4(axes.principal.Iv) +
                ", alpha = " + number(axes.alphaDegrees(), 2) + "° (y to u)";
    if (axes.shearCentre.known && (axes.shearCentre.ysc != 0.0 || axes.shearCentre.zsc != 0.0))
        text += "; shear centre ysc = " + mm(axes.shearCentre.ysc) + ", zsc = " + mm(axes.shearCentre.zsc) +
                " from the centroid, i0 = " + mm(axes.i0);
    return text;
}

void inputsTable(std::string& out, const ReportMember& m, double fy, double gammaM0)
{
    const SteelDesign::Forces& f = m.cross.forces;
    out += "<table class=\"inputs\"><tbody>";
    auto row = [&](std::string_view name, const std::string& value) {
        out += "<tr><th>";
        appendEscaped(out, name);
        out += "</th><td>";
        appendEscaped(out, value);
        out += "</td></tr>";
    };
    row("section", m.section->getName());
    row("section properties", sectionPropertiesText(*m.section));
    row("steel", m.steel->getName() + ", fy = " + number(fy / 1000.0, 0) + " N/mm²");
    row("design forces", describeForces(f));
    row("partial factors", "γM0 = " + number(gammaM0, 2) + (m.cross.gammaM0 > 1e-6 ? " (given)" : "") +
                               (m.member ? ", γM1 = " + number(m.member->gammaM1, 2) : std::string()));
    if (m.member) {
        const design::MemberRequest& r = *m.member;
        row("buckling lengths", "Lcr,y = " + lengthText(r.lengths.y) + ", Lcr,z = " + lengthText(r.lengths.z) +
                                    ", LLT = " + lengthText(r.lengths.lateralTorsional));
        const auto my = design::momentValues(r.moments, Axis::y);
        row("moment diagram My", number(my[0], 1) + " / " + number(my[1], 1) + " / " + number(my[2], 1) + " kNm (" +
                                     (r.moments.getMomentDiagram(Axis::y) == SteelDesign::MomentDiagram::Parabolic
                                          ? "parabolic"
                                          : "polygonal") +
                                     ")");
        row("lateral-torsional buckling", std::string(design::toString(r.method)) + ", Mcr by " +
                                              design::toString(r.mcrMethod));
    } else {
        row("member checks", "none (no buckling length): cross-section check only");
    }
    out += "</tbody></table>";
}

// The clause without the standard's name where it is EN 1993-1-1 (the table's heading says so).
std::string_view clauseText(std::string_view clause)
{
    constexpr std::string_view main = "EN 1993-1-1 ";
    return clause.substr(0, main.size()) == main ? clause.substr(main.size()) : clause;
}

// One row per line, the lines of a check under a heading row of that check, consecutive lines that say
// the same (the four outstands of an I section) once with their count. The end tags of cells and rows
// are left out, as HTML allows: a report of a thousand members holds seventy thousand lines.
void traceTable(std::string& out, const std::vector<design::TraceLine>& lines)
{
    out += "<table class=\"trace\"><thead><tr><th>clause (EN 1993-1-1 unless named)<th>quantity<th>formula"
           "<th>with numbers<th>result<th>verdict</thead><tbody>";
    std::string_view group;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const design::TraceLine& t = lines[i];
        auto same = [&t](const design::TraceLine& o) {
            return o.check == t.check && o.clause == t.clause && o.symbol == t.symbol && o.numbers == t.numbers &&
                   o.result == t.result && o.status == t.status;
        };
        std::size_t repeats = 1;
        while (i + repeats < lines.size() && same(lines[i + repeats])) ++repeats;
        if (t.check != group) {
            group = t.check;
            out += "<tr class=\"group\"><th colspan=\"6\">";
            appendEscaped(out, group);
        }
        switch (t.status) {
        case design::TraceStatus::Value: out += "<tr class=\"trace-line\">"; break;
        case design::TraceStatus::Fulfilled: out += "<tr class=\"trace-line st-fulfilled\">"; break;
        case design::TraceStatus::NotFulfilled: out += "<tr class=\"trace-line st-not-fulfilled\">"; break;
        case design::TraceStatus::NotVerified: out += "<tr class=\"trace-line st-not-verified\">"; break;
        }
        out += "<td>";
        appendEscaped(out, clauseText(t.clause));
        out += "<td>";
        appendEscaped(out, t.symbol);
        if (repeats > 1) out += " (" + std::to_string(repeats) + " alike)";
        for (const std::string* text : {&t.formula, &t.numbers, &t.result}) {
            out += "<td>";
            appendEscaped(out, *text);
        }
        out += "<td>";
        if (t.status != design::TraceStatus::Value) out += design::toString(t.status);
        i += repeats - 1;
    }
    out += "</tbody></table>";
}

void departuresTable(std::string& out, const design::Departures& departures, design::Rules rules)
{
    if (departures.empty()) return;
    out += "<div class=\"departures\"><h3>Departures from EN 1993-1-1</h3><p>";
    out += rules == design::Rules::En ? "The value to EN 1993-1-1 is the verdict of record; the library's stands beside it"
                                      : "The library's value is the verdict of record; the value to EN 1993-1-1 stands "
                                        "beside it";
    out += " (each rule is explained under "
           "<a href=\"#departure-rules\">Departures</a> at the end).</p><table><thead><tr><th>rule</th><th>clause</th>"
           "<th>check</th><th>library</th><th>EN 1993-1-1</th></tr></thead><tbody>";
    for (const design::Departure& d : departures) {
        const design::DepartureInfo& info = design::infoOf(d.rule);
        out += "<tr class=\"departure\"><td><a " + attr("href", std::string("#rule-") + info.name) + '>';
        appendEscaped(out, info.name);
        out += "</a></td>";
        element(out, "td", "", info.clause);
        element(out, "td", "", d.check);
        element(out, "td", "class=\"library\"", departureValue(d, d.library));
        element(out, "td", "class=\"en\"", departureValue(d, d.en));
        out += "</tr>";
    }
    out += "</tbody></table></div>";
}

// A utilization of the batch's text as printed: three decimals, rounded up, so that a printed 1.000 is
// never over the limit (1.0004 prints 1.001); any other text as it is.
std::string utilizationText(const std::string& text)
{
    double v = 0.0;
    if (text.empty() || design::readNumber(text, v) != design::NumberProblem::None || !std::isfinite(v)) return text;
    // The 1e-9 keeps 0.903 (0.90300000000000002 as a double) at 0.903; a value over 1 never prints 1.000.
    double up = std::ceil(v * 1000.0 - 1e-9) / 1000.0;
    if (v > 1.0 && up <= 1.0) up = 1.001;
    return number(up == 0.0 ? 0.0 : up, 3);
}

// A check's name as an engineer reads it, with its clause.
std::string checkText(std::string_view name)
{
    const design::CheckTitle t = design::checkTitle(name);
    return t.clause.empty() ? std::string(t.title) : std::string(t.title) + ", " + std::string(t.clause);
}

// The member's results: each check in words with its clause, its utilization under the rules in force
// (the batch's cell in data-value, printed to three decimals) and the other rules' value beside it where
// the two differ; then the governing check, the verdict and why something was not verified.
void resultsTable(std::string& out, const std::vector<std::string>& cells, const std::vector<design::CheckPair>& checks,
                  design::Rules rules)
{
    const bool en = rules == design::Rules::En;
    const std::string governing = cell(cells, "governing", rules);
    out += "<table class=\"results\"><thead><tr><th>check</th><th>clause</th><th>utilization</th><th>";
    out += en ? "library" : "EN 1993-1-1";
    out += "</th></tr></thead><tbody>";
    for (const design::CheckPair& c : checks) {
        const std::string value = cell(cells, c.name, rules);
        if (value.empty()) continue;
        const design::CheckTitle t = design::checkTitle(c.name);
        out += c.name == governing ? "<tr class=\"governing\"><td>" : "<tr><td>";
        appendEscaped(out, t.title);
        out += "</td><td>";
        appendEscaped(out, t.clause);
        out += "</td>";
        element(out, "td", attr("data-col", c.name) + ' ' + attr("data-value", value), utilizationText(value));
        const kat::Nullable<double>& other = en ? c.library : c.en;
        std::string otherText = other.hasValue() ? utilizationText(design::shortestText(other.value())) : "-";
        if (otherText == utilizationText(value)) otherText.clear();
        element(out, "td", "class=\"other\"", otherText);
        out += "</tr>";
    }
    out += "</tbody></table><dl class=\"outcome-lines\">";
    auto line = [&](std::string_view label, std::string_view column, const std::string& shown) {
        const std::string value = cell(cells, column, rules);
        if (value.empty()) return;
        out += "<dt>";
        out += label;
        out += "</dt>";
        element(out, "dd", attr("data-col", column) + ' ' + attr("data-value", value), shown);
    };
    line("governing check", "governing", checkText(governing));
    line("governing utilization", "governingUtilization", utilizationText(cell(cells, "governingUtilization", rules)));
    line("verdict", "verdict", cell(cells, "verdict", rules));
    line(en ? "library's governing utilization" : "EN 1993-1-1 governing utilization", otherColumn(rules),
         utilizationText(cell(cells, otherColumn(rules), rules)));
    line("departures", "departures", cell(cells, "departures", rules));
    line("not verified", "reason", cell(cells, "reason", rules));
    out += "</dl>";
}

std::string memberSection(const ReportMember& m, std::size_t index, const ReportHeader& header)
{
    std::string out;
    out.reserve(24 * 1024);
    const std::vector<std::string> cells = csvCells(m.result);
    out += "<section class=\"member\" " + attr("id", anchorOf(index)) + ' ' + attr("data-member", m.id) + ' ' +
           attr("data-line", std::to_string(m.line)) + ' ' + attr("data-verdict", verdictText(m.result)) + '>';
    out += "<h2>";
    appendEscaped(out, m.id);
    out += " <span " + attr("class", "verdict " + verdictClass(m.result)) + '>';
    appendEscaped(out, verdictText(m.result));
    out += "</span></h2>";
    if (m.result.rejected || !m.section) {
        out += "<p class=\"rejected\">line " + std::to_string(m.line) + ": ";
        appendEscaped(out, m.result.errorField + ": " + m.result.errorMessage);
        out += "</p></section>";
        return out;
    }
    const design::CrossSectionOutcome cross = design::evaluateCrossSection(m.cross);
    out += "<div class=\"summary\"><div class=\"inputs\"><h3>Inputs</h3>";
    inputsTable(out, m, cross.initializer.getFy(), cross.gammaM0);
    const std::string command =
        !m.command.empty() ? m.command : m.row ? commandOfRow(*m.row, header.mode, header.situation, m.result.rules) : "";
    if (!command.empty()) {
        out += "<p class=\"command\">Reproduced by <code>";
        appendEscaped(out, command);
        out += "</code></p>";
    }
    out += "</div>";
    std::vector<design::TraceLine> lines = design::traceCrossSection(m.cross, cross);
    std::optional<design::MemberOutcome> member;
    if (m.member) {
        member = design::evaluateMember(*m.member);
        std::vector<design::TraceLine> more = design::traceMember(*m.member, *member);
        lines.insert(lines.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }
    // The EN 1993-1-1 evaluation of the same member, every rule EN's: its values decide under EN rules.
    design::EnEvaluation en;
    design::EnTraces enTraces;
    design::evaluateEn(m.cross, cross.gammaM0, m.member ? &*m.member : nullptr, member ? member->numericalMcr : 0.0, en,
                       &enTraces);
    std::vector<design::TraceLine> enLines = std::move(enTraces.crossSection);
    enLines.insert(enLines.end(), std::make_move_iterator(enTraces.member.begin()),
                   std::make_move_iterator(enTraces.member.end()));
    const bool enRules = m.result.rules == design::Rules::En;
    // The calculation of the rules in force; the other rules' values stand in the departures below.
    design::Departures departures;
    const design::DesignSummary library = design::designMember(m.cross, m.member ? &*m.member : nullptr, &departures);
    std::vector<design::CheckPair> checks;
    const auto& names = utilizationNames();
    for (std::size_t i = 0; i < 7; ++i) checks.push_back({names[i], en.utilizations[i], library.crossSection[i]});
    for (std::size_t i = 0; i < 4; ++i) checks.push_back({names[7 + i], en.utilizations[7 + i], library.member[i]});
    out += "<div class=\"outcome\"><h3>Result</h3>";
    resultsTable(out, cells, checks, m.result.rules);
    if (m.result.limitations) {
        out += "<p class=\"not-verified\">not verified: ";
        appendEscaped(out, design::describeAll(m.result.limitations));
        out += "</p>";
    }
    out += "</div></div>";
    // The charts beside the result, before the calculation: on paper they share the member's first page
    // with its heading and inputs, never a page of their own.
    out += "<div class=\"charts\"><figure>" + interactionChart(m) +
           "<figcaption>N-My interaction of the cross-section (6.2.9, without shear) and the design point</figcaption>"
           "</figure><figure>" +
           bucklingChart(m, member ? &*member : nullptr) +
           "<figcaption>Buckling curves a0 to d (6.49), the lateral-torsional curve used, and the member's "
           "reduction factors</figcaption></figure><figure>" +
           momentChart(m) + "<figcaption>Moment diagram with the values used (start, middle, end)</figcaption></figure></div>";
    out += enRules ? "<h3>Calculation to EN 1993-1-1 (the verdict of record)</h3>" : "<h3>Calculation</h3>";
    traceTable(out, enRules ? enLines : lines);
    departuresTable(out, withEnValues(departures, checks, en.sectionClass), m.result.rules);
    out += "</section>";
    return out;
}

// --- page -----------------------------------------------------------------------------------------------

constexpr const char* style = R"(
:root{--ok:#2e7d32;--fail:#c62828;--nv:#ef6c00;--rej:#6d4c41;--ink:#1b1b1b;--grid:#e2e2e2}
body{font:13px/1.4 "DejaVu Sans",Arial,sans-serif;color:var(--ink);margin:24px auto;max-width:1100px;padding:0 16px}
h1{font-size:22px;margin:0 0 4px}h2{font-size:17px;margin:0 0 8px;border-bottom:2px solid #444;padding-bottom:3px}
h3{font-size:14px;margin:14px 0 6px}
table{border-collapse:collapse;margin:4px 0}th,td{padding:2px 7px;border-bottom:1px solid var(--grid);text-align:left;vertical-align:top}
td[data-col=line],td[data-col=class],td[data-col$=tilization]{text-align:right;font-variant-numeric:tabular-nums}
td.id,td[data-col=section],td[data-col=verdict]{white-space:nowrap}#members{width:100%}#members td.why{font-size:11px;color:#555}
@media (max-width:900px){body{font-size:12px;padding:0 8px}#members th,#members td{padding:2px 3px}#members th:nth-child(2),#members td[data-col=line]{display:none}}
.verdict{font-size:12px;padding:1px 6px;border-radius:3px;color:#fff;vertical-align:middle}
.fulfilled{color:var(--ok)}.not-fulfilled{color:var(--fail)}.not-verified{color:var(--nv)}.rejected{color:var(--rej)}
.verdict.fulfilled{background:var(--ok);color:#fff}.verdict.not-fulfilled{background:var(--fail);color:#fff}
.verdict.not-verified{background:var(--nv);color:#fff}.verdict.rejected{background:var(--rej);color:#fff}
.cover dl{display:grid;grid-template-columns:max-content auto;gap:2px 14px}.cover dt{font-weight:bold}
table.title-block{width:100%;border:1.5px solid #444;margin:6px 0 10px}table.title-block th{width:11%;background:#f3f3f3;border:1px solid #999}
table.title-block td{width:39%;border:1px solid #999;height:1.5em}td.blank{min-width:8em}.hash{font-size:10px;color:#555;word-break:break-all}
section.basis dl{display:grid;grid-template-columns:max-content auto;gap:1px 12px;margin:4px 0}section.basis dt{font-weight:bold}
section.signatures{break-inside:avoid;margin-top:24px}table.signatures,table.revisions{width:100%;margin:8px 0}
table.signatures td,table.signatures th,table.revisions td,table.revisions th{border:1px solid #999;height:2.2em}
.counts span{margin-right:14px}
table.trace{width:100%;font-size:12px}table.trace td:nth-child(4){color:#333}table.trace td:nth-child(5){text-align:right;white-space:nowrap}
table.trace tr.group th{background:#f3f3f3;font-weight:bold;padding-top:5px}table.trace td:nth-child(6){white-space:nowrap}
.st-fulfilled td:nth-child(6){color:var(--ok)}.st-not-fulfilled td:nth-child(6){color:var(--fail);font-weight:bold}
.st-not-verified td:nth-child(6),.st-not-verified td:nth-child(4){color:var(--nv)}
section.member{margin:28px 0;page-break-before:always;break-before:page}
.charts{display:flex;flex-wrap:wrap;gap:8px}.charts figure{margin:0}figcaption{font-size:11px;color:#555;max-width:330px}
svg .grid path{stroke:var(--grid);stroke-width:1;fill:none}svg .tick{font-size:9px;fill:#555}svg .title{font-size:10px;fill:#333}
svg .frame{fill:none;stroke:#999}svg line.zero{stroke:#777;stroke-width:1}svg .message{font-size:11px;fill:#777}
svg .curve{fill:none;stroke:#9e9e9e;stroke-width:1}svg .curve.own{stroke:#1565c0;stroke-width:2}
svg .curve.lt{stroke:#6a1b9a;stroke-width:2;stroke-dasharray:5 3}svg .curve-label{font-size:9px;fill:#777}
svg .curve-label.own{fill:#1565c0;font-weight:bold}svg polygon.curve{fill:#e3f2fd;stroke:#1565c0;stroke-width:1.5}
svg polyline.curve.open{stroke:#1565c0;stroke-width:1.5}svg .curve-point circle{fill:#1565c0}
svg .point circle,svg .design-point circle{fill:#c62828}svg .point text,svg .design-point text,svg .moment-value text{font-size:10px}
svg .point-lt circle{fill:#6a1b9a}svg .point-z circle{fill:#ef6c00}
svg .diagram-y{fill:#e3f2fd;stroke:#1565c0;stroke-width:1.5}svg .diagram-z{fill:none;stroke:#ef6c00;stroke-dasharray:4 3}
svg .moment-value circle{fill:#1565c0;r:3}svg .moment-value.z circle{fill:#ef6c00}
svg rect.bar.fulfilled{fill:var(--ok)}svg rect.bar.not-fulfilled{fill:var(--fail)}svg rect.bar.not-verified{fill:url(#hatch);stroke:var(--nv)}
svg .bar-name{font-size:8px;fill:#333}svg .legend{font-size:8.5px;fill:#333}svg line.curve{stroke:#9e9e9e}
svg line.limit{stroke:var(--fail);stroke-width:1.5;stroke-dasharray:6 3}
#members th{cursor:pointer;user-select:none}#members th.sorted-asc::after{content:" ▲"}#members th.sorted-desc::after{content:" ▼"}
#filter{margin:6px 0;padding:3px 6px;width:280px}
.departures table{font-size:12px}.departures td.en{font-weight:bold}#departure-rules{break-before:page}
#departure-rules dt{font-weight:bold;margin-top:6px}
.summary{display:flex;flex-wrap:wrap;gap:4px 18px;align-items:flex-start}.summary>div{flex:1 1 380px}
table.results td:nth-child(3),table.results td:nth-child(4){text-align:right}table.results tr.governing td{font-weight:bold}
dl.outcome-lines{display:grid;grid-template-columns:max-content auto;gap:0 10px;margin:4px 0}dl.outcome-lines dt{font-weight:bold}
dl.outcome-lines dd{margin:0}p.command{font-size:11px;margin:4px 0}p.command code{overflow-wrap:break-word}
@media print{body{margin:0;padding:0;max-width:none;font-size:8px;line-height:1.2}.summary>div{flex:1 1 45%}
 .departures table,.departures p{font-size:7.5px}#filter,.noprint{display:none}
 a{color:inherit;text-decoration:none}h1{font-size:15px}h2{font-size:12px;margin:0 0 4px}h3{font-size:9.5px;margin:6px 0 3px}
 h2,h3,table.trace tr.group{break-after:avoid}section.member{margin:0}th,td{padding:0.5px 4px}
 table.trace{font-size:7px;line-height:1.15}table.trace td,table.trace th{padding:0 3px}table.trace tr{break-inside:avoid}
 .charts{flex-wrap:nowrap;gap:4px;break-inside:avoid}.charts svg{width:228px;height:auto}figcaption{font-size:7px;max-width:228px}
 td,th{overflow-wrap:normal;word-break:normal;hyphens:manual}}
)";

// Sorting by a click on a column header and filtering by a text; the page reads the same without it.
constexpr const char* script = R"(
window.reportErrors=[];window.addEventListener('error',function(e){window.reportErrors.push(String(e.message));
document.body.setAttribute('data-errors',window.reportErrors.join(' | '));});
(function(){var t=document.getElementById('members');if(!t)return;var b=t.tBodies[0];
var f=document.getElementById('filter');f.hidden=false;
f.addEventListener('input',function(){var q=f.value.toLowerCase();
for(var i=0;i<b.rows.length;i++){var r=b.rows[i];r.style.display=r.textContent.toLowerCase().indexOf(q)<0?'none':'';}});
var hs=t.tHead.rows[0].cells;for(var c=0;c<hs.length;c++)(function(c){hs[c].addEventListener('click',function(){
var asc=!hs[c].classList.contains('sorted-asc');for(var k=0;k<hs.length;k++)hs[k].classList.remove('sorted-asc','sorted-desc');
hs[c].classList.add(asc?'sorted-asc':'sorted-desc');var rows=Array.prototype.slice.call(b.rows);
rows.sort(function(x,y){var a=x.cells[c].getAttribute('data-sort')||x.cells[c].textContent,
z=y.cells[c].getAttribute('data-sort')||y.cells[c].textContent,na=parseFloat(a),nz=parseFloat(z);
var r=(!isNaN(na)&&!isNaN(nz))?na-nz:a.localeCompare(z);return asc?r:-r;});
rows.forEach(function(r){b.appendChild(r);});});})(c);
document.body.setAttribute('data-script','ready');})();
)";

std::string overviewChart(const std::vector<ReportMember>& members, const std::vector<std::size_t>& order)
{
    std::size_t bars = 0;
    double top = 1.2;
    for (std::size_t i : order) {
        if (members[i].result.rejected) continue;
        ++bars;
        const double u = members[i].result.governingUtilization;
        if (std::isfinite(u)) top = std::max(top, u * 1.05);
    }
    top = std::min(top, 5.0);
    const double width = std::clamp(60.0 + 9.0 * static_cast<double>(bars), 720.0, 1060.0);
    const double slot = (width - 64.0) / std::max<double>(1.0, static_cast<double>(bars));
    SvgPlot plot("chart overview-chart", width, 340.0, {0.0, static_cast<double>(std::max<std::size_t>(bars, 1))}, {0.0, top});
    plot.bottomMargin(116.0);  // the members' names under their bars
    // Not verified: hatched, not a short bar that would read "lightly loaded".
    plot.raw("<defs><pattern id=\"hatch\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\" "
             "patternTransform=\"rotate(45)\"><rect width=\"6\" height=\"6\" fill=\"#fff3e0\"/><line x1=\"0\" "
             "y1=\"0\" x2=\"0\" y2=\"6\" stroke=\"#ef6c00\" stroke-width=\"3\"/></pattern></defs>");
    plot.axes("members, sorted by governing utilization (hatched: not verified, drawn to the top)",
              "governing utilization", 5, 0);
    plot.line(0.0, 1.0, static_cast<double>(std::max<std::size_t>(bars, 1)), 1.0, "limit");
    std::size_t k = 0;
    for (std::size_t i : order) {
        const RowResult& r = members[i].result;
        if (r.rejected) continue;
        const double u = r.governingUtilization;
        const bool notVerified = r.verdict == design::Verdict::NotVerified;
        const double shown = notVerified || !std::isfinite(u) ? top : std::min(u, top);
        std::string title = members[i].id + ": " + (r.governing.empty() ? std::string("no utilization") : checkText(r.governing)) +
                            " " + (std::isfinite(u) ? utilizationText(design::shortestText(u)) : std::string("not finite")) +
                            ", " + verdictText(r);
        plot.bar(static_cast<double>(k) + 0.5, std::clamp(slot * 0.8, 1.0, 28.0), shown, "bar " + verdictClass(r),
                 attr("data-member", members[i].id) + ' ' + attr("data-verdict", verdictText(r)), title);
        // The member's name under its bar, read from below (at most 18 characters).
        std::string name = members[i].id.size() > 18 ? members[i].id.substr(0, 17) + "…" : members[i].id;
        const double x = plot.px(static_cast<double>(k) + 0.5), y = plot.py(0.0) + 6.0;
        std::string label = "<text class=\"bar-name\" text-anchor=\"end\" transform=\"translate(" + chartNumber(x + 3.0) +
                            ' ' + chartNumber(y) + ") rotate(-90)\">";
        appendEscaped(label, name);
        plot.raw(label + "</text>");
        ++k;
    }
    if (bars == 0) plot.message("no member was evaluated");
    return plot.finish();
}

} // namespace

ReportMember reportMember(std::size_t line, std::string id, std::shared_ptr<SDBSection> section,
                          std::shared_ptr<KaConstrSteel> steel, const design::CrossSectionRequest& cross,
                          const std::optional<design::MemberRequest>& member, design::Rules rules)
{
    ReportMember m;
    m.line = line;
    m.id = std::move(id);
    m.section = std::move(section);
    m.steel = std::move(steel);
    m.cross = cross;
    m.cross.section = m.section.get();
    m.cross.steel = m.steel.get();
    m.member = member;
    if (m.member) {
        m.member->section = m.section.get();
        m.member->steel = m.steel.get();
    }
    m.result = evaluateChecks(m.cross, m.member ? &*m.member : nullptr, rules);
    m.result.line = m.line;
    m.result.id = m.id;
    return m;
}

ReportMember reportMember(const BatchRow& row, design::Rules rules)
{
    ReportMember m;
    // The batch's own evaluation of the row gives the numbers of record; the report adds the details.
    m.result = evaluateRow(row, rules);
    m.line = m.result.line;
    m.id = m.result.id;
    if (m.result.rejected) return m;
    const MemberRow& member = std::get<MemberRow>(row);
    m.row = member;
    std::string error;
    m.section = design::makeSection(member.section, error);
    const std::optional<KaConstrSteel> steel = KaConstrSteel::fromName(member.steel);
    if (!m.section || !steel) return m;
    m.steel = std::make_shared<KaConstrSteel>(*steel);
    const RowRequests requests = rowRequests(member, m.section.get(), m.steel.get());
    m.cross = requests.cross;
    m.member = requests.member;
    return m;
}

std::string memberReportHtml(ReportHeader header, std::shared_ptr<SDBSection> section, const KaConstrSteel& steel,
                             const design::CrossSectionRequest& cross, const std::optional<design::MemberRequest>& member)
{
    const std::string id = header.block.element.empty() ? section->getName() : header.block.element;
    std::vector<ReportMember> members{
        reportMember(1, id, std::move(section), std::make_shared<KaConstrSteel>(steel), cross, member, header.rules)};
    if (header.date.empty()) header.date = nowText();
    members[0].command = header.model;
    std::ostringstream page;
    writeReport(page, header, members, 1);
    return page.str();
}

void writeMemberReport(std::string_view option, const std::string& path, ReportHeader header,
                       std::unique_ptr<SDBSection> section, const KaConstrSteel& steel,
                       const design::CrossSectionRequest& cross, const std::optional<design::MemberRequest>& member)
{
    writeFileAtomically(option, path,
                        memberReportHtml(std::move(header), std::shared_ptr<SDBSection>(std::move(section)), steel,
                                         cross, member));
}

std::string nowText()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M %z", &local);
    return text;
}

void writeReport(std::ostream& out, const ReportHeader& header, const std::vector<ReportMember>& members, unsigned jobs)
{
    // Member sections first (the costly part, on every core), then the page around them.
    std::vector<std::string> sections(members.size());
    forEachChunk(members.size(), 4, jobs, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) sections[i] = memberSection(members[i], i, header);
    });

    std::vector<std::size_t> order(members.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return rankOf(members[a].result) > rankOf(members[b].result); });
    std::size_t fulfilled = 0, notFulfilled = 0, notVerified = 0, rejected = 0;
    for (const ReportMember& m : members) {
        if (m.result.rejected) ++rejected;
        else if (m.result.verdict == design::Verdict::Fulfilled) ++fulfilled;
        else if (m.result.verdict == design::Verdict::NotFulfilled) ++notFulfilled;
        else ++notVerified;
    }

    std::string page;
    page.reserve(64 * 1024);
    page += "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><meta name=\"viewport\" "
            "content=\"width=device-width,initial-scale=1\"><title>";
    appendEscaped(page, header.title + (header.model.empty() ? "" : ": " + header.model));
    page += "</title><style>";
    page += style;
    page += pageFrameCss(header);
    page += "</style></head><body>";
    page += bucklingCurveDefinitions();
    page += "<header class=\"cover\" id=\"cover\"><h1>";
    appendEscaped(page, header.title);
    page += "</h1>";
    page += titleBlockHtml(header);
    page += "<p class=\"counts\"><span data-count=\"rows\">members " + std::to_string(members.size()) +
            "</span><span class=\"fulfilled\" data-count=\"fulfilled\">fulfilled " + std::to_string(fulfilled) +
            "</span><span class=\"not-fulfilled\" data-count=\"not fulfilled\">not fulfilled " + std::to_string(notFulfilled) +
            "</span><span class=\"not-verified\" data-count=\"not verified\">not verified " + std::to_string(notVerified) +
            "</span><span class=\"rejected\" data-count=\"rejected\">rejected " + std::to_string(rejected) + "</span></p>";
    page += "<h3>Governing members</h3><ol class=\"governing\">";
    std::size_t listed = 0;
    for (std::size_t i : order) {
        if (listed == 5 || members[i].result.rejected) break;
        const RowResult& r = members[i].result;
        page += "<li><a " + attr("href", "#" + anchorOf(i)) + '>';
        appendEscaped(page, members[i].id);
        page += "</a> ";
        const std::string value = utilizationText(cell(csvCells(r), "governingUtilization", r.rules));
        appendEscaped(page, r.section + ": " + (r.governing.empty() ? "no check computed" : checkText(r.governing)) +
                                (value.empty() ? "" : " " + value) + ", " + verdictText(r));
        page += "</li>";
        ++listed;
    }
    page += "</ol>";
    // What the cover must not hide: every member not verified and every row rejected, with the reason.
    std::string unresolved;
    for (std::size_t i = 0; i < members.size(); ++i) {
        const RowResult& r = members[i].result;
        if (!r.rejected && r.verdict != design::Verdict::NotVerified) continue;
        unresolved += "<li " + attr("class", verdictClass(r)) + "><a " + attr("href", "#" + anchorOf(i)) + '>';
        appendEscaped(unresolved, members[i].id);
        unresolved += "</a> (line " + std::to_string(members[i].line) + ") ";
        appendEscaped(unresolved, r.rejected ? "rejected: " + (r.errorField.empty() ? r.errorMessage
                                                                                  : r.errorField + ": " + r.errorMessage)
                                             : "not verified: " + design::describeAll(r.limitations));
        unresolved += "</li>";
    }
    if (!unresolved.empty()) page += "<h3>Not verified and rejected</h3><ul class=\"unresolved\">" + unresolved + "</ul>";
    page += "</header>";

    page += "<section id=\"overview\"><h2>Overview</h2>";
    page += overviewChart(members, order);
    page += "</section>";

    // The table: a member per row, the checks and columns in words, utilizations to three decimals (the
    // batch's cell in data-value, by which the columns sort), and why a member was not verified or a row
    // rejected.
    page += "<section id=\"table\"><h2>Members</h2><input id=\"filter\" type=\"search\" placeholder=\"filter\" hidden>"
            "<table id=\"members\"><thead><tr><th>member</th><th>line</th><th>section</th><th>steel</th><th>class</th>"
            "<th>governing check</th><th>utilization</th><th>verdict</th><th>" +
            std::string(header.rules == design::Rules::En ? "library" : "EN 1993-1-1") +
            "</th><th>reason, departures</th></tr></thead><tbody>";
    for (std::size_t i = 0; i < members.size(); ++i) {
        const RowResult& r = members[i].result;
        const std::vector<std::string> cells = csvCells(r);
        page += "<tr " + attr("data-member", members[i].id) + "><td class=\"id\"><a " + attr("href", "#" + anchorOf(i)) + '>';
        appendEscaped(page, members[i].id);
        page += "</a></td>";
        auto column = [&](const char* name, const std::string& shown, std::string css = "") {
            const std::string value = cell(cells, name, header.rules);
            std::string attributes = attr("data-col", name) + ' ' + attr("data-value", value);
            if (!css.empty()) attributes += " class=\"" + css + '"';
            if (shown != value) attributes += ' ' + attr("data-sort", value);
            element(page, "td", attributes, shown);
        };
        column("line", cell(cells, "line", header.rules));
        column("section", cell(cells, "section", header.rules));
        column("steel", cell(cells, "steel", header.rules));
        column("class", cell(cells, "class", header.rules));
        const std::string governing = cell(cells, "governing", header.rules);
        column("governing", governing.empty() ? governing : checkText(governing));
        column("governingUtilization", utilizationText(cell(cells, "governingUtilization", header.rules)));
        column("verdict", cell(cells, "verdict", header.rules), verdictClass(r));
        column(otherColumn(header.rules), utilizationText(cell(cells, otherColumn(header.rules), header.rules)));
        // Why: the rejection, what was not verified, the departures.
        std::string why;
        if (r.rejected) why = r.errorField.empty() ? r.errorMessage : r.errorField + ": " + r.errorMessage;
        const std::string reason = cell(cells, "reason", header.rules), departures = cell(cells, "departures", header.rules);
        for (const std::string* part : {&reason, &departures})
            if (!part->empty()) {
                if (!why.empty()) why += "; ";
                why += *part;
            }
        // "a;b" of the batch's cells as "a; b": a line may break after each, never inside a name.
        std::string spaced;
        for (const char c : why) {
            spaced += c;
            if (c == ';') spaced += ' ';
        }
        page += "<td class=\"why\">";
        appendEscaped(page, spaced);
        page += "</td></tr>";
    }
    page += "</tbody></table></section>";
    out << page;
    for (const std::string& s : sections) out << s;
    // The departures that occur, each explained once.
    std::uint32_t rules = 0;
    for (const ReportMember& m : members) rules |= m.result.departures;
    if (rules) {
        std::string legend = "<section id=\"departure-rules\"><h2>Departures from EN 1993-1-1</h2><p>Where a rule of the "
                             "library departs from EN 1993-1-1, the library's value is the verdict of record and the EN "
                             "value is shown beside it.</p><dl class=\"rules\">";
        for (const design::DepartureInfo& info : design::departureTable()) {
            if (!(rules & (1u << static_cast<unsigned>(info.rule)))) continue;
            legend += "<dt " + attr("id", std::string("rule-") + info.name) + '>';
            appendEscaped(legend, std::string(info.name) + " (" + info.clause + ")");
            legend += "</dt><dd>";
            appendEscaped(legend, info.when);
            legend += "<br>EN 1993-1-1: ";
            appendEscaped(legend, info.en);
            legend += "</dd>";
        }
        out << legend << "</dl></section>";
    }
    out << signatureBlockHtml(header);
    out << "<footer class=\"noprint\"><p>steeldesign design report</p></footer><script>" << script
        << "</script></body></html>\n";
}

} // namespace report
