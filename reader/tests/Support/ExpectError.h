#pragma once

#include "MoxReader/Error.h"

#include <gtest/gtest.h>

/// Runs the call and returns the Error that it throws; a call that throws none fails the test.
template <class Call>
MoxReader::Error errorOf(const Call& call) {
    try {
        call();
    } catch (const MoxReader::Error& error) {
        return error;
    }
    throw std::logic_error("no Error was thrown");
}

/// Expects the call to throw an Error of this code; a failure's text shows the names of the codes.
template <class Call>
void expectError(MoxReader::ErrorCode code, const Call& call) {
    EXPECT_EQ(MoxReader::errorName(code), MoxReader::errorName(errorOf(call).code()));
}
