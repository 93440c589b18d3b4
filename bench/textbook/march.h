#pragma once

#include <vector>

/// Fast marching as a textbook has it: a binary heap indexed by a table over the whole grid, every estimate
/// formed anew from all four neighbours with its bounds checks. Returns the signed distances of the field.
std::vector<double> textbookMarch(const std::vector<double>& field, int width, int height, double hx,
                                  double hy);

class FullLevelSet3D;

/// The same in three dimensions. The field itself stays as it is.
std::vector<double> textbookMarch(FullLevelSet3D& field);
