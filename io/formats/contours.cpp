#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "formats.h"
#include "outline.h"

namespace quorbin::io {

namespace {

/// Text on its way to a file, of any length.
class TextOut {
 public:
    explicit TextOut(OutputFile& out) : out_(out) {}

    template <class... Args>
    void add(fmt::format_string<Args...> format, Args&&... args) {
        fmt::format_to(std::back_inserter(text_), format, std::forward<Args>(args)...);
        constexpr std::size_t kBlock = 1 << 16;
        if (text_.size() >= kBlock) flush();
    }
    void flush() {
        out_.write(text_.data(), text_.size());
        text_.clear();
    }

 private:
    OutputFile& out_;
    fmt::memory_buffer text_;
};

void addCoordinates(TextOut& text, const Ring& line, bool close) {
    char before = '[';
    const auto add = [&](const brin::Vec2<double>& p) {
        text.add("{}[{},{}]", before, p.x, p.y);
        before = ',';
    };
    for (const auto& p : line) add(p);
    if (close) add(line.front());
    text.add("]");
}

void writeSvg(const OutlineDocument& outline, OutputFile& out) {
    const double hx = outline.xSpace, hy = outline.ySpace;
    const double width = outline.width * hx, height = outline.height * hy;
    const double thickness = std::max(std::min(hx, hy), std::max(width, height) / 400);
    TextOut text(out);
    text.add(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\">\n"
        "<path fill=\"{2}\" fill-opacity=\"0.2\" fill-rule=\"evenodd\" stroke=\"#d62828\" "
        "stroke-width=\"{3}\" "
        "stroke-linejoin=\"round\" d=\"",
        width, height, outline.open ? "none" : "#d62828", thickness);
    const auto addLine = [&](const Ring& line, const char* end) {
        char command = 'M';
        // Samples lie at the centres of pixels.
        for (const auto& p : line) {
            text.add("{}{} {}", command, p.x + 0.5 * hx, p.y + 0.5 * hy);
            command = 'L';
        }
        text.add("{}\n", end);
    };
    outline.visit(
        [&](Polygon&& region) { forEachRing(region, [&](const Ring& ring) { addLine(ring, "Z"); }); },
        [&](Ring&& line) { addLine(line, ""); });
    text.add("\"/>\n</svg>\n");
    text.flush();
}

void writeGeoJson(const OutlineDocument& outline, OutputFile& out) {
    TextOut text(out);
    const char* separator = "";
    const auto begin = [&](const char* geometry) {
        text.add(R"("geometry":{{"type":"{}","coordinates":)", geometry);
    };
    const auto addLine = [&](const Ring& line, bool close) {
        text.add(R"({}{{"type":"Feature","properties":{{}},)", separator);
        begin("LineString");
        addCoordinates(text, line, close);
        text.add("}}}}");
        separator = ",\n";
    };
    text.add("{{\"type\":\"FeatureCollection\",\"features\":[\n");
    outline.visit(
        [&](Polygon&& region) {
            if (region.outline.empty()) {  // holes of what the border cuts
                for (const Ring& hole : region.holes) addLine(hole, true);
                return;
            }
            text.add(R"({}{{"type":"Feature","properties":{{"area":{}}},)", separator, area(region));
            begin("Polygon");
            char before = '[';
            forEachRing(region, [&](const Ring& ring) {
                text.add("{}", before);
                addCoordinates(text, ring, true);
                before = ',';
            });
            text.add("]}}}}");
            separator = ",\n";
        },
        [&](Ring&& line) { addLine(line, false); });
    text.add("\n]}}\n");
    text.flush();
}

void writeCsv(const OutlineDocument& outline, OutputFile& out) {
    TextOut text(out);
    // Open lines stand among the closed ones only where they were asked for.
    text.add("{}", outline.open ? "line,closed,x,y\n" : "polygon,x,y\n");
    int number = 0;
    const auto addLine = [&](const Ring& line, const char* closed) {
        for (const auto& p : line) text.add("{},{}{},{}\n", number, outline.open ? closed : "", p.x, p.y);
        ++number;
    };
    outline.visit(
        [&](Polygon&& region) { forEachRing(region, [&](const Ring& ring) { addLine(ring, "1,"); }); },
        [&](Ring&& line) { addLine(line, "0,"); });
    text.flush();
}

template <void (*write)(const OutlineDocument&, OutputFile&)>
Format outlineFormat(const char* name, const char* endings) {
    Format format{name, endings};
    format.writeOutline = write;
    format.writePicture = [](const PictureDocument& document, OutputFile& out) {
        write(outlineOf(document), out);
    };
    return format;
}

}  // namespace

Format svgFormat() { return outlineFormat<writeSvg>("SVG", "svg"); }
Format geoJsonFormat() { return outlineFormat<writeGeoJson>("GeoJSON", "geojson json"); }
Format csvFormat() { return outlineFormat<writeCsv>("CSV", "csv"); }

}  // namespace quorbin::io
