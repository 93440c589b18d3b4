#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include <fmt/format.h>

#include "../outline.h"
#include "../plane.h"
#include "formats.h"

namespace quorbin::io {

namespace {

using Point = brin::Vec2<double>;

/// An outline on its way out: alone, or as one of a stack, where its points may have three coordinates.
struct Written {
    const Outline& outline;
    std::string properties;  ///< that every feature has, or columns: empty, or with a comma at its end
    std::function<std::string(const Point&)> coordinates;  ///< with a comma between them
};

std::string ring(const Written& what, const Ring& line, bool close) {
    std::string text = "[";
    for (const Point& p : line) text += fmt::format("[{}],", what.coordinates(p));
    if (close) text += fmt::format("[{}],", what.coordinates(line.front()));
    text.back() = ']';
    return text;
}

std::string feature(std::string properties, const char* geometry, const std::string& shape) {
    if (!properties.empty() && properties.back() == ',') properties.pop_back();
    return fmt::format(
        R"({{"type":"Feature","properties":{{{}}},"geometry":{{"type":"{}","coordinates":{}}}}})", properties,
        geometry, shape);
}

/// What stands around the features, and between them.
class Features {
 public:
    explicit Features(OutputFile& out) : out_(out) {
        out_.write("{\"type\":\"FeatureCollection\",\"features\":[\n");
    }

    void add(const Written& what) {
        for (const Polygon& region : what.outline.regions) {
            if (region.outline.empty()) {  // holes of what the border cuts
                for (const Ring& hole : region.holes)
                    add(feature(what.properties, "LineString", ring(what, hole, true)));
                continue;
            }
            std::string rings = "[" + ring(what, region.outline, true);
            for (const Ring& hole : region.holes) rings += "," + ring(what, hole, true);
            add(feature(fmt::format("{}\"area\":{}", what.properties, area(region)), "Polygon", rings + "]"));
        }
        for (const Ring& line : what.outline.lines)
            add(feature(what.properties, "LineString", ring(what, line, false)));
    }

    void end() { out_.write("\n]}\n"); }

 private:
    void add(const std::string& text) {
        out_.write(separator_ + text);
        separator_ = ",\n";
    }

    OutputFile& out_;
    std::string separator_;
};

/// Lines of points, numbered through all outlines.
class Table {
 public:
    /// Open lines stand among the closed ones only where they were asked for.
    Table(OutputFile& out, const std::string& columns, const std::string& axes, bool open)
        : out_(out), open_(open) {
        out_.write(columns + (open ? "line,closed," : "polygon,") + axes + "\n");
    }

    void add(const Written& what) {
        forEachRing(what.outline, [&](const Ring& line) { add(what, line, "1,"); });
        for (const Ring& line : what.outline.lines) add(what, line, "0,");
    }

 private:
    void add(const Written& what, const Ring& line, const char* closed) {
        std::string text;
        for (const Point& p : line)
            text += fmt::format("{}{},{}{}\n", what.properties, number_, open_ ? closed : "",
                                what.coordinates(p));
        out_.write(text);
        ++number_;
    }

    OutputFile& out_;
    bool open_;
    int number_ = 0;
};

void writeSvg(const PictureDocument& document, OutputFile& out) {
    const Outline outline = outlineOf(document);
    const double hx = document.field.getXSpace(), hy = document.field.getYSpace();
    const double width = document.field.getWidth() * hx, height = document.field.getHeight() * hy;
    const double thickness = std::max(std::min(hx, hy), std::max(width, height) / 400);
    out.write(fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\">\n"
        "<path fill=\"{2}\" fill-opacity=\"0.2\" fill-rule=\"evenodd\" stroke=\"#d62828\" "
        "stroke-width=\"{3}\" "
        "stroke-linejoin=\"round\" d=\"",
        width, height, document.open ? "none" : "#d62828", thickness));
    const auto writeLine = [&](const Ring& line, const char* end) {
        std::string text;
        // Samples lie at the centres of pixels.
        for (const auto& p : line)
            text += fmt::format("{}{} {}", text.empty() ? 'M' : 'L', p.x + 0.5 * hx, p.y + 0.5 * hy);
        out.write(text + end);
    };
    forEachRing(outline, [&](const Ring& ring) { writeLine(ring, "Z\n"); });
    for (const Ring& line : outline.lines) writeLine(line, "\n");
    out.write("\"/>\n</svg>\n");
}

Written alone(const Outline& outline, const PictureDocument& document) {
    return {outline, "", [origin = document.origin](const Point& p) {
                return fmt::format("{},{}", p.x + origin.x, p.y + origin.y);
            }};
}

void writeGeoJson(const PictureDocument& document, OutputFile& out) {
    const Outline outline = outlineOf(document);
    Features features(out);
    features.add(alone(outline, document));
    features.end();
}

void writeCsv(const PictureDocument& document, OutputFile& out) {
    const Outline outline = outlineOf(document);
    Table(out, "", "x,y", document.open).add(alone(outline, document));
}

/// A plane among others: its properties are made by text(index, position along the axis, place of its first
/// sample in the world, if there is one).
template <class TextOf>
Written inStack(const StackDocument& stack, int index, const Outline& outline, TextOf textOf) {
    const auto [u, v] = axesOfPlane(stack.axis);
    const auto place = [&stack, u = u, v = v, index](const Point& p) {
        std::array<double, 3> at{};
        at[stack.axis] = index;
        at[u] = p.x / stack.spacing[u];
        at[v] = p.y / stack.spacing[v];
        const auto world = [&](std::size_t row) {
            const auto& a = (*stack.affine)[row];
            return a[0] * at[0] + a[1] * at[1] + a[2] * at[2] + a[3];
        };
        return fmt::format("{},{},{}", world(0), world(1), world(2));
    };
    Written what{outline, textOf(index, index * stack.spacing[stack.axis], stack.affine ? place({0, 0}) : ""),
                 place};
    if (!stack.isPlaced) what.coordinates = [](const Point& p) { return fmt::format("{},{}", p.x, p.y); };
    return what;
}

void writeGeoJsonStack(const StackDocument& stack, OutputFile& out) {
    const auto properties = [&](int index, double position, const std::string& origin) {
        return fmt::format(R"("axis":"{}","slice":{},"position":{},{})", "xyz"[stack.axis], index, position,
                           origin.empty() ? "" : fmt::format(R"("origin":[{}],)", origin));
    };
    Features features(out);
    for (const auto& [index, outline] : stack.planes)
        features.add(inStack(stack, index, outline, properties));
    features.end();
}

void writeCsvStack(const StackDocument& stack, OutputFile& out) {
    const auto [u, v] = axesOfPlane(stack.axis);
    const std::string axes = stack.isPlaced ? "x,y,z" : fmt::format("{},{}", "xyz"[u], "xyz"[v]);
    Table table(out, "slice,position,", axes, stack.open);
    for (const auto& [index, outline] : stack.planes)
        table.add(inStack(stack, index, outline, [](int i, double position, const std::string&) {
            return fmt::format("{},{},", i, position);
        }));
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
    format.writeStack = writeGeoJsonStack;
    return format;
}

Format csvFormat() {
    Format format{"CSV", "csv"};
    format.writePicture = writeCsv;
    format.writeStack = writeCsvStack;
    return format;
}

}  // namespace quorbin::io
