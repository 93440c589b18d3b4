#include "quorbin3d/level_set_3d.h"

LevelSet3D::~LevelSet3D() = default;

double LevelSet3D::getXSpace() const { return xSpace_; }
double LevelSet3D::getYSpace() const { return ySpace_; }
double LevelSet3D::getZSpace() const { return zSpace_; }
