#include "SvgPicture.h"

#include "ToolSupport.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace talvo_tool {

namespace {

std::string formatCoordinate(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

}  // namespace

std::string formatLabel(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

SvgPicture::SvgPicture(int width, int height) : width(width), height(height) {}

void SvgPicture::addRectangle(double x, double y, double w, double h, const char* fill) {
    body += "  <rect x=\"" + formatCoordinate(x) + "\" y=\"" + formatCoordinate(y) + "\" width=\""
            + formatCoordinate(w) + "\" height=\"" + formatCoordinate(h) + "\" fill=\"" + fill + "\" />\n";
}

void SvgPicture::addLine(double x1, double y1, double x2, double y2, const char* stroke) {
    body += "  <line x1=\"" + formatCoordinate(x1) + "\" y1=\"" + formatCoordinate(y1) + "\" x2=\""
            + formatCoordinate(x2) + "\" y2=\"" + formatCoordinate(y2) + "\" stroke=\"" + stroke + "\" />\n";
}

void SvgPicture::addPolyline(const Points& points, const char* stroke) {
    body += "  <polyline points=\"" + formatPoints(points) + "\" fill=\"none\" stroke=\"" + stroke
            + "\" stroke-width=\"2\" />\n";
}

void SvgPicture::addPolygon(const Points& points, const char* fill) {
    body += "  <polygon points=\"" + formatPoints(points) + "\" fill=\"" + fill + "\" stroke=\"none\" />\n";
}

void SvgPicture::addText(double x, double y, const std::string& text, const char* anchor) {
    body += "  <text x=\"" + formatCoordinate(x) + "\" y=\"" + formatCoordinate(y)
            + "\" font-family=\"sans-serif\" font-size=\"12\" text-anchor=\"" + anchor + "\">" + text
            + "</text>\n";
}

void SvgChart::addHorizontalAxis(double low, double high) {
    addLine(Left, Bottom, Right, Bottom, "black");
    addText(Left, Bottom + 20, formatLabel(low), "start");
    addText(Right, Bottom + 20, formatLabel(high), "end");
}

void SvgChart::addVerticalAxis(double low, double high) {
    addLine(Left, Top, Left, Bottom, "black");
    addText(Left - 6, Bottom, formatLabel(low), "end");
    addText(Left - 6, Top + 10, formatLabel(high), "end");
}

void SvgChart::addTitle(const std::string& title) {
    addText(Width / 2.0, 24, title, "middle");
}

std::string SvgPicture::formatPoints(const Points& points) {
    std::string text;
    for (const auto& point : points) {
        if (!text.empty())
            text += ' ';
        text += formatCoordinate(point.first) + ',' + formatCoordinate(point.second);
    }
    return text;
}

bool SvgPicture::writeTo(const std::string& path) const {
    FILE* file = std::fopen(path.c_str(), "w");
    if (!file) {
        reportProblem("%s: %s", path.c_str(), std::strerror(errno));
        return false;
    }
    std::fprintf(file,
                 "<?xml version=\"1.0\"?>\n"
                 "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\">\n"
                 "  <rect x=\"0\" y=\"0\" width=\"%d\" height=\"%d\" fill=\"white\" />\n",
                 width, height, width, height, width, height);
    std::fputs(body.c_str(), file);
    std::fputs("</svg>\n", file);
    bool written = !std::ferror(file);
    if (std::fclose(file) != 0)
        written = false;
    if (!written)
        reportProblem("%s: %s", path.c_str(), std::strerror(errno ? errno : EIO));
    return written;
}

SvgScale::SvgScale(double low, double high, double from, double to) : low(low), from(from), factor(0.0) {
    // A flat range maps every value onto the middle of the axis.
    if (high > low)
        factor = (to - from) / (high - low);
    else
        this->from = (from + to) / 2;
}

double SvgScale::operator()(double value) const { return from + (value - low) * factor; }

}  // namespace talvo_tool
