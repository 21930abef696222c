#pragma once

// ZENTU_UTILITIES_API marks what the ZentuUtilities library exports; everything else stays hidden.
#if defined(_WIN32)
#if defined(ZENTU_UTILITIES_BUILDING)
#define ZENTU_UTILITIES_API __declspec(dllexport)
#else
#define ZENTU_UTILITIES_API __declspec(dllimport)
#endif
#else
#define ZENTU_UTILITIES_API __attribute__((visibility("default")))
#endif

// ZENTU_PRINTF_FORMAT lets the compiler check printf-style arguments against their format.
#if defined(__GNUC__) || defined(__clang__)
#define ZENTU_PRINTF_FORMAT(formatIndex, firstArgument) \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define ZENTU_PRINTF_FORMAT(formatIndex, firstArgument)
#endif
