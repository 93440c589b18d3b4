#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include <quorbin.h>

#include "image.h"

namespace quorbin::io {

/// What a picture's output shows.
enum class Drawing {
    kContour,  ///< the outline over the picture, or over the field in colours where there is none
    kPicture,  ///< the picture alone
    kMask,     ///< white inside, black outside
};

/// What a command has to write of a picture.
struct PictureDocument {
    const FullLevelSet2D& field;
    const Image* picture = nullptr;  ///< drawn under the contour, where there is one
    bool open = false;               ///< leaves outlines open at the border
    Drawing drawing = Drawing::kContour;
    double tolerance = 0;                ///< of outlines that are written with fewer points, in world units
    bool isFloat = false;                ///< numbers as float32
    brin::Vec2<double> origin = {0, 0};  ///< of lists of points, in world units: where index 0, 0 lies
    const std::vector<double>* labels = nullptr;  ///< of all samples, where the field is that of one of them
};

using TakeRegion = std::function<void(Polygon&&)>;
using TakeLine = std::function<void(Ring&&)>;

/// What a command has to write of an outline alone, in world units, for which no field is held.
struct OutlineDocument {
    int width, height;  ///< of the picture, in samples
    double xSpace, ySpace;
    bool open;  ///< at the border of the picture
    /// Hands on all regions in order, then lines that end at the border.
    std::function<void(const TakeRegion&, const TakeLine&)> visit;
    brin::Vec2<double> origin = {0, 0};  ///< of lists of points: where index 0, 0 lies
};

/// What a command has to write of a volume.
struct VolumeDocument {
    const FullLevelSet3D& field;
    const Placement& placement;
    bool isMask = false;   ///< inside and outside alone
    bool isFloat = false;  ///< numbers as float32
};

using TakePlane = std::function<void(int index, const OutlineDocument& outline)>;

/// The outlines of planes of a volume, in units of its spacing.
struct StackDocument {
    std::size_t axis;  ///< across which the planes lie: 0, 1, 2
    std::array<double, 3> spacing;
    std::optional<Affine> affine;  ///< from index to world, where the file has one
    bool isPlaced = false;         ///< points are written where the matrix puts them
    bool open = false;             ///< lines that end at the border are among them
    /// Hands on the outline of each plane by its index, in order; some may be empty.
    std::function<void(const TakePlane&)> visit = {};
};

/// A mesh, in the units in which it is written.
using MeshDocument = quorbin::Mesh;

/// The number of points of a grid.
inline std::size_t pointsOf(const FullLevelSet2D& field) {
    return static_cast<std::size_t>(field.getWidth()) * static_cast<std::size_t>(field.getHeight());
}
inline std::size_t pointsOf(const FullLevelSet3D& field) {
    return static_cast<std::size_t>(field.getWidth()) * static_cast<std::size_t>(field.getHeight()) *
           static_cast<std::size_t>(field.getDepth());
}

}  // namespace quorbin::io
