#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "brin/vec.h"
#include "flow.h"
#include "progress.h"
#include "quorbin_export.h"

class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// A term of an equation: absent, one number, a value for each point of the grid (x fastest), or a function
/// of place (world units, grid index times spacing) and time, which writes its values at count points. It is
/// asked for a row of the grid at a time, in the caller's thread.
template <class Point>
class Term {
 public:
    using Function = std::function<void(double time, const Point* points, std::size_t count, double* values)>;

    Term() = default;
    Term(double value) : given_(value) {}                            // NOLINT: a number is a term
    Term(std::vector<double> values) : given_(std::move(values)) {}  // NOLINT
    template <class Callable, class = std::enable_if_t<
                                  std::is_invocable_v<Callable&, double, const Point*, std::size_t, double*>>>
    Term(Callable function) : given_(Function(std::move(function))) {}  // NOLINT

    bool isAbsent() const { return std::holds_alternative<std::monostate>(given_); }
    const double* number() const { return std::get_if<double>(&given_); }
    const std::vector<double>* values() const { return std::get_if<std::vector<double>>(&given_); }
    const Function* function() const { return std::get_if<Function>(&given_); }

 private:
    std::variant<std::monostate, double, std::vector<double>, Function> given_;
};
using Term2D = Term<brin::Vec2<double>>;
using Term3D = Term<brin::Vec3<double>>;

/// φt + V·∇φ + a |∇φ| = b κ |∇φ| + s, each term of which may be absent.
struct Equation2D {
    Velocity2D velocity;  ///< V; empty: absent
    Term2D normal;        ///< a: how fast the interface moves outward
    Term2D curvature;     ///< b ≥ 0, of the mean curvature κ = div(∇φ/|∇φ|)
    Term2D source;        ///< s
};
struct Equation3D {
    Velocity3D velocity;
    Term3D normal, curvature, source;
};

struct EvolveOptions {
    /// What lies beyond the grid: the field goes on as it does at the border, or it begins again on the other
    /// side (the first sample then follows the last one).
    enum class Border { kContinued, kPeriodic };
    Border border = Border::kContinued;

    /// Of the longest stable step; above 0 and at most 1.
    double courant = 0.6;

    /// After so many steps the field is made a signed distance; 0: never, and then points far from the
    /// interface move too.
    int stepsBetweenDistances = 4;

    /// Told of thousandths of the time.
    Progress progress;
};

struct EvolveResult {
    double time = 0;  ///< how far it came: less than asked where the interface has vanished
    int steps = 0;
    double longestStep = 0;
    bool hasVanished = false;
    bool isEnded = false;  ///< by progress: the level set is as it was
};

/// Moves a level set by an equation for a time ≥ 0. First derivatives are those of WENO5 (Jiang and Peng
/// 2000): upwind for V, by Godunov's rule for a, so that corners open into arcs where they move outward and
/// stay sharp where they move inward; the curvature is by central differences. Steps are those of the
/// third-order TVD Runge-Kutta method (Shu and Osher 1988). What V alone carries is truer and faster by Flow.
///
/// Throws NoInterface, std::invalid_argument if the time, an option, a spacing or a term is out of range, not
/// finite or of another size than the grid, and std::bad_alloc; the level set is then as it was. What
/// functions throw goes through, with the level set as it was. About 0.1 µs a point beside the interface and
/// axis a step; 32 bytes a point, and more for terms that are functions.
QUORBIN_EXPORT EvolveResult evolve(FullLevelSet2D& field, const Equation2D& equation, double time,
                                   const EvolveOptions& options = {});
QUORBIN_EXPORT EvolveResult evolve(FullLevelSet3D& field, const Equation3D& equation, double time,
                                   const EvolveOptions& options = {});

/// Speeds that are known beside the interface, extended from there so that they are constant along its
/// normals: at each point the speed, linear between samples, at its closest point of the interface. distance
/// is a signed distance (see reinitialize), and speeds has a value for each point of the grid. Throws
/// std::invalid_argument for another number of speeds; std::bad_alloc. Costs what sample does.
QUORBIN_EXPORT std::vector<double> extended(const FullLevelSet2D& distance,
                                            const std::vector<double>& speeds);
QUORBIN_EXPORT std::vector<double> extended(const FullLevelSet3D& distance,
                                            const std::vector<double>& speeds);

}  // namespace quorbin
