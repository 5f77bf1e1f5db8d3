#pragma once

/// @file
/// Marks everything that the shared library exports to applications.

#if defined(_WIN32) && defined(MOXWRITER_BUILDING)
#define MOXWRITER_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define MOXWRITER_EXPORT __declspec(dllimport)
#else
#define MOXWRITER_EXPORT __attribute__((visibility("default")))
#endif
