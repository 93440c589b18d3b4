#include "outline.h"

namespace quorbin::io {

Outline outlineOf(const FullLevelSet2D& field, bool open, double tolerance) {
    Outline outline;
    if (open) {
        OpenContours found = openContours(field);
        outline = {std::move(found.regions), std::move(found.lines)};
    } else {
        outline.regions = contours(field);
    }
    outline.regions = simplified(std::move(outline.regions), tolerance);
    return outline;
}

}  // namespace quorbin::io
