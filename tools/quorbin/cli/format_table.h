#pragma once

#include <string>

namespace quorbin::tool {

/// What this build reads and writes, a line a format, as text in columns and as Markdown.
std::string textOfFormats();
std::string markdownOfFormats();

}  // namespace quorbin::tool
