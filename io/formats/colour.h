#pragma once

#include <string>

namespace quorbin::io {

/// Makes grey values of points with so many channels: the one channel that is named, else the luminance.
inline void toGrey(const double* colours, std::size_t points, std::size_t channels,
                   const std::string& channel, double* out) {
    for (std::size_t i = 0; i < points; ++i, colours += channels) {
        const bool isGrey = channels < 3 || (colours[0] == colours[1] && colours[1] == colours[2]);
        out[i] = isGrey || channel == "r" ? colours[0]
                 : channel == "g"         ? colours[1]
                 : channel == "b"         ? colours[2]
                                          : 0.299 * colours[0] + 0.587 * colours[1] + 0.114 * colours[2];
    }
}

}  // namespace quorbin::io
