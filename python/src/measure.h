#pragma once

#include <nanobind/nanobind.h>
#include <quorbin.h>

namespace quorbin::python {

/// Figures one after the other, as the tuples of Python have them.
nanobind::tuple tupleOf(const Figures2D& figures);
nanobind::tuple tupleOf(const Figures3D& figures);

}  // namespace quorbin::python
