#pragma once

// A small writer of inline SVG charts for the HTML report: a plot area with linear axes, ticks and
// labels, and the marks drawn in data coordinates (lines, polylines, points, bars, text). The markup is
// written directly: a chart is a few dozen elements, and the page must open without any script or
// network.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace report {

// Text made safe for HTML and SVG content and attribute values.
std::string htmlEscape(std::string_view text);
void appendEscaped(std::string& out, std::string_view text);

// A number for a chart: up to `decimals` decimals, trailing zeros dropped ("12.5", "-3", "0.25").
std::string chartNumber(double value, int decimals = 1);

struct Range {
    double min = 0.0, max = 1.0;
};

class SvgPlot {
public:
    // width x height in px; the plot area inside margins for the axis labels; x and y ranges in data units.
    SvgPlot(std::string_view cssClass, double width, double height, Range x, Range y);

    double px(double x) const;  // data x to px
    double py(double y) const;  // data y to px

    // Grid lines and tick labels (about `ticks` per axis, at round values), the axis titles, and the
    // axes through zero where zero is in range. xTicks 0: no ticks on x (a chart of categories).
    void axes(std::string_view xTitle, std::string_view yTitle, int ticks = 5, int xTicks = -1);
    void line(double x1, double y1, double x2, double y2, std::string_view cssClass);
    void polyline(const std::vector<std::pair<double, double>>& points, std::string_view cssClass, bool closed = false);
    // Markup as it is (a `use` of a shape defined once in the page).
    void raw(std::string_view markup);
    // A point with a label beside it (to its left where it would leave the chart) and a tooltip.
    void point(double x, double y, std::string_view cssClass, std::string_view label, std::string_view title);
    void text(double x, double y, std::string_view content, std::string_view cssClass, std::string_view anchor = "start");
    // A bar from y = 0 to y = value at x (its width in px), with attributes for tests and a tooltip.
    void bar(double x, double widthPx, double value, std::string_view cssClass, std::string_view attributes,
             std::string_view title);
    // A message in the middle of the plot area (when there is nothing to draw).
    void message(std::string_view content);

    std::string finish();

    // Tick labels of y with the opposite sign (a chart that draws positive values downwards).
    void negateYLabels() { negateY_ = true; }
    // The bottom margin in px (room for labels under the plot area); before anything is drawn.
    void bottomMargin(double px) { bottom_ = px; }

    // The markup written since a mark (for shapes defined once and used by many charts).
    std::size_t mark() const { return out_.size(); }
    std::string markupSince(std::size_t mark) const { return out_.substr(mark); }

private:
    std::string out_;
    double width_, height_;
    double left_ = 52.0, right_ = 12.0, top_ = 12.0, bottom_ = 36.0;
    bool negateY_ = false;
    Range x_, y_;
};

// Round tick values covering [min, max], about `count` of them.
std::vector<double> niceTicks(double min, double max, int count);

} // namespace report
