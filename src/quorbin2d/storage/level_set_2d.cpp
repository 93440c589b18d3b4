#include "quorbin2d/level_set_2d.h"

LevelSet2D::~LevelSet2D() = default;

double LevelSet2D::getXSpace() const { return xSpace_; }
double LevelSet2D::getYSpace() const { return ySpace_; }
