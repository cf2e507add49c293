#pragma once

// Marks what the shared library exports; everything else stays hidden.
#if defined(__GNUC__) || defined(__clang__)
#define KOLVANE_API __attribute__((visibility("default")))
#else
#define KOLVANE_API
#endif
