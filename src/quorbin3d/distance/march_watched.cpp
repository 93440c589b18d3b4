#include <climits>

#include "quorbin3d/distance/march_dense.h"

using namespace lset::detail;

bool quorbin::ensureSignedDistanceFMM(FullLevelSet3D& field, const Progress& progress) {
    if (field.size() == 0 || field.size() > INT_MAX) return true;
    if (progress) return isDoneToTheEnd(progress, [&](const Stretch& whole) { field.march<Watch>(whole); });
    field.ensureSignedDistanceFMM();
    return true;
}
