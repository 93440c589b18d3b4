#pragma once

#include <string>
#include <vector>

#include "raster.h"

using Bytes = std::vector<unsigned char>;

/// Reads a file (- is standard input) whose format its content tells. channel picks r, g, b or luma of a
/// picture in colour; empty, only a grey one will do. Whatever is wrong is a Failure that names the file.
Raster readRaster(const std::string& path, const std::string& channel);

/// readBytes reads a file to its end or, if most is given, only until it has that many bytes; since it reads
/// in blocks, it may return up to a block more. readStart reads the first block only.
Bytes readBytes(const std::string& path);
Bytes readBytes(const std::string& path, std::size_t most);
Bytes readStart(const std::string& path);

/// Whether an input can be read only once: standard input, a pipe.
bool isStream(const std::string& path);

/// An input format. read throws Failure with what is wrong, to which the caller adds the file's name.
struct Reader {
    const char* name;
    bool (*matches)(const Bytes& bytes);
    Raster (*read)(const Bytes& bytes, const std::string& channel);
};

bool startsWith(const Bytes& bytes, const char* magic);

bool isPng(const Bytes& bytes);
bool isPgm(const Bytes& bytes);
bool isNpy(const Bytes& bytes);
bool isFl2d(const Bytes& bytes);
Raster readPng(const Bytes& bytes, const std::string& channel);
Raster readPgm(const Bytes& bytes, const std::string& channel);
Raster readNpy(const Bytes& bytes, const std::string& channel);
Raster readFl2d(const Bytes& bytes, const std::string& channel);
Raster readTiffPicture(const Bytes& bytes, const std::string& channel);

/// Sizes of a picture as the library takes them; anything else is refused.
void setSize(Raster& raster, long long width, long long height);
