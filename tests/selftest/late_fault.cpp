// A library that is loaded late, and writes past the end of a block.
#include <memory>

extern "C" __declspec(dllexport) void overrun() {
    const auto memory = std::make_unique<char[]>(32);
    char* end = memory.get() + 32;
    asm volatile("" : "+r"(end));
    *end = 'x';
}
