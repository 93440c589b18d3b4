#include <climits>

#include "quorbin2d/distance/march_dense.h"

using namespace lset::detail;

bool quorbin::ensureSignedDistanceFMM(FullLevelSet2D& field, const Progress& progress) {
    if (field.size() > INT_MAX) return true;
    if (progress) return isDoneToTheEnd([&] { field.march(Watch(progress, field.size())); });
    field.ensureSignedDistanceFMM();
    return true;
}
