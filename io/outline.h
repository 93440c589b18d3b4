#pragma once

#include "documents.h"

namespace quorbin::io {

/// The zero contour of a field: closed along the border of the picture, or open there; with fewer points
/// where a tolerance is given, for which all of it is held. Progress is told of the rows.
OutlineDocument outlineOf(FieldRows rows, bool open, double tolerance = 0, Progress progress = {});

/// The same of what a picture is written as, which must outlive it.
OutlineDocument outlineOf(const PictureDocument& document);

/// Visits the rings of a region, the outline before its holes.
template <class Visit>
void forEachRing(const Polygon& region, Visit visit) {
    if (!region.outline.empty()) visit(region.outline);
    for (const Ring& hole : region.holes) visit(hole);
}

}  // namespace quorbin::io
