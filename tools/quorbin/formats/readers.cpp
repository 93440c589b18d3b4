#include "formats/readers.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

#include "failure.h"
#include "formats/volume.h"

namespace {

constexpr Reader kReaders[] = {{"PNG", isPng, readPng},
                               {"PGM", isPgm, readPgm},
                               {"TIFF", isTiff, readTiffPicture},
                               {"NPY", isNpy, readNpy},
                               {"FL2D", isFl2d, readFl2d}};

struct Close {
    void operator()(std::FILE* file) const {
        if (file != stdin) std::fclose(file);
    }
};
using File = std::unique_ptr<std::FILE, Close>;

/// An input that cannot be read twice, a pipe say, and what has been read of it.
struct Stream {
    File file;
    Bytes taken;
};

Stream& streamAt(const std::string& path, File file) {
    static std::map<std::string, Stream> streams;
    Stream& stream = streams[path];
    if (file) stream.file = std::move(file);
    return stream;
}

File openFile(const std::string& path) {
    File file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"));
    if (!file) refuse("{}: cannot be opened ({}); give a file that is there", path, std::strerror(errno));
    return file;
}

/// Reads on block by block for as long as wantsMore(bytes so far).
template <class WantsMore>
void readOn(const std::string& path, std::FILE* file, Bytes& bytes, WantsMore wantsMore) {
    bool more = bytes.empty() || wantsMore(bytes);
    unsigned char block[1 << 16];
    while (more) {
        const std::size_t count = std::fread(block, 1, sizeof block, file);
        bytes.insert(bytes.end(), block, block + count);
        more = count > 0 && wantsMore(bytes);
    }
    if (std::ferror(file)) refuse("{}: cannot be read ({}); give a file", path, std::strerror(errno));
    if (bytes.empty()) refuse("{}: is empty; give the whole file", path);
}

template <class WantsMore>
Bytes readWhile(const std::string& path, WantsMore wantsMore) {
    if (isStream(path)) {
        Stream& known = streamAt(path, nullptr);
        Stream& stream = known.file ? known : streamAt(path, openFile(path));
        readOn(path, stream.file.get(), stream.taken, wantsMore);
        return stream.taken;
    }
    const File file = openFile(path);
    Bytes bytes;
    readOn(path, file.get(), bytes, wantsMore);
    return bytes;
}

/// A file and which reader is for it, told before all of it is read.
struct Input {
    Bytes bytes;
    const Reader* reader;
};

Input readInput(const std::string& path) {
    const Reader* reader = nullptr;
    Bytes bytes = readWhile(path, [&](const Bytes& soFar) {
        if (reader == nullptr)
            reader = std::find_if(std::begin(kReaders), std::end(kReaders),
                                  [&](const Reader& r) { return r.matches(soFar); });
        if (reader == std::end(kReaders))
            refuse(
                "{}: is of no known format; give a picture (PNG, PGM, TIFF, 2D NPY, FL2D) or, to a command "
                "that takes them, a volume (NIfTI, FL3D, FR3D, 3D NPY, TIFF stack)",
                path);
        return true;
    });
    return {std::move(bytes), reader};
}

}  // namespace

bool isStream(const std::string& path) {
    struct stat status = {};
    return path == "-" ||
           (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode));
}

Bytes readBytes(const std::string& path, std::size_t most) {
    return readWhile(path, [=](const Bytes& soFar) { return soFar.size() < most; });
}

Bytes readBytes(const std::string& path) {
    return readWhile(path, [](const Bytes&) { return true; });
}

Bytes readStart(const std::string& path) {
    return readWhile(path, [](const Bytes&) { return false; });
}

bool startsWith(const Bytes& bytes, const char* magic) {
    const std::size_t length = std::strlen(magic);
    return bytes.size() >= length && std::memcmp(bytes.data(), magic, length) == 0;
}

void setSize(Raster& raster, long long width, long long height) {
    constexpr long long kLargest = 1 << 30;
    if (width < 1 || height < 1 || width > kLargest || height > kLargest || width > INT_MAX / height)
        refuse("has {} × {} points; a picture has from 1 point to 2147483647", width, height);
    raster.width = static_cast<int>(width);
    raster.height = static_cast<int>(height);
}

Raster readRaster(const std::string& path, const std::string& channel) {
    if (isVolume(path)) refuse("{}: is a volume; quorbin slice takes a plane of it", path);
    const auto [bytes, reader] = readInput(path);
    try {
        Raster raster = reader->read(bytes, channel);
        raster.format = reader->name;
        const auto bad = std::count_if(raster.samples.begin(), raster.samples.end(),
                                       [](double value) { return !std::isfinite(value); });
        if (bad > 0) refuse("holds values that are not finite, {} of them; replace them by numbers", bad);
        return raster;
    } catch (const Failure& failure) {
        throw naming(path, failure);
    }
}
