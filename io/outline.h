#pragma once

#include <vector>

#include <quorbin.h>

namespace quorbin::io {

/// The zero contour of a field in world units.
struct Outline {
    std::vector<Polygon> regions;
    std::vector<Ring> lines;  ///< that end at the border of the picture, where they are left open
};

struct PictureDocument;

/// That of a document: closed along the border of the picture, or open there; with fewer points where a
/// tolerance is given.
Outline outlineOf(const PictureDocument& document);

/// Visits the rings of all regions, each outline before its holes.
template <class Visit>
void forEachRing(const Outline& outline, Visit visit) {
    for (const Polygon& region : outline.regions) {
        if (!region.outline.empty()) visit(region.outline);
        for (const Ring& hole : region.holes) visit(hole);
    }
}

}  // namespace quorbin::io
