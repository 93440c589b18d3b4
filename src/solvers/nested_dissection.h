#pragma once

#include <vector>

namespace lset::detail {

/// An undirected graph: the neighbours of vertex v are neighbours[start[v]] to neighbours[start[v + 1] - 1].
struct Graph {
    std::vector<int> start, neighbours;
    int size() const { return static_cast<int>(start.size()) - 1; }
};

/// An order of elimination that keeps the factors of a matrix with this graph sparse: vertices that separate
/// the graph into two halves come last, after the halves, each ordered likewise. The separators are level
/// sets of the distance from a vertex at the rim (George and Liu 1978). order[k] is the vertex in place k.
/// About n log n.
std::vector<int> nestedDissection(const Graph& graph);

}  // namespace lset::detail
