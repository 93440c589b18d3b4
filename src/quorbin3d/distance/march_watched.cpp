#include <climits>

#include "quorbin3d/distance/march_dense.h"

using namespace lset::detail;

bool quorbin::ensureSignedDistanceFMM(FullLevelSet3D& field, const Progress& progress) {
    if (field.size() == 0 || field.size() > INT_MAX) return true;
    if (progress) return isDoneToTheEnd([&] { field.march(Watch(progress, field.size())); });
    field.ensureSignedDistanceFMM();
    return true;
}
