#include "solvers/nested_dissection.h"

#include <cstddef>
#include <utility>

namespace lset::detail {

namespace {

class Dissection {
 public:
    explicit Dissection(const Graph& graph)
        : graph_(graph), part_(static_cast<std::size_t>(graph.size()), 0), seen_(part_.size()) {}

    std::vector<int> order() {
        std::vector<int> all(part_.size());
        for (std::size_t v = 0; v < all.size(); ++v) all[v] = static_cast<int>(v);
        // Filled from the end: a separator goes in before the parts that it separates. A stack keeps the
        // recursion flat.
        std::vector<int> reversed;
        reversed.reserve(all.size());
        std::vector<std::vector<int>> pending{std::move(all)};
        while (!pending.empty()) {
            const std::vector<int> vertices = std::move(pending.back());
            pending.pop_back();
            split(vertices, pending, reversed);
        }
        return {reversed.rbegin(), reversed.rend()};
    }

 private:
    static constexpr int kOrdered = -1;
    static constexpr std::size_t kSmall = 32;

    /// Vertices of the part by their distance from start; those of one level are adjacent.
    struct Levels {
        std::vector<int> vertices;
        std::vector<std::size_t> begin;  // of each level, and the end of the last
        std::size_t count() const { return begin.size() - 1; }
    };

    Levels levelsFrom(int start, int part) {
        Levels levels{{start}, {0}};
        seen(start) = 1;
        std::size_t next = 0;
        while (next < levels.vertices.size()) {
            const std::size_t end = levels.vertices.size();
            levels.begin.push_back(end);
            for (; next < end; ++next) {
                const auto v = static_cast<std::size_t>(levels.vertices[next]);
                for (int e = graph_.start[v]; e < graph_.start[v + 1]; ++e) {
                    const int neighbour = graph_.neighbours[static_cast<std::size_t>(e)];
                    if (partOf(neighbour) != part || seen(neighbour)) continue;
                    seen(neighbour) = 1;
                    levels.vertices.push_back(neighbour);
                }
            }
        }
        for (const int v : levels.vertices) seen(v) = 0;
        return levels;
    }

    /// The levels from a vertex from which another is about as far as any two are.
    Levels longestLevels(int start, int part) {
        Levels levels = levelsFrom(start, part);
        while (true) {
            Levels further = levelsFrom(levels.vertices.back(), part);
            if (further.count() <= levels.count()) return further;
            levels = std::move(further);
        }
    }

    void split(const std::vector<int>& vertices, std::vector<std::vector<int>>& pending,
               std::vector<int>& reversed) {
        if (vertices.size() <= kSmall) return append(vertices.begin(), vertices.end(), reversed);
        const int part = ++parts_;
        for (const int v : vertices) partOf(v) = part;
        const Levels levels = longestLevels(vertices.front(), part);
        if (levels.vertices.size() < vertices.size()) return splitIntoConnected(vertices, part, pending);
        if (levels.count() < 3) return append(vertices.begin(), vertices.end(), reversed);
        std::size_t middle = 0;
        while (levels.begin[middle + 1] < vertices.size() / 2) ++middle;
        const auto first = levels.vertices.begin();
        const auto from = first + static_cast<std::ptrdiff_t>(levels.begin[middle]);
        const auto to = first + static_cast<std::ptrdiff_t>(levels.begin[middle + 1]);
        append(from, to, reversed);
        pending.emplace_back(first, from);
        pending.emplace_back(to, levels.vertices.end());
    }

    void splitIntoConnected(const std::vector<int>& vertices, int part,
                            std::vector<std::vector<int>>& pending) {
        for (const int start : vertices)
            if (partOf(start) == part) {
                pending.push_back(levelsFrom(start, part).vertices);
                for (const int v : pending.back()) partOf(v) = kOrdered;
            }
    }

    template <class Iterator>
    void append(Iterator from, Iterator to, std::vector<int>& reversed) {
        for (; from != to; ++from) {
            partOf(*from) = kOrdered;
            reversed.push_back(*from);
        }
    }

    int& partOf(int v) { return part_[static_cast<std::size_t>(v)]; }
    char& seen(int v) { return seen_[static_cast<std::size_t>(v)]; }

    const Graph& graph_;
    std::vector<int> part_;
    std::vector<char> seen_;
    int parts_ = 0;
};

}  // namespace

std::vector<int> nestedDissection(const Graph& graph) { return Dissection(graph).order(); }

}  // namespace lset::detail
