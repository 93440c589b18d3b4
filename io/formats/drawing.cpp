#include <cairo-pdf.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <memory>

#include "../failure.h"
#include "../format.h"
#include "../outline.h"
#include "drawing.h"

namespace quorbin::io {

namespace {

struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct DestroyContext {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;
using Context = std::unique_ptr<cairo_t, DestroyContext>;

/// Where cairo sends bytes. An exception must not cross it, so it waits here.
struct Stream {
    OutputFile& out;
    std::exception_ptr failure;
};

cairo_status_t sendBytes(void* closure, const unsigned char* bytes, unsigned int count) {
    auto& stream = *static_cast<Stream*>(closure);
    try {
        stream.out.write(bytes, count);
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        stream.failure = std::current_exception();
        return CAIRO_STATUS_WRITE_ERROR;
    }
}

void check(cairo_status_t status, const Stream& stream) {
    if (stream.failure) std::rethrow_exception(stream.failure);
    if (status != CAIRO_STATUS_SUCCESS)
        throw Failure(kFailed,
                      fmt::format("the picture could not be drawn: {}", cairo_status_to_string(status)));
}

std::uint32_t rgb(double r, double g, double b) {
    const auto byte = [](double v) {
        return static_cast<std::uint32_t>(std::lround(255 * std::clamp(v, 0.0, 1.0)));
    };
    return 0xff000000U | byte(r) << 16 | byte(g) << 8 | byte(b);
}

/// White at zero, blue inside, red outside; v from -1 to 1.
std::uint32_t diverging(double v) {
    const double a = std::sqrt(std::abs(v));
    return v <= 0 ? rgb(1 - 0.87 * a, 1 - 0.6 * a, 1 - 0.33 * a)
                  : rgb(1 - 0.3 * a, 1 - 0.91 * a, 1 - 0.83 * a);
}

/// The samples as pixels: a picture in greys, from its darkest to its brightest; a field in colours.
Surface makePixels(const PictureDocument& document) {
    const int width = document.field.getWidth(), height = document.field.getHeight();
    const std::ptrdiff_t stride = width;
    Surface pixels(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    if (cairo_surface_status(pixels.get()) != CAIRO_STATUS_SUCCESS)
        throw Failure(
            kFailed, fmt::format("a picture of {} × {} pixels is too large to draw; 32767 is the most", width,
                                 height));
    const double* values =
        document.picture != nullptr ? document.picture->samples.data() : document.field.data();
    const auto [low, high] = std::minmax_element(values, values + stride * height);
    const double lowest = *low, range = std::max(*high - *low, 1e-300);
    const double reach = std::max({std::abs(*low), std::abs(*high), 1e-300});
    unsigned char* data = cairo_image_surface_get_data(pixels.get());
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(data + std::ptrdiff_t{y} *
                                                                cairo_image_surface_get_stride(pixels.get()));
        for (int x = 0; x < width; ++x) {
            const double v = values[y * stride + x];
            const double grey = (v - lowest) / range;
            row[x] = document.picture != nullptr ? rgb(grey, grey, grey) : diverging(v / reach);
        }
    }
    cairo_surface_mark_dirty(pixels.get());
    return pixels;
}

/// Pixels of the drawing for each sample: small pictures are enlarged.
int enlargement(const FullLevelSet2D& field) {
    return std::clamp(512 / std::max(field.getWidth(), field.getHeight()), 1, 16);
}

void draw(cairo_t* to, const PictureDocument& document, int scale) {
    const Surface pixels = makePixels(document);
    cairo_scale(to, scale, scale);
    cairo_set_source_surface(to, pixels.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(to), CAIRO_FILTER_NEAREST);
    cairo_paint(to);

    const double size = std::max(document.field.getWidth(), document.field.getHeight());
    cairo_set_line_width(to, std::max(2.0 / scale, size / 400));
    cairo_set_line_join(to, CAIRO_LINE_JOIN_ROUND);
    if (document.picture != nullptr)
        cairo_set_source_rgb(to, 1.0, 0.35, 0.1);
    else
        cairo_set_source_rgb(to, 0.1, 0.1, 0.1);
    // Line by line: the time that cairo takes for a path grows faster than its length.
    const double hx = document.field.getXSpace(), hy = document.field.getYSpace();
    const auto stroke = [&](const Ring& line, bool close) {
        for (const auto& p : line) cairo_line_to(to, p.x / hx + 0.5, p.y / hy + 0.5);
        if (close) cairo_close_path(to);
        cairo_stroke(to);
    };
    outlineOf(document).visit(
        [&](Polygon&& region) { forEachRing(region, [&](const Ring& ring) { stroke(ring, true); }); },
        [&](Ring&& line) { stroke(line, false); });
}

}  // namespace

void drawPdf(const PictureDocument& document, OutputFile& out) {
    const int scale = enlargement(document.field);
    Stream stream{out, nullptr};
    const Surface page(cairo_pdf_surface_create_for_stream(
        sendBytes, &stream, document.field.getWidth() * scale, document.field.getHeight() * scale));
    {
        const Context context(cairo_create(page.get()));
        draw(context.get(), document, scale);
        check(cairo_status(context.get()), stream);
    }
    cairo_surface_finish(page.get());
    check(cairo_surface_status(page.get()), stream);
}

void drawPng(const PictureDocument& document, OutputFile& out) {
    const int scale = enlargement(document.field);
    const Surface picture(cairo_image_surface_create(CAIRO_FORMAT_RGB24, document.field.getWidth() * scale,
                                                     document.field.getHeight() * scale));
    Stream stream{out, nullptr};
    const Context context(cairo_create(picture.get()));
    draw(context.get(), document, scale);
    check(cairo_status(context.get()), stream);
    check(cairo_surface_write_to_png_stream(picture.get(), sendBytes, &stream), stream);
}

void requireDrawing(const std::string&) {}

}  // namespace quorbin::io
