#pragma once

#include <array>

namespace kd::tables {

/// One code page: the character of each byte, and the byte of each byte's capital.
struct PageTable {
    int number;
    const std::array<char16_t, 256>& decode;
    const std::array<unsigned char, 256>& upper;
};

extern const std::array<PageTable, 10> Pages;

}  // namespace kd::tables
