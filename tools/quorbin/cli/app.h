#pragma once

#include <memory>

#include <CLI/CLI.hpp>

namespace quorbin::tool {

/// The tool's command line, with all its commands.
std::unique_ptr<CLI::App> makeApp();

}  // namespace quorbin::tool
