#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <itkFastMarchingImageFilter.h>
#include <itkImage.h>
#include <itkMultiThreaderBase.h>

#include "dented_balls.h"
#include "measure.h"

namespace {

using Image = itk::Image<double, 3>;
using March = itk::FastMarchingImageFilter<Image, Image>;

/// The grid points beside the surface, on both sides, with their distance to the plane through its crossings
/// of the grid lines: 1/d^2 is the sum of 1/d_a^2 over the axes a that have one.
March::NodeContainer::Pointer front(const std::vector<double>& field, int n) {
    auto nodes = March::NodeContainer::New();
    const std::size_t strides[] = {1, static_cast<std::size_t>(n), static_cast<std::size_t>(n) * n};
    for (std::size_t i = 0; i < field.size(); ++i) {
        const int at[] = {static_cast<int>(i % n), static_cast<int>(i / n % n), static_cast<int>(i / n / n)};
        const double here = field[i];
        double inverseSquares = 0;
        for (int axis = 0; axis < 3; ++axis) {
            double nearest = 2;
            const auto look = [&](double there) {
                if ((here <= 0) != (there <= 0)) nearest = std::min(nearest, here / (here - there));
            };
            if (at[axis] > 0) look(field[i - strides[axis]]);
            if (at[axis] + 1 < n) look(field[i + strides[axis]]);
            if (nearest <= 1) inverseSquares += 1 / (nearest * nearest);
        }
        if (inverseSquares == 0) continue;
        March::NodeType node;
        node.SetIndex({{at[0], at[1], at[2]}});
        node.SetValue(std::isinf(inverseSquares) ? 0 : 1 / std::sqrt(inverseSquares));
        nodes->InsertElement(nodes->Size(), node);
    }
    return nodes;
}

}  // namespace

int main(int argc, char** argv) {
    const int n = argc > 1 ? std::atoi(argv[1]) : 256;
    itk::MultiThreaderBase::SetGlobalMaximumNumberOfThreads(1);
    const double points = static_cast<double>(cube(n));
    auto march = March::New();
    {
        std::vector<double> field(cube(n));
        fillBlobs(field.begin(), n);
        // The front separates the sides, so one march through both gives what one for each would.
        march->SetTrialPoints(front(field, n));
    }
    march->SetSpeedConstant(1);
    Image::SizeType size;
    size.Fill(n);
    march->SetOutputSize(size);

    resetPeak();
    const double before = memory("VmRSS");
    const Timer timer;
    march->Update();
    const double seconds = timer.seconds(), cpu = timer.cpuSeconds();

    const double peak = memory("VmHWM");
    double sum = 0;
    const double* distance = march->GetOutput()->GetBufferPointer();
    for (std::size_t i = 0; i < cube(n); ++i) sum += distance[i];
    std::printf(
        "itk      n %d  %.3f s (cpu %.3f)  peak RSS %.1f MB  Update adds %.1f bytes a point  front %zu  "
        "mean distance %.9f\n",
        n, seconds, cpu, peak / 1e6, (peak - before) / points,
        static_cast<std::size_t>(march->GetTrialPoints()->Size()), sum / points);
}
