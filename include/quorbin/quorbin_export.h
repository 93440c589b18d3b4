#pragma once

/// Marks a class, function or table that the shared library exports; all others are hidden.
#define QUORBIN_EXPORT __attribute__((visibility("default")))
