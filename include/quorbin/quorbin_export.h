#pragma once

/// Marks what the shared library exports; everything else is hidden.
#define QUORBIN_EXPORT __attribute__((visibility("default")))
