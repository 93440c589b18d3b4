#include <algorithm>

#include <itkCurvatureFlowImageFilter.h>
#include <itkImage.h>
#include <itkMultiThreaderBase.h>
#include <itkReinitializeLevelSetImageFilter.h>

#include "accuracy/grids.h"
#include "measure.h"
#include "peer_flows.h"

namespace {

using accuracy::Motion;

template <class Grid>
using ImageOf = itk::Image<double, std::is_same_v<Grid, FullLevelSet2D> ? 2 : 3>;

template <class Grid>
typename ImageOf<Grid>::Pointer toImage(const Grid& grid) {
    typename ImageOf<Grid>::SizeType size;
    size[0] = static_cast<itk::SizeValueType>(grid.getWidth());
    size[1] = static_cast<itk::SizeValueType>(grid.getHeight());
    if constexpr (std::is_same_v<Grid, FullLevelSet3D>)
        size[2] = static_cast<itk::SizeValueType>(grid.getDepth());
    auto image = ImageOf<Grid>::New();
    image->SetRegions(size);
    image->Allocate();
    std::copy_n(grid.data(), image->GetPixelContainer()->Size(), image->GetBufferPointer());
    return image;
}

template <class Filter, class Image>
typename Image::Pointer run(Filter& filter, const Image& input) {
    filter.SetInput(&input);
    filter.Update();
    typename Image::Pointer output = filter.GetOutput();
    output->DisconnectPipeline();
    return output;
}

template <class Image>
typename Image::Pointer reinitialized(const Image& image) {
    return run(*itk::ReinitializeLevelSetImageFilter<Image>::New(), image);
}

template <class Image, class Grid>
void copyBack(const Image& image, Grid& grid) {
    std::copy_n(image.GetBufferPointer(), image.GetPixelContainer()->Size(), grid.data());
}

template <class Grid>
double reinitialize(Grid& grid) {
    auto image = toImage(grid);
    const Timer timer;
    image = reinitialized(*image);
    const double seconds = timer.seconds();
    copyBack(*image, grid);
    return seconds;
}

/// Steps of the length that the filter's documentation gives; reinitialised after each so many, or never.
template <class Grid>
Motion flow(Grid& grid, double time, int every) {
    using Image = ImageOf<Grid>;
    const double step = Image::ImageDimension == 2 ? 0.125 : 0.0625;
    Motion motion;
    motion.steps = static_cast<int>(time / step + 0.5);
    motion.time = motion.steps * step;
    auto image = toImage(grid);
    const Timer timer;
    for (int done = 0; done < motion.steps;) {
        const int now = std::min(every, motion.steps - done);
        auto filter = itk::CurvatureFlowImageFilter<Image, Image>::New();
        filter->SetTimeStep(step);
        filter->SetNumberOfIterations(static_cast<itk::IdentifierType>(now));
        image = run(*filter, *image);
        done += now;
        if (done < motion.steps) image = reinitialized(*image);
    }
    motion.seconds = timer.seconds();
    copyBack(*image, grid);
    return motion;
}

template <class Grid>
void measure() {
    measurePeer<Grid>(
        {{"ITK ReinitializeLevelSet", false, reinitialize<Grid>}},
        {{"ITK CurvatureFlow", false, [](Grid& grid, double time) { return flow(grid, time, 1 << 20); }},
         {"ITK CurvatureFlow, reinitialised after ten", false,
          [](Grid& grid, double time) { return flow(grid, time, 10); }}});
}

}  // namespace

int main() {
    itk::MultiThreaderBase::SetGlobalMaximumNumberOfThreads(1);
    measure<FullLevelSet2D>();
    measure<FullLevelSet3D>();
}
