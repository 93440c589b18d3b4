#include "tiff_stack.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <regex>

#include "../failure.h"
#include "../image.h"

namespace quorbin::io {

Tiff openTiff(InputFile& file) {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    // m: a file that is mapped and becomes shorter meanwhile would end the tool.
    Tiff tiff(TIFFOpen(file.pathForOthers().c_str(), "rm"));
    if (!tiff) refuse("is no whole TIFF file; give all of it");
    return tiff;
}

namespace {

constexpr std::size_t kMostPages = 1 << 24;

/// The pages, in the order of the file.
std::vector<toff_t> listPages(TIFF* tiff) {
    std::vector<toff_t> pages;
    do {
        std::uint32_t kind = 0;
        TIFFGetField(tiff, TIFFTAG_SUBFILETYPE, &kind);
        if ((kind & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) == 0)
            pages.push_back(TIFFCurrentDirOffset(tiff));
        if (TIFFLastDirectory(tiff) != 0) break;
        if (TIFFReadDirectory(tiff) == 0) refuse("ends within its pages; give the whole file");
    } while (pages.size() < kMostPages);
    if (pages.empty()) refuse("holds no picture in full size; give the file that it was made of");
    TIFFSetSubDirectory(tiff, pages.front());
    return pages;
}

void orderPages(TiffStack& stack, const std::vector<std::size_t>& pageOfPlane) {
    const std::vector<toff_t> inFile = std::move(stack.pages);
    stack.pages.assign(pageOfPlane.size(), 0);
    for (std::size_t i = 0; i < pageOfPlane.size(); ++i) stack.pages[i] = inFile.at(pageOfPlane[i]);
}

// ImageJ: lines of key=value.

std::optional<double> valueOf(const std::string& description, const char* key) {
    const std::size_t at = description.find("\n" + std::string(key) + "=");
    if (at == std::string::npos) return std::nullopt;
    return std::strtod(description.c_str() + at + std::strlen(key) + 2, nullptr);
}

std::size_t countOf(const std::string& description, const char* key, std::size_t otherwise) {
    const double count = valueOf(description, key).value_or(0);
    return count >= 1 && count <= kMostPages ? static_cast<std::size_t>(count) : otherwise;
}

void readImageJ(TIFF* tiff, const std::string& description, TiffStack& stack) {
    // Resolution is samples a unit.
    float perUnit[2] = {0, 0};
    TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &perUnit[0]);
    TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &perUnit[1]);
    for (std::size_t axis = 0; axis < 2; ++axis)
        if (perUnit[axis] > 0) stack.spacing[axis] = 1 / static_cast<double>(perUnit[axis]);
    const double between = valueOf(description, "spacing").value_or(0);
    if (between > 0) stack.spacing[2] = between;

    const std::size_t pages = stack.pages.size();
    stack.channels = countOf(description, "channels", 1);
    stack.frames = countOf(description, "frames", 1);
    stack.layers =
        countOf(description, "slices", std::max<std::size_t>(pages / (stack.channels * stack.frames), 1));
    if (pages == 1 && countOf(description, "images", 1) > 1)
        refuse("holds {} pictures of which its own list has one, as beyond 4 GB; save it as BigTIFF",
               countOf(description, "images", 1));
}

// OME: XML, whose element Pixels has all that matters.

/// An attribute of an element, as text.
std::string attribute(const std::string& element, const std::string& name) {
    std::smatch found;
    return std::regex_search(element, found, std::regex("\\s" + name + "\\s*=\\s*[\"']([^\"']{0,99})[\"']"))
               ? found[1].str()
               : "";
}

std::size_t countIn(const std::string& element, const std::string& name, std::size_t otherwise) {
    const std::string text = attribute(element, name);
    return text.empty() ? otherwise
                        : std::min<std::size_t>(std::strtoul(text.c_str(), nullptr, 10), kMostPages);
}

/// The start tag of an element, from where it is looked for; empty where there is none.
std::string startTag(const std::string& xml, const std::string& name, std::size_t& at) {
    for (; (at = xml.find(name, at)) != std::string::npos; ++at) {
        const char after = xml[at + name.size()];
        if (at == 0 || (xml[at - 1] != '<' && xml[at - 1] != ':') ||
            (after != ' ' && after != '\n' && after != '>'))
            continue;
        const std::size_t from = at;
        at = std::min(xml.find('>', at), xml.size());
        return xml.substr(from, at - from);
    }
    return "";
}

void readOme(TIFF* tiff, const std::string& xml, TiffStack& stack) {
    std::size_t at = 0;
    const std::string pixels = startTag(xml, "Pixels", at);
    std::uint16_t samples = 1;  // of a page, which OME counts among the channels
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
    stack.channels = std::max<std::size_t>(countIn(pixels, "SizeC", 1) / samples, 1);
    stack.layers = countIn(pixels, "SizeZ", stack.pages.size());
    stack.frames = countIn(pixels, "SizeT", 1);
    const char* const sizes[] = {"PhysicalSizeX", "PhysicalSizeY", "PhysicalSizeZ"};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double size = std::strtod(attribute(pixels, sizes[axis]).c_str(), nullptr);
        if (size > 0) stack.spacing[axis] = size;
    }
    std::string order = attribute(pixels, "DimensionOrder");
    order = order.size() == 5 && order.substr(0, 2) == "XY" ? order.substr(2) : "CZT";
    const std::size_t planes = stack.channels * stack.layers * stack.frames;
    if (planes == 0 || planes > stack.pages.size())
        refuse("tells of {} channels, {} layers and {} frames and has {} pages; give an OME-TIFF in one file",
               stack.channels, stack.layers, stack.frames, stack.pages.size());

    // Index along each axis, of the pages in their order from a first one.
    const auto sizeOf = [&](char axis) {
        return axis == 'C' ? stack.channels : axis == 'Z' ? stack.layers : stack.frames;
    };
    std::vector<std::size_t> pageOfPlane(planes);
    const auto set = [&](std::size_t index[3], std::size_t page) {
        std::size_t c = 0, z = 0, t = 0;
        for (std::size_t i = 0; i < 3; ++i) (order[i] == 'C' ? c : order[i] == 'Z' ? z : t) = index[i];
        const std::size_t plane = c + stack.channels * (z + stack.layers * t);
        if (c >= stack.channels || z >= stack.layers || t >= stack.frames || page >= stack.pages.size())
            refuse("tells of planes that it has not; give an OME-TIFF in one file");
        pageOfPlane[plane] = page;
        for (std::size_t i = 0; i < 3 && ++index[i] == sizeOf(order[i]); ++i) index[i] = 0;
    };
    std::size_t index[3] = {0, 0, 0};
    for (std::size_t page = 0; page < planes; ++page) set(index, page);
    // Which pages hold which planes may be said one by one.
    const std::size_t end = xml.find("Pixels>", at);  // of the first picture, others are left out
    for (std::string data; !(data = startTag(xml, "TiffData", at)).empty() && at < end;) {
        if (attribute(data, "IFD").empty()) continue;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t first = countIn(data, std::string("First") + order[i], 0);
            index[i] = order[i] == 'C' ? first / samples : first;
        }
        const std::size_t firstPage = countIn(data, "IFD", 0), count = countIn(data, "PlaneCount", 1);
        for (std::size_t i = 0; i < std::min(count, planes); ++i) set(index, firstPage + i);
    }
    orderPages(stack, pageOfPlane);
}

}  // namespace

TiffStack readTiffStack(TIFF* tiff) {
    TiffStack stack;
    stack.pages = listPages(tiff);
    stack.layers = stack.pages.size();
    const char* text = nullptr;
    const std::string description = TIFFGetField(tiff, TIFFTAG_IMAGEDESCRIPTION, &text) != 0 ? text : "";
    stack.isField = description.find(kFieldMark) != std::string::npos;
    if (description.rfind("ImageJ=", 0) == 0)
        readImageJ(tiff, description, stack);
    else if (description.find("Pixels ") != std::string::npos && description.find("OME") != std::string::npos)
        readOme(tiff, description, stack);
    if (stack.channels * stack.layers * stack.frames != stack.pages.size())
        refuse("tells of {} channels, {} layers and {} frames and has {} pages; give the whole stack",
               stack.channels, stack.layers, stack.frames, stack.pages.size());
    return stack;
}

}  // namespace quorbin::io
