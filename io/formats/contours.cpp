#include <algorithm>
#include <string>

#include <fmt/format.h>

#include "formats.h"
#include "outline.h"

namespace quorbin::io {

namespace {

std::string coordinates(const Ring& line, bool close) {
    std::string text = "[";
    for (const auto& p : line) text += fmt::format("[{},{}],", p.x, p.y);
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

void writeGeoJson(const PictureDocument& document, OutputFile& out) {
    const Outline outline = outlineOf(document);
    std::string separator;
    const auto add = [&](const std::string& text) {
        out.write(separator + text);
        separator = ",\n";
    };
    out.write("{\"type\":\"FeatureCollection\",\"features\":[\n");
    for (const Polygon& region : outline.regions) {
        if (region.outline.empty()) {  // holes of what the border cuts
            for (const Ring& hole : region.holes) add(feature("", "LineString", coordinates(hole, true)));
            continue;
        }
        std::string rings = "[" + coordinates(region.outline, true);
        for (const Ring& hole : region.holes) rings += "," + coordinates(hole, true);
        add(feature(fmt::format("\"area\":{}", area(region)), "Polygon", rings + "]"));
    }
    for (const Ring& line : outline.lines) add(feature("", "LineString", coordinates(line, false)));
    out.write("\n]}\n");
}

void writeCsv(const PictureDocument& document, OutputFile& out) {
    const Outline outline = outlineOf(document);
    // Open lines stand among the closed ones only where they were asked for.
    out.write(document.open ? "line,closed,x,y\n" : "polygon,x,y\n");
    int number = 0;
    const auto writeLine = [&](const Ring& line, const char* closed) {
        std::string text;
        for (const auto& p : line)
            text += fmt::format("{},{}{},{}\n", number, document.open ? closed : "", p.x, p.y);
        out.write(text);
        ++number;
    };
    forEachRing(outline, [&](const Ring& ring) { writeLine(ring, "1,"); });
    for (const Ring& line : outline.lines) writeLine(line, "0,");
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
