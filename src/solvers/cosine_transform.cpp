#include "solvers/cosine_transform.h"

#include <algorithm>
#include <cmath>
#include <unsupported/Eigen/FFT>

namespace lset::detail {

namespace {

constexpr double kPi = 3.14159265358979323846;

bool hasSmallFactors(std::size_t n) {
    for (const std::size_t factor : {2U, 3U, 5U})
        while (n % factor == 0) n /= factor;
    return n == 1;
}

/// Written out: the operator of std::complex looks for infinities.
std::complex<double> product(std::complex<double> a, std::complex<double> b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

}  // namespace

struct CosineTransform::Fourier {
    Eigen::FFT<double> fft{Eigen::default_fft_impl<double>(), Eigen::FFT<double>::Unscaled};

    void forward(std::vector<Complex>& to, const std::vector<Complex>& from) {
        fft.fwd(to.data(), from.data(), static_cast<Eigen::Index>(from.size()));
    }
    void backward(std::vector<Complex>& to, const std::vector<Complex>& from) {
        fft.inv(to.data(), from.data(), static_cast<Eigen::Index>(from.size()));
    }
};

CosineTransform::CosineTransform(int length)
    : n_(static_cast<std::size_t>(length) - 1), fftLength_(2 * n_), fourier_(std::make_unique<Fourier>()) {
    if (n_ == 0) return;
    const std::size_t period = 2 * n_;
    if (!hasSmallFactors(period)) {
        fftLength_ = 3 * n_;
        while (!hasSmallFactors(fftLength_)) ++fftLength_;
        chirp_.resize(period);
        for (std::size_t j = 0; j < period; ++j) {
            const double angle =
                kPi * static_cast<double>(j * j % (2 * period)) / static_cast<double>(period);
            chirp_[j] = {std::cos(angle), std::sin(angle)};
        }
        // The convolution leads from sources 0 ... 2n - 1 to results 0 ... n, by shifts from 1 - 2n to n.
        std::vector<Complex> kernel(fftLength_);
        for (std::size_t shift = 0; shift <= n_; ++shift) kernel[shift] = chirp_[shift];
        for (std::size_t shift = 1; shift < period; ++shift) kernel[fftLength_ - shift] = chirp_[shift];
        chirpSpectrum_.resize(fftLength_);
        fourier_->forward(chirpSpectrum_, kernel);
        for (Complex& value : chirpSpectrum_) value /= static_cast<double>(fftLength_);
    }
    signal_.resize(fftLength_);
    spectrum_.resize(fftLength_);
}

CosineTransform::~CosineTransform() = default;

void CosineTransform::transform(double* first, double* second) {
    if (n_ == 0) return;
    for (std::size_t j = 0; j <= n_; ++j) signal_[j] = {first[j], second ? second[j] : 0.0};
    for (std::size_t j = 1; j < n_; ++j) signal_[2 * n_ - j] = signal_[j];
    chirp_.empty() ? transformPeriod() : convolveWithChirp();
    // The transform of an even sequence of real numbers is real: each row has a part of its own.
    for (std::size_t k = 0; k <= n_; ++k) {
        first[k] = spectrum_[k].real();
        if (second) second[k] = spectrum_[k].imag();
    }
}

void CosineTransform::transformPeriod() { fourier_->forward(spectrum_, signal_); }

void CosineTransform::convolveWithChirp() {
    for (std::size_t j = 0; j < 2 * n_; ++j) signal_[j] = product(signal_[j], std::conj(chirp_[j]));
    std::fill(signal_.begin() + static_cast<std::ptrdiff_t>(2 * n_), signal_.end(), Complex());
    fourier_->forward(spectrum_, signal_);
    for (std::size_t i = 0; i < fftLength_; ++i) spectrum_[i] = product(spectrum_[i], chirpSpectrum_[i]);
    fourier_->backward(signal_, spectrum_);
    for (std::size_t k = 0; k <= n_; ++k) spectrum_[k] = product(signal_[k], std::conj(chirp_[k]));
}

}  // namespace lset::detail
