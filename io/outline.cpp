#include "outline.h"

#include <utility>

#include "documents.h"

namespace quorbin::io {

Outline outlineOf(const PictureDocument& document) {
    const FullLevelSet2D& field = document.field;
    Outline outline;
    if (document.open) {
        OpenContours found =
            document.labels != nullptr ? openContours(field, *document.labels) : openContours(field);
        outline = {std::move(found.regions), std::move(found.lines)};
    } else {
        outline.regions = document.labels != nullptr ? contours(field, *document.labels) : contours(field);
    }
    outline.regions = simplified(std::move(outline.regions), document.tolerance);
    return outline;
}

}  // namespace quorbin::io
