#include "module.h"

#include <memory>

#include <itkBMPImageIO.h>
#include <itkGDCMImageIO.h>
#include <itkMRCImageIO.h>
#include <itkMetaImageIO.h>
#include <itkNrrdImageIO.h>
#include <itkOutputWindow.h>

#include "../sample_types.h"
#include "image_io.h"

namespace quorbin::io::itk {

namespace {

class NoOutputWindow : public ::itk::OutputWindow {
 public:
    void DisplayText(const char*) override {}
};

}  // namespace

::itk::ImageIOBase::Pointer imageIo(const std::string& format) {
    if (format == "NRRD") return ::itk::NrrdImageIO::New().GetPointer();
    if (format == "MetaImage") return ::itk::MetaImageIO::New().GetPointer();
    if (format == "DICOM") return ::itk::GDCMImageIO::New().GetPointer();
    if (format == "MRC") return ::itk::MRCImageIO::New().GetPointer();
    return ::itk::BMPImageIO::New().GetPointer();
}

void silence() {
    static const bool done = [] {
        ::itk::Object::GlobalWarningDisplayOff();
        const ::itk::SmartPointer<NoOutputWindow> window = new NoOutputWindow;
        window->UnRegister();  // a new object counts a reference of its own
        ::itk::OutputWindow::SetInstance(window);
        return true;
    }();
    static_cast<void>(done);
}

namespace {

/// Whether a format says where its samples lie in the world, and whether this file does.
bool isPlaced(const std::string& format, const ::itk::ImageIOBase& io) {
    if (format == "NRRD") return io.GetMetaDataDictionary().HasKey("NRRD_space");
    return format == "MetaImage" || format == "DICOM";
}

/// ITK's world goes left, to the back and up.
Affine affineOf(const ::itk::ImageIOBase& io, unsigned dimensions) {
    Affine affine = {};
    for (unsigned row = 0; row < 3; ++row) {
        const double turn = row < 2 ? -1 : 1;
        for (unsigned axis = 0; axis < 3; ++axis)
            affine[row][axis] = axis < dimensions && row < dimensions
                                    ? turn * io.GetDirection(axis)[row] * io.GetSpacing(axis)
                                    : (axis == row ? turn : 0);
        affine[row][3] = row < dimensions ? turn * io.GetOrigin(row) : 0;
    }
    return affine;
}

SampleType typeOf(const ::itk::ImageIOBase& io) {
    using Type = ::itk::IOComponentEnum;
    const std::size_t size = io.GetComponentSize();
    switch (io.GetComponentType()) {
        case Type::FLOAT:
        case Type::DOUBLE:
            return {'f', size};
        case Type::CHAR:
        case Type::SHORT:
        case Type::INT:
        case Type::LONG:
        case Type::LONGLONG:
            return {'i', size};
        case Type::UCHAR:
        case Type::USHORT:
        case Type::UINT:
        case Type::ULONG:
        case Type::ULONGLONG:
            return {'u', size};
        default:
            return {'?', 0};
    }
}

/// What one file says of itself.
bool readFileHeader(const std::string& format, ::itk::ImageIOBase& io, Header& header, std::string& fault) {
    io.ReadImageInformation();
    const unsigned all = io.GetNumberOfDimensions();
    for (unsigned axis = 3; axis < all; ++axis)
        if (io.GetDimensions(axis) > 1) {
            fault = "has " + std::to_string(all) + " dimensions; give a picture or a volume of three";
            return false;
        }
    const unsigned given = std::min(all, 3U);
    for (unsigned axis = 0; axis < given; ++axis) {
        header.size[axis] = static_cast<long long>(io.GetDimensions(axis));
        const double spacing = std::abs(io.GetSpacing(axis));
        header.placement.spacing[axis] = spacing > 0 ? spacing : 1;
    }
    // These have three dimensions of pictures, too.
    const bool isFlat = (format == "DICOM" || format == "MRC") && header.size[2] == 1;
    header.dimensions = isFlat ? 2 : static_cast<int>(given);
    if (format == "BMP") header.placement.spacing = {1, 1, 1};
    if (given == 3 && isPlaced(format, io)) {
        constexpr int kScanner = 1, kMillimetres = 2;  // as NIfTI has them
        header.placement.affine = affineOf(io, given);
        header.placement.placeCode = kScanner;
        header.placement.lengthUnit = kMillimetres;
    }
    header.components = static_cast<int>(io.GetNumberOfComponents());
    header.isFloating = typeOf(io).isFloatingPoint();
    ::itk::ExposeMetaData<std::string>(io.GetMetaDataDictionary(), markKey(format), header.mark);
    const bool isColour = (header.components == 3 || header.components == 4) &&
                          io.GetPixelType() != ::itk::IOPixelEnum::COMPLEX;
    if (header.components != 1 && !isColour) {
        fault = "has " + std::to_string(header.components) + " numbers a sample; give one with grey values";
        return false;
    }
    return true;
}

/// The third axis of a series is the step from file to file, which must be the same everywhere.
bool placeSeries(const std::string& format, Header& header, std::string& fault) {
    const std::size_t count = header.files.size();
    header.size[2] = static_cast<long long>(count);
    header.dimensions = count == 1 ? 2 : 3;
    if (count == 1) return true;
    std::vector<std::array<double, 3>> origins;
    for (const std::string& file : header.files) {
        const auto io = imageIo(format);
        io->SetFileName(file);
        Header one;
        if (!readFileHeader(format, *io, one, fault)) return false;
        if (one.size != std::array<long long, 3>{header.size[0], header.size[1], 1} ||
            one.components != header.components) {
            fault =
                "has files of different sizes or kinds in one series; give a folder with those of one kind";
            return false;
        }
        origins.push_back({-io->GetOrigin(0), -io->GetOrigin(1), io->GetOrigin(2)});
    }
    Affine& affine = *header.placement.affine;
    std::array<double, 3> step{};
    for (std::size_t row = 0; row < 3; ++row) {
        step[row] = (origins.back()[row] - origins.front()[row]) / static_cast<double>(count - 1);
        affine[row][2] = step[row];
    }
    const double spacing = std::hypot(step[0], step[1], step[2]);
    if (spacing == 0) {
        fault = "has several images at one place in a series; give a folder with one of each place";
        return false;
    }
    header.placement.spacing[2] = spacing;
    constexpr double kUneven = 0.1;  // of a step
    for (std::size_t i = 1; i < count; ++i) {
        const double off = std::hypot(origins[i][0] - origins[i - 1][0] - step[0],
                                      origins[i][1] - origins[i - 1][1] - step[1],
                                      origins[i][2] - origins[i - 1][2] - step[2]);
        if (!(off <= kUneven * spacing)) {
            fault = "has images at uneven distances in a series, or one is missing; give the whole series";
            return false;
        }
    }
    return true;
}

bool readHeader(const char* format, const char* path, long long series, Header& header, std::string& fault) {
    return guarded(format, fault, [&] {
        const bool isFolder = std::string(path).back() == '/';
        if (isFolder) {
            if (!chooseSeries(path, series, header, fault)) return false;
        } else {
            header.files = {path};
        }
        const auto io = imageIo(format);
        if (!isWhole(format, header.files.front(), 0)) {
            fault = kNotWhole;
            return false;
        }
        io->SetFileName(header.files.front());
        if (!readFileHeader(format, *io, header, fault)) return false;
        return !isFolder || placeSeries(format, header, fault);
    });
}

bool readSamples(const char* format, const Header& header, std::vector<double>& samples, std::string& fault) {
    return guarded(format, fault, [&] {
        for (const std::string& file : header.files) {
            const auto io = imageIo(format);
            io->SetFileName(file);
            io->ReadImageInformation();
            const unsigned dimensions = io->GetNumberOfDimensions();
            ::itk::ImageIORegion region(dimensions);
            for (unsigned axis = 0; axis < dimensions; ++axis) region.SetSize(axis, io->GetDimensions(axis));
            io->SetIORegion(region);
            const auto bytes = static_cast<std::size_t>(io->GetImageSizeInBytes());
            if (!isWhole(format, file, bytes)) {
                fault = kNotWhole;
                return false;
            }
            const std::unique_ptr<unsigned char[]> raw(new unsigned char[bytes]);
            io->Read(raw.get());
            const auto count = static_cast<std::size_t>(io->GetImageSizeInComponents());
            samples.resize(samples.size() + count);
            if (!decodeSamples(typeOf(*io), raw.get(), count, samples.data() + samples.size() - count)) {
                fault = "holds samples that are no plain numbers; give integers or floating-point numbers";
                return false;
            }
        }
        return true;
    });
}

}  // namespace

}  // namespace quorbin::io::itk

extern "C" __attribute__((visibility("default"))) const quorbin::io::itk::Module quorbinItkModule = {
    quorbin::io::itk::readHeader, quorbin::io::itk::readSamples, quorbin::io::itk::write};
