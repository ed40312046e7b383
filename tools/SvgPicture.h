// SvgPicture: a small SVG drawing assembled in memory and written in one go.
//
// The file opens with the XML declaration and every attribute value is
// double-quoted, so the library's own XML parser reads it back. Texts are
// numbers and plain labels: nothing that would need an entity.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace talvo_tool {

class SvgPicture {
public:
    using Points = std::vector<std::pair<double, double>>;

    SvgPicture(int width, int height);

    void addRectangle(double x, double y, double width, double height, const char* fill);
    void addLine(double x1, double y1, double x2, double y2, const char* stroke);
    void addPolyline(const Points& points, const char* stroke);
    void addPolygon(const Points& points, const char* fill);
    // `anchor` is "start", "middle" or "end".
    void addText(double x, double y, const std::string& text, const char* anchor);

    // Writes the picture to `path`; false (reported) when the file cannot be written.
    bool writeTo(const std::string& path) const;

private:
    static std::string formatPoints(const Points& points);

    int width;
    int height;
    std::string body;
};

// Maps data coordinates onto a plotting area of a picture, y growing upwards.
class SvgScale {
public:
    SvgScale(double low, double high, double from, double to);
    double operator()(double value) const;

private:
    double low;
    double from;
    double factor;
};

// A chart of the tool's standard size: a picture with a plotting area,
// axes labelled at their ends and a title above.
class SvgChart : public SvgPicture {
public:
    static constexpr int Width = 640, Height = 400;
    static constexpr double Left = 60, Right = 620, Top = 40, Bottom = 350;

    SvgChart() : SvgPicture(Width, Height) {}

    // Maps [low, high] of the data onto the plotting area's width or height.
    static SvgScale horizontal(double low, double high) { return SvgScale(low, high, Left, Right); }
    static SvgScale vertical(double low, double high) { return SvgScale(low, high, Bottom, Top); }

    // The bottom line, labelled with `low` and `high` at its ends.
    void addHorizontalAxis(double low, double high);
    // The left line, labelled with `low` and `high` at its ends.
    void addVerticalAxis(double low, double high);
    void addTitle(const std::string& title);
};

// "%.6g" of a value, for labels.
std::string formatLabel(double value);

}  // namespace talvo_tool
