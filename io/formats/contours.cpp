#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "../outline.h"
#include "../plane.h"
#include "formats.h"

namespace quorbin::io {

namespace {

using Point = brin::Vec2<double>;

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

/// How an outline is listed: alone, or as one of a stack, where its points may have three coordinates.
struct Manner {
    std::string properties;  ///< that every feature has, or columns: empty, or with a comma at its end
    std::function<void(TextOut&, const Point&)> addPoint;  ///< its coordinates, with a comma between them
};

/// Outlines as GeoJSON.
class Features {
 public:
    explicit Features(OutputFile& out) : text_(out) {
        text_.add("{{\"type\":\"FeatureCollection\",\"features\":[\n");
    }

    void add(const Manner& manner, const Polygon& region) {
        if (region.outline.empty()) {  // holes of what the border cuts
            for (const Ring& hole : region.holes) addLine(manner, hole, true);
            return;
        }
        begin(fmt::format("{}\"area\":{}", manner.properties, area(region)), "Polygon");
        char before = '[';
        forEachRing(region, [&](const Ring& ring) {
            text_.add("{}", before);
            addCoordinates(manner, ring, true);
            before = ',';
        });
        text_.add("]}}}}");
    }

    void addLine(const Manner& manner, const Ring& line, bool close = false) {
        std::string_view properties = manner.properties;
        if (!properties.empty()) properties.remove_suffix(1);
        begin(properties, "LineString");
        addCoordinates(manner, line, close);
        text_.add("}}}}");
    }

    void end() {
        text_.add("\n]}}\n");
        text_.flush();
    }

 private:
    void begin(std::string_view properties, const char* geometry) {
        text_.add(R"({}{{"type":"Feature","properties":{{{}}},"geometry":{{"type":"{}","coordinates":)",
                  separator_, properties, geometry);
        separator_ = ",\n";
    }
    void addCoordinates(const Manner& manner, const Ring& line, bool close) {
        const char* before = "[[";
        const auto add = [&](const Point& p) {
            text_.add("{}", before);
            manner.addPoint(text_, p);
            before = "],[";
        };
        for (const Point& p : line) add(p);
        if (close) add(line.front());
        text_.add("]]");
    }

    TextOut text_;
    const char* separator_ = "";
};

/// Outlines as CSV: their points, with the lines numbered through all of them.
class Table {
 public:
    /// Open lines stand among the closed ones only where they were asked for.
    Table(OutputFile& out, const std::string& columns, const std::string& axes, bool open)
        : text_(out), open_(open) {
        text_.add("{}{}{}\n", columns, open ? "line,closed," : "polygon,", axes);
    }

    void add(const Manner& manner, const Polygon& region) {
        forEachRing(region, [&](const Ring& ring) { addPoints(manner, ring, "1,"); });
    }
    void addLine(const Manner& manner, const Ring& line) { addPoints(manner, line, "0,"); }

    void end() { text_.flush(); }

 private:
    void addPoints(const Manner& manner, const Ring& line, const char* closed) {
        for (const Point& p : line) {
            text_.add("{}{},{}", manner.properties, number_, open_ ? closed : "");
            manner.addPoint(text_, p);
            text_.add("\n");
        }
        ++number_;
    }

    TextOut text_;
    bool open_;
    int number_ = 0;
};

/// Adds all of an outline to Features or a Table.
template <class List>
void addOutline(List& list, const Manner& manner, const OutlineDocument& outline) {
    outline.visit([&](Polygon&& region) { list.add(manner, region); },
                  [&](Ring&& line) { list.addLine(manner, line); });
}

template <class List>
void addAlone(List& list, const OutlineDocument& outline) {
    addOutline(
        list,
        {"", [origin = outline.origin](
                 TextOut& text, const Point& p) { text.add("{},{}", p.x + origin.x, p.y + origin.y); }},
        outline);
    list.end();
}

/// Adds the planes of a stack. Their properties are made by text(index, position along the axis, place of
/// the first sample in the world).
template <class List, class TextOf>
void addStack(List& list, const StackDocument& stack, TextOf textOf) {
    const auto [u, v] = axesOfPlane(stack.axis);
    stack.visit([&, u = u, v = v](int index, const OutlineDocument& outline) {
        const auto place = [&](const Point& p) {
            std::array<double, 3> at{}, world{};
            at[stack.axis] = index;
            at[u] = p.x / stack.spacing[u];
            at[v] = p.y / stack.spacing[v];
            for (std::size_t row = 0; row < 3; ++row) {
                const auto& a = (*stack.affine)[row];
                world[row] = a[0] * at[0] + a[1] * at[1] + a[2] * at[2] + a[3];
            }
            return world;
        };
        Manner manner{textOf(index, index * stack.spacing[stack.axis], place),
                      [](TextOut& text, const Point& p) { text.add("{},{}", p.x, p.y); }};
        if (stack.isPlaced)
            manner.addPoint = [&](TextOut& text, const Point& p) {
                const auto [x, y, z] = place(p);
                text.add("{},{},{}", x, y, z);
            };
        addOutline(list, manner, outline);
    });
    list.end();
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
        for (const Point& p : line) {
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
    Features features(out);
    addAlone(features, outline);
}

void writeCsv(const OutlineDocument& outline, OutputFile& out) {
    Table table(out, "", "x,y", outline.open);
    addAlone(table, outline);
}

void writeGeoJsonStack(const StackDocument& stack, OutputFile& out) {
    Features features(out);
    addStack(features, stack, [&](int index, double position, const auto& place) {
        std::string text =
            fmt::format(R"("axis":"{}","slice":{},"position":{},)", "xyz"[stack.axis], index, position);
        if (stack.affine) {
            const auto [x, y, z] = place({0, 0});
            text += fmt::format(R"("origin":[{},{},{}],)", x, y, z);
        }
        return text;
    });
}

void writeCsvStack(const StackDocument& stack, OutputFile& out) {
    const auto [u, v] = axesOfPlane(stack.axis);
    const std::string axes = stack.isPlaced ? "x,y,z" : fmt::format("{},{}", "xyz"[u], "xyz"[v]);
    Table table(out, "slice,position,", axes, stack.open);
    addStack(table, stack,
             [](int index, double position, const auto&) { return fmt::format("{},{},", index, position); });
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

Format geoJsonFormat() {
    Format format = outlineFormat<writeGeoJson>("GeoJSON", "geojson json");
    format.writeStack = writeGeoJsonStack;
    return format;
}

Format csvFormat() {
    Format format = outlineFormat<writeCsv>("CSV", "csv");
    format.writeStack = writeCsvStack;
    return format;
}

}  // namespace quorbin::io
