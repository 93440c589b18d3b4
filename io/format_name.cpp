#include "format_name.h"

#include <algorithm>
#include <cctype>

namespace quorbin::io {

std::string formatName(const std::string& path, const std::string& format, const std::string& usual) {
    std::string name = format;
    if (name.empty() && path == "-") name = usual;
    const auto inSmallLetters = [](std::string text) {
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        return text;
    };
    if (!name.empty()) return inSmallLetters(name);
    const std::string file = inSmallLetters(path.substr(path.find_last_of('/') + 1));
    const std::size_t dot = file.find_last_of('.');
    if (dot == std::string::npos) return "";
    const std::string compressed = ".nii.gz";
    if (file.size() > compressed.size() && file.substr(file.size() - compressed.size()) == compressed)
        return compressed.substr(1);
    return file.substr(dot + 1);
}

}  // namespace quorbin::io
