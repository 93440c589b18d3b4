#pragma once

/// Version of the library, as text and as one number (major · 10000 + minor · 100 + patch).
#define QUORBIN_VERSION "0.1.0"
#define QUORBIN_VERSION_NUMBER 100
