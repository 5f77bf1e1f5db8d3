#pragma once

/// @file
/// Marks everything that the shared library exports to applications.

/// @def MOXWRITER_EXPORT
/// Stands before each class and function that applications use.

#if defined(_WIN32) && defined(MOXWRITER_BUILDING)
#define MOXWRITER_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define MOXWRITER_EXPORT __declspec(dllimport)
#else
#define MOXWRITER_EXPORT __attribute__((visibility("default")))
#endif
