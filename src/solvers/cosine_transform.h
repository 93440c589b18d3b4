#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <vector>

namespace lset::detail {

/// The cosine transform of the first kind of rows of a fixed length, by a Fourier transform of their even
/// extension. Two rows go through one complex transform. Fast at every length: where the extension's has
/// large prime factors, the transform is a convolution with a chirp (Bluestein 1970). The error is a few
/// units in the last place of the largest value.
class CosineTransform {
 public:
    explicit CosineTransform(int length);
    ~CosineTransform();

    /// Replaces two rows f by f0 + (-1)^k fn + 2 sum fj cos(pi j k / n), n = length - 1, k = 0 ... n. Twice
    /// over this is 2n f. Rows of one value stay as they are. The second row may be null.
    void transform(double* first, double* second);

 private:
    using Complex = std::complex<double>;
    struct Fourier;

    std::size_t n_;                               // half the period of the even extension
    std::size_t fftLength_;                       // the period, or that of the convolution
    std::vector<Complex> chirp_, chirpSpectrum_;  // empty where the period itself has small factors
    std::vector<Complex> signal_, spectrum_;
    std::unique_ptr<Fourier> fourier_;

    void transformPeriod();
    void convolveWithChirp();
};

}  // namespace lset::detail
