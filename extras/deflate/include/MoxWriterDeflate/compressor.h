#pragma once

/// @file
/// Which code does the work of compress2(), in a program that has libmoxwriter-deflate. In C, so that programs in
/// any language can look it up.

#ifdef __cplusplus
extern "C" {
#endif

enum MoxWriterCompressor {
    MOXWRITER_COMPRESSOR_ZLIB = 0,
    /// What the library begins with.
    MOXWRITER_COMPRESSOR_DEFLATE = 1,
};

/// Chooses for all threads of the process. Counts for calls of compress2() that begin afterwards.
void moxwriter_set_compressor(enum MoxWriterCompressor compressor);

/// What the next call of compress2() tries first.
enum MoxWriterCompressor moxwriter_compressor(void);

/// How many calls of compress2() libdeflate has completed in this process; the others were zlib's.
unsigned long long moxwriter_deflate_calls(void);

#ifdef __cplusplus
}
#endif
