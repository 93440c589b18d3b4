#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include <fmt/format.h>

#include "formats.h"
#include "outline.h"

namespace quorbin::io {

namespace {

using Point = brin::Vec2<double>;
using Line = std::vector<Point>;

Line scaled(const Contour& contour, const std::vector<int>& indices, double hx, double hy) {
    Line line;
    line.reserve(indices.size());
    for (const int i : indices) {
        const Point p = contour.points[static_cast<std::size_t>(i)];
        line.emplace_back(p.x * hx, p.y * hy);
    }
    return line;
}

/// A closed ring and what lies in it.
struct Ring {
    Line line;
    double area;
    Point low, high;
    std::vector<std::size_t> holes;
};

Ring makeRing(Line line, double area) {
    Ring ring{std::move(line), area, {}, {}, {}};
    ring.low = ring.high = ring.line.front();
    for (const Point& p : ring.line) {
        ring.low = {std::min(ring.low.x, p.x), std::min(ring.low.y, p.y)};
        ring.high = {std::max(ring.high.x, p.x), std::max(ring.high.y, p.y)};
    }
    return ring;
}

enum class Place { kInside, kOutside, kOnLine };

Place placeOf(const Point& p, const Line& ring) {
    bool isInside = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const Point &a = ring[j], &b = ring[i];
        const double side = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
        const bool between = std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
                             std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
        if (side == 0 && between) return Place::kOnLine;
        if ((a.y > p.y) != (b.y > p.y) && (side > 0) == (b.y > a.y)) isInside = !isInside;
    }
    return isInside ? Place::kInside : Place::kOutside;
}

/// Rings touch only where samples are exactly zero, so hardly ever more than the first point is looked at.
bool encloses(const Ring& outer, const Ring& hole) {
    if (hole.low.x < outer.low.x || hole.low.y < outer.low.y || hole.high.x > outer.high.x ||
        hole.high.y > outer.high.y)
        return false;
    for (std::size_t i = 0; i < hole.line.size(); ++i) {
        const Point& p = hole.line[i];
        Place place = placeOf(p, outer.line);
        if (place == Place::kOnLine)
            place = placeOf(0.5 * (p + hole.line[(i + 1) % hole.line.size()]), outer.line);
        if (place != Place::kOnLine) return place == Place::kInside;
    }
    return false;
}

/// Gives each hole to the smallest outline around it. Returns the holes without one.
std::vector<std::size_t> nest(std::vector<Ring>& outlines, const std::vector<Ring>& holes) {
    std::sort(outlines.begin(), outlines.end(), [](const Ring& a, const Ring& b) { return a.area < b.area; });
    std::vector<std::size_t> alone;
    for (std::size_t h = 0; h < holes.size(); ++h) {
        const auto outer = std::find_if(outlines.begin(), outlines.end(),
                                        [&](const Ring& o) { return encloses(o, holes[h]); });
        if (outer != outlines.end())
            outer->holes.push_back(h);
        else
            alone.push_back(h);
    }
    return alone;
}

std::string coordinates(const Line& line, bool close) {
    std::string text = "[";
    for (const Point& p : line) text += fmt::format("[{},{}],", p.x, p.y);
    if (close) text += fmt::format("[{},{}],", line.front().x, line.front().y);
    text.back() = ']';
    return text;
}

std::string feature(const std::string& properties, const char* geometry, const std::string& shape) {
    return fmt::format(
        R"({{"type":"Feature","properties":{{{}}},"geometry":{{"type":"{}","coordinates":{}}}}})", properties,
        geometry, shape);
}

void writeSvg(const PictureDocument& document, OutputFile& out) {
    const Contour contour = outlineOf(document.field, document.open);
    const int width = document.field.getWidth(), height = document.field.getHeight();
    out.write(fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\">\n"
        "<path fill=\"{2}\" fill-opacity=\"0.2\" fill-rule=\"evenodd\" stroke=\"#d62828\" "
        "stroke-width=\"{3}\" "
        "stroke-linejoin=\"round\" d=\"",
        width, height, document.open ? "none" : "#d62828", std::max(1.0, std::max(width, height) / 400.0)));
    const auto writeLine = [&](const std::vector<int>& indices, const char* end) {
        std::string text;
        for (const int i : indices) {
            const Point p = contour.points[static_cast<std::size_t>(i)];
            // Samples lie at the centres of pixels.
            text += fmt::format("{}{} {}", text.empty() ? 'M' : 'L', p.x + 0.5, p.y + 0.5);
        }
        out.write(text + end);
    };
    for (const auto& polygon : contour.polygons) writeLine(polygon, "Z\n");
    for (const auto& line : contour.openLines) writeLine(line, "\n");
    out.write("\"/>\n</svg>\n");
}

void writeGeoJson(const PictureDocument& document, OutputFile& out) {
    const Contour contour = outlineOf(document.field, document.open);
    const double hx = document.field.getXSpace(), hy = document.field.getYSpace();
    std::vector<Ring> outlines, holes;
    for (const auto& polygon : contour.polygons) {
        Line line = scaled(contour, polygon, hx, hy);
        const double enclosed = quorbin::area(contour.points, polygon, hx, hy);
        (enclosed > 0 ? outlines : holes).push_back(makeRing(std::move(line), enclosed));
    }
    const std::vector<std::size_t> alone = nest(outlines, holes);

    std::string separator;
    const auto add = [&](const std::string& text) {
        out.write(separator + text);
        separator = ",\n";
    };
    out.write("{\"type\":\"FeatureCollection\",\"features\":[\n");
    for (const Ring& outline : outlines) {
        double enclosed = outline.area;
        std::string rings = "[" + coordinates(outline.line, true);
        for (const std::size_t h : outline.holes) {
            enclosed += holes[h].area;
            rings += "," + coordinates(holes[h].line, true);
        }
        add(feature(fmt::format("\"area\":{}", enclosed), "Polygon", rings + "]"));
    }
    for (const std::size_t h : alone) add(feature("", "LineString", coordinates(holes[h].line, true)));
    for (const auto& indices : contour.openLines) {
        const Line line = scaled(contour, indices, hx, hy);
        add(feature("", "LineString", coordinates(line, false)));
    }
    out.write("\n]}\n");
}

void writeCsv(const PictureDocument& document, OutputFile& out) {
    const Contour contour = outlineOf(document.field, document.open);
    const double hx = document.field.getXSpace(), hy = document.field.getYSpace();
    // Open lines stand among the closed ones only where they were asked for.
    out.write(document.open ? "line,closed,x,y\n" : "polygon,x,y\n");
    int number = 0;
    for (const auto* lines : {&contour.polygons, &contour.openLines})
        for (const auto& line : *lines) {
            std::string text;
            for (const int i : line) {
                const Point p = contour.points[static_cast<std::size_t>(i)];
                const char* closed = !document.open ? "" : lines == &contour.polygons ? "1," : "0,";
                text += fmt::format("{},{}{},{}\n", number, closed, p.x * hx, p.y * hy);
            }
            out.write(text);
            ++number;
        }
}

}  // namespace

Format svgFormat() {
    Format format{"SVG", "svg"};
    format.writePicture = writeSvg;
    return format;
}

Format geoJsonFormat() {
    Format format{"GeoJSON", "geojson json"};
    format.writePicture = writeGeoJson;
    return format;
}

Format csvFormat() {
    Format format{"CSV", "csv"};
    format.writePicture = writeCsv;
    return format;
}

}  // namespace quorbin::io
