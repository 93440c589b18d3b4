#pragma once

/// Everything for level sets in three dimensions, from grids to meshes.

#include "quorbin_version.h"

#include "quorbin3d/level_set_3d.h"

#include "quorbin2d/full_level_set_2d.h"
#include "quorbin3d/full_level_set_3d.h"

#include "quorbin3d/fast_level_set_3d.h"

#include "quorbin3d/eikonal.h"

#include "quorbin3d/marching_cubes.h"
#include "quorbin3d/mesh.h"
