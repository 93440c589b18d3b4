#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "image.h"

namespace quorbin::io {

/// What the samples of a point stand for, of which there are some beside each other.
struct ChannelLayout {
    std::size_t count = 1;
    bool isColour = false;                            ///< the first three are red, green and blue
    std::optional<std::size_t> alpha = std::nullopt;  ///< which of them is opacity
    double opaque = 255;                              ///< alpha at which nothing shines through
};

/// How the samples of a point become one: the luminance of a colour (Rec. 601), grey, or the channel asked
/// for, which is r, g, b, a, luma or a number from 0; empty takes luminance or grey. Refuses what there is
/// not, and channels without meaning of which none is asked for.
class ChannelChoice {
 public:
    ChannelChoice(const ChannelLayout& layout, const std::string& channel);

    const ChannelLayout& layout() const { return layout_; }

    /// Whether the samples of a channel are looked at.
    bool uses(std::size_t channel) const;

    /// Makes one value of each point's samples, which lie beside each other.
    void take(const double* samples, std::size_t points, double* out);

    /// Notes in the image that alpha was left out, where it would have been seen.
    void note(Image& image) const;

 private:
    ChannelLayout layout_;
    std::optional<std::size_t> single_;  // none: luminance
    bool hidesSome_ = false;             // alpha that is left out
};

/// The channel or frame asked for of so many; refuses to guess where there are several.
std::size_t channelAmong(std::size_t count, const std::string& channel);
std::size_t frameAmong(std::size_t count, const std::optional<long long>& frame);

/// Whether a text names a channel.
bool isChannelName(const std::string& text);

/// The number that a text is, if it is one from 0.
std::optional<std::size_t> numberOf(const std::string& text);

}  // namespace quorbin::io
