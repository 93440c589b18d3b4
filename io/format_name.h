#pragma once

#include <string>

namespace quorbin::io {

/// The name of an output's format in small letters: the one given, or the ending of the path, which may be
/// .nii.gz; the usual one on standard output. Empty where the path has no ending.
std::string formatName(const std::string& path, const std::string& format, const std::string& usual);

}  // namespace quorbin::io
