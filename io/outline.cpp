#include "outline.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quorbin::io {

namespace {

void visitContours(const FieldRows& rows, bool open, const Progress& progress, const TakeRegion& takeRegion,
                   const TakeLine& takeLine) {
    if (open)
        openContours(rows, takeRegion, takeLine, progress);
    else
        contours(rows, takeRegion, progress);
}

/// The first (0) or the second (1) half of a progress.
Progress halfOf(const Progress& progress, int half) {
    if (!progress) return {};
    return [&progress, half](int done, int all) { return progress(half * all + done, 2 * all); };
}

/// Hands on rows of an array.
auto rowsIn(const double* values, std::ptrdiff_t width) {
    return [values, width](int y, double* row) { std::copy_n(values + y * width, width, row); };
}

}  // namespace

OutlineDocument outlineOf(FieldRows rows, bool open, double tolerance, Progress progress) {
    OutlineDocument document{rows.width, rows.height, rows.xSpace, rows.ySpace, open, {}, {}};
    document.visit = [rows = std::move(rows), open, tolerance, progress = std::move(progress)](
                         const TakeRegion& takeRegion, const TakeLine& takeLine) {
        if (tolerance == 0) return visitContours(rows, open, progress, takeRegion, takeLine);
        std::vector<Polygon> regions;
        std::vector<Ring> lines;
        visitContours(
            rows, open, halfOf(progress, 0), [&](Polygon&& region) { regions.push_back(std::move(region)); },
            [&](Ring&& line) { lines.push_back(std::move(line)); });
        auto simpler = simplified(std::move(regions), tolerance, halfOf(progress, 1));
        if (!simpler) return;
        for (Polygon& region : *simpler) takeRegion(std::move(region));
        for (Ring& line : lines) takeLine(std::move(line));
    };
    return document;
}

OutlineDocument outlineOf(const PictureDocument& document) {
    const FullLevelSet2D& field = document.field;
    FieldRows rows{field.getWidth(), field.getHeight(), field.getXSpace(), field.getYSpace(),
                   rowsIn(field.data(), field.getWidth())};
    if (document.labels != nullptr) rows.readLabels = rowsIn(document.labels->data(), rows.width);
    OutlineDocument outline = outlineOf(std::move(rows), document.open, document.tolerance);
    outline.origin = document.origin;
    return outline;
}

}  // namespace quorbin::io
