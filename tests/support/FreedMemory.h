// Makes reads of freed memory show.
#pragma once

#include <list>
#include <string>

namespace test {

/// Writes over small blocks that were freed before, so that who still reads them finds something else.
inline void overwriteFreedMemory() {
    constexpr std::size_t largest = 1024;
    std::list<std::string> blocks;
    for (std::size_t size = 16; size <= largest; size += 8)
        for (int i = 0; i < 20; ++i)
            blocks.emplace_back(size - 1, 'x');
}

} // namespace test
