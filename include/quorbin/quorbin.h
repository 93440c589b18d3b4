#pragma once

/// The whole library, with all its names in one namespace: quorbin::FullLevelSet2D is ::FullLevelSet2D.

#include "brin/image.h"
#include "brin/matrix.h"
#include "brin/sparse_matrix.h"
#include "brin/vec.h"
#include "compare.h"
#include "curvature_flow.h"
#include "evolve.h"
#include "flow.h"
#include "hash.h"
#include "heap.h"
#include "measure.h"
#include "offset.h"
#include "pieces.h"
#include "progress.h"
#include "quorbin2d.h"
#include "quorbin3d.h"
#include "reinitialize.h"
#include "sample.h"
#include "sets.h"
#include "smooth_mask.h"

namespace quorbin {

using brin::cross;
using brin::dot;
using brin::Image;
using brin::Matrix;
using brin::SparseMatrix;
using brin::Vec2;
using brin::Vec3;

using ::GrowArray;
using ::Point3And;
using ::Point3Hash;
using ::PointAnd;
using ::PointHash;
using lset::Heap;
using lset::HeapNode;

using ::FastLevelSet2D;
using ::FastLevelSet3D;
using ::FullLevelSet2D;
using ::FullLevelSet3D;
using ::LevelSet2D;
using ::LevelSet3D;

using ::estimateDistanceHelper;
using ::quadraticFMM;
using ::quadraticFMM_2;

using ::addBorderEdges;
using ::distToSeg;
using ::getPolygons;
using ::getUniquePoints;
using ::gpoint3;
using ::hash_pair;
using ::MarchingSquares;
using ::MyEqual;
using ::vec2d_hash;
#ifndef DOXYGEN  // which takes it for a namespace that is its own alias
namespace MarchingCubes = ::MarchingCubes;
#endif

}  // namespace quorbin
