#pragma once

#include <cstddef>
#include <vector>

#include "formats/readers.h"
#include "formats/samples.h"

/// The array of an NPY file, of any number of dimensions, the last of which is the one along which neighbours
/// lie.
struct NpyArray {
    std::vector<long long> shape;
    /// The values in that order. Refuses what ends early.
    std::vector<double> values() const;

    const Bytes& bytes;
    std::size_t dataStart;
    SampleType type;
    bool isBigEndian, isFortran;
};

/// Reads the header; bytes must outlive the array.
NpyArray parseNpy(const Bytes& bytes);
