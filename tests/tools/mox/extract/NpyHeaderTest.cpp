#include "extract/npyHeader.h"

#include <gtest/gtest.h>

using MoxTool::npyHeader;

TEST(NpyHeader, IsWhatNumPyWrites) {
    const auto header = npyHeader("<f4", 2, 3);
    EXPECT_EQ(header, std::string("\x93NUMPY\x01\x00\x76\x00", 10) +
                          "{'descr': '<f4', 'fortran_order': False, 'shape': (2, 3), }" +
                          std::string(58, ' ') + "\n");
    EXPECT_EQ(header.size(), 128U);
}

TEST(NpyHeader, OneColumnIsOneDimension) {
    EXPECT_NE(npyHeader("<u4", 7, 1).find("'descr': '<u4', 'fortran_order': False, 'shape': (7,), }"),
              std::string::npos);
}

TEST(NpyHeader, LengthStaysAMultipleOf64WhateverTheShape) {
    for (std::size_t items = 1; items < 10'000'000'000; items *= 10) {
        EXPECT_EQ(npyHeader("<f4", items, 6).size(), 128U) << items;
    }
}
