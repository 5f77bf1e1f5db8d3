#pragma once

#include <cstddef>

#ifndef TEST_CASE_STRIDE
#define TEST_CASE_STRIDE 1
#endif

/// A test that tries thousands of cases, such as each bit of a file, takes every one of this number. It is 1 unless time
/// is short, as in CI (`MOXWRITER_CASE_STRIDE`) and with sanitizers, which make each case take some ten times as long;
/// and a prime there, so that all bits of a byte and all bytes of a record have their turn.
constexpr std::size_t CaseStride = TEST_CASE_STRIDE;
