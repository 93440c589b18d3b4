#pragma once

#include <array>
#include <map>
#include <optional>
#include <vector>

#include <quorbin.h>

#include "image.h"
#include "outline.h"

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

/// What a command has to write of a volume.
struct VolumeDocument {
    const FullLevelSet3D& field;
    const Placement& placement;
    bool isMask = false;   ///< inside and outside alone
    bool isFloat = false;  ///< numbers as float32
};

/// The outlines of planes of a volume, in units of its spacing.
struct StackDocument {
    std::size_t axis;  ///< across which the planes lie: 0, 1, 2
    std::array<double, 3> spacing;
    std::optional<Affine> affine;   ///< from index to world, where the file has one
    bool isPlaced = false;          ///< points are written where the matrix puts them
    bool open = false;              ///< lines that end at the border are among them
    std::map<int, Outline> planes;  ///< by their index; empty ones are left out
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
