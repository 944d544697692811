#include "Svg.h"

#include <cmath>
#include <cstdio>

namespace report {

void appendEscaped(std::string& out, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&#39;"; break;
        default: out += c;
        }
    }
}

std::string htmlEscape(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    appendEscaped(out, text);
    return out;
}

std::string chartNumber(double value, int decimals)
{
    if (!std::isfinite(value)) return "0";
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    std::string text = buffer;
    if (text.find('.') != std::string::npos) {
        while (text.back() == '0') text.pop_back();
        if (text.back() == '.') text.pop_back();
    }
    if (text == "-0") text = "0";
    return text;
}

std::vector<double> niceTicks(double min, double max, int count)
{
    std::vector<double> ticks;
    if (!(max > min) || count < 1) return ticks;
    const double raw = (max - min) / count;
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    const double fraction = raw / magnitude;
    // The round step nearest to the range over the count: 1, 2 or 5 times a power of ten.
    const double step = (fraction < 1.5 ? 1.0 : fraction < 3.0 ? 2.0 : fraction < 7.0 ? 5.0 : 10.0) * magnitude;
    for (double k = std::ceil(min / step - 1e-9); k * step <= max + 1e-9 * step; k += 1.0) ticks.push_back(k == 0.0 ? 0.0 : k * step);
    return ticks;
}

SvgPlot::SvgPlot(std::string_view cssClass, double width, double height, Range x, Range y)
    : width_(width), height_(height), x_(x), y_(y)
{
    if (!(x_.max > x_.min)) x_ = {x_.min - 1.0, x_.min + 1.0};
    if (!(y_.max > y_.min)) y_ = {y_.min - 1.0, y_.min + 1.0};
    out_ += "<svg class=\"";
    appendEscaped(out_, cssClass);
    out_ += "\" viewBox=\"0 0 " + chartNumber(width) + ' ' + chartNumber(height) +
            "\" width=\"" + chartNumber(width) + "\" height=\"" + chartNumber(height) +
            "\" xmlns=\"http://www.w3.org/2000/svg\" role=\"img\">";
}

double SvgPlot::px(double x) const { return left_ + (x - x_.min) / (x_.max - x_.min) * (width_ - left_ - right_); }

double SvgPlot::py(double y) const { return height_ - bottom_ - (y - y_.min) / (y_.max - y_.min) * (height_ - top_ - bottom_); }

void SvgPlot::axes(std::string_view xTitle, std::string_view yTitle, int ticks, int xTicks)
{
    const double x0 = left_, x1 = width_ - right_, y0 = height_ - bottom_, y1 = top_;
    // The grid as one path, the tick labels beside it in two groups that set their alignment once.
    std::string grid, xLabels, yLabels;
    for (double t : niceTicks(x_.min, x_.max, xTicks < 0 ? ticks : xTicks)) {
        const std::string p = chartNumber(px(t), 0);
        grid += 'M' + p + ' ' + chartNumber(y1, 0) + 'V' + chartNumber(y0, 0);
        xLabels += "<text x=\"" + p + "\">" + chartNumber(t, 3) + "</text>";
    }
    for (double t : niceTicks(y_.min, y_.max, ticks)) {
        const std::string p = chartNumber(py(t), 0);
        grid += 'M' + chartNumber(x0, 0) + ' ' + p + 'H' + chartNumber(x1, 0);
        const double shown = negateY_ && t != 0.0 ? -t : t;
        yLabels += "<text y=\"" + chartNumber(py(t) + 3.5, 0) + "\">" + chartNumber(shown, 3) + "</text>";
    }
    out_ += "<g class=\"grid\"><path d=\"" + grid + "\"/></g><g class=\"tick\" text-anchor=\"middle\" transform=\"translate(0 " +
            chartNumber(y0 + 13, 0) + ")\">" + xLabels + "</g><g class=\"tick\" text-anchor=\"end\" transform=\"translate(" +
            chartNumber(x0 - 4, 0) + " 0)\">" + yLabels + "</g><g class=\"axis\">";
    if (x_.min <= 0.0 && x_.max >= 0.0) line(0.0, y_.min, 0.0, y_.max, "zero");
    if (y_.min <= 0.0 && y_.max >= 0.0) line(x_.min, 0.0, x_.max, 0.0, "zero");
    out_ += "<rect class=\"frame\" x=\"" + chartNumber(x0) + "\" y=\"" + chartNumber(y1) + "\" width=\"" +
            chartNumber(x1 - x0) + "\" height=\"" + chartNumber(y0 - y1) + "\"/>";
    out_ += "<text class=\"title\" x=\"" + chartNumber((x0 + x1) / 2) + "\" y=\"" + chartNumber(height_ - 6) +
            "\" text-anchor=\"middle\">";
    appendEscaped(out_, xTitle);
    out_ += "</text><text class=\"title\" transform=\"translate(12 " + chartNumber((y0 + y1) / 2) +
            ") rotate(-90)\" text-anchor=\"middle\">";
    appendEscaped(out_, yTitle);
    out_ += "</text></g>";
}

void SvgPlot::line(double x1, double y1, double x2, double y2, std::string_view cssClass)
{
    out_ += "<line class=\"";
    appendEscaped(out_, cssClass);
    out_ += "\" x1=\"" + chartNumber(px(x1)) + "\" y1=\"" + chartNumber(py(y1)) + "\" x2=\"" + chartNumber(px(x2)) +
            "\" y2=\"" + chartNumber(py(y2)) + "\"/>";
}

void SvgPlot::polyline(const std::vector<std::pair<double, double>>& points, std::string_view cssClass, bool closed)
{
    if (points.empty()) return;
    out_ += closed ? "<polygon class=\"" : "<polyline class=\"";
    appendEscaped(out_, cssClass);
    out_ += "\" points=\"";
    bool first = true;
    for (const auto& [x, y] : points) {
        if (!first) out_ += ' ';
        first = false;
        // Whole pixels: a chart is a few hundred px wide, and the page stays small.
        out_ += chartNumber(px(x), 0) + ',' + chartNumber(py(y), 0);
    }
    out_ += "\"/>";
}

void SvgPlot::raw(std::string_view markup) { out_ += markup; }

void SvgPlot::point(double x, double y, std::string_view cssClass, std::string_view label, std::string_view title)
{
    const std::string cx = chartNumber(px(x)), cy = chartNumber(py(y));
    out_ += "<g class=\"";
    appendEscaped(out_, cssClass);
    out_ += "\"><circle cx=\"" + cx + "\" cy=\"" + cy + "\" r=\"4\"><title>";
    appendEscaped(out_, title);
    out_ += "</title></circle>";
    if (!label.empty()) {
        // About 6 px a character at the labels' 10 px: a label that would pass the right edge goes left.
        const bool left = px(x) + 6.0 + 6.0 * static_cast<double>(label.size()) > width_ - 2.0;
        out_ += "<text x=\"" + chartNumber(left ? px(x) - 6 : px(x) + 6) + "\" y=\"" + chartNumber(py(y) - 6) + "\"" +
                (left ? " text-anchor=\"end\">" : ">");
        appendEscaped(out_, label);
        out_ += "</text>";
    }
    out_ += "</g>";
}

void SvgPlot::text(double x, double y, std::string_view content, std::string_view cssClass, std::string_view anchor)
{
    out_ += "<text class=\"";
    appendEscaped(out_, cssClass);
    out_ += "\" x=\"" + chartNumber(px(x)) + "\" y=\"" + chartNumber(py(y)) + "\" text-anchor=\"";
    appendEscaped(out_, anchor);
    out_ += "\">";
    appendEscaped(out_, content);
    out_ += "</text>";
}

void SvgPlot::bar(double x, double widthPx, double value, std::string_view cssClass, std::string_view attributes,
                  std::string_view title)
{
    const double top = py(std::max(value, 0.0)), base = py(std::min(value, 0.0));
    out_ += "<rect class=\"";
    appendEscaped(out_, cssClass);
    out_ += "\" x=\"" + chartNumber(px(x) - widthPx / 2, 2) + "\" y=\"" + chartNumber(top) + "\" width=\"" +
            chartNumber(widthPx, 2) + "\" height=\"" + chartNumber(base - top) + "\" ";
    out_ += attributes;
    out_ += "><title>";
    appendEscaped(out_, title);
    out_ += "</title></rect>";
}

void SvgPlot::message(std::string_view content)
{
    out_ += "<text class=\"message\" x=\"" + chartNumber((left_ + width_ - right_) / 2) + "\" y=\"" +
            chartNumber((top_ + height_ - bottom_) / 2) + "\" text-anchor=\"middle\">";
    appendEscaped(out_, content);
    out_ += "</text>";
}

std::string SvgPlot::finish()
{
    out_ += "</svg>";
    return std::move(out_);
}

} // namespace report
