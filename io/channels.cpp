#include "channels.h"

#include <algorithm>
#include <cctype>

#include "failure.h"

namespace quorbin::io {

std::optional<std::size_t> numberOf(const std::string& text) {
    constexpr std::size_t kMostDigits = 9;
    const bool isNumber =
        !text.empty() && text.size() <= kMostDigits &&
        std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); });
    return isNumber ? std::optional<std::size_t>(std::stoul(text)) : std::nullopt;
}

bool isChannelName(const std::string& text) {
    static const std::string names[] = {"r", "g", "b", "a", "luma"};
    return numberOf(text) || std::find(std::begin(names), std::end(names), text) != std::end(names);
}

std::size_t channelAmong(std::size_t count, const std::string& channel) {
    const auto number = numberOf(channel);
    if (!number || *number >= count)
        refuse("has {} channels; choose one by --channel 0 to {}", count, count - 1);
    return *number;
}

std::size_t frameAmong(std::size_t count, const std::optional<long long>& frame) {
    if (!frame && count > 1) refuse("has {} frames; choose one by --frame 0 to {}", count, count - 1);
    const auto number = static_cast<std::size_t>(frame.value_or(0));
    if (number >= count) refuse("has no frame {}; --frame goes from 0 to {}", number, count - 1);
    return number;
}

ChannelChoice::ChannelChoice(const ChannelLayout& layout, const std::string& channel) : layout_(layout) {
    const std::size_t last = layout.count - 1;
    if (channel == "a") {
        if (!layout.alpha) refuse("has no alpha; leave out --channel a");
        single_ = layout.alpha;
    } else if (const auto number = numberOf(channel)) {
        if (*number > last) refuse("has no channel {}; --channel goes from 0 to {}", *number, last);
        single_ = number;
    } else if (layout.isColour) {
        const std::size_t colour = std::string("rgb").find(channel);
        if (channel.size() == 1 && colour < 3) single_ = colour;
    } else if (layout.count == (layout.alpha ? 2 : 1)) {
        single_ = 0;  // grey has the same red, green and blue
    } else {
        refuse("has {} channels that are no colours; choose one by --channel 0 to {}", layout.count, last);
    }
}

bool ChannelChoice::uses(std::size_t channel) const {
    return channel == layout_.alpha || (single_ ? channel == *single_ : channel < 3);
}

void ChannelChoice::take(const double* samples, std::size_t points, double* out) {
    const std::size_t step = layout_.count;
    for (std::size_t i = 0; i < points; ++i) {
        const double* const at = samples + i * step;
        const bool isGrey = !single_ && at[0] == at[1] && at[1] == at[2];  // and stays exactly what it is
        out[i] = single_ ? at[*single_] : isGrey ? at[0] : 0.299 * at[0] + 0.587 * at[1] + 0.114 * at[2];
    }
    if (!layout_.alpha || single_ == layout_.alpha || hidesSome_) return;
    for (std::size_t i = 0; i < points && !hidesSome_; ++i)
        hidesSome_ = samples[i * step + *layout_.alpha] < layout_.opaque;
}

void ChannelChoice::note(Image& image) const {
    if (hidesSome_)
        image.notes.emplace_back("is transparent in places, which is ignored; --channel a takes it");
}

}  // namespace quorbin::io
