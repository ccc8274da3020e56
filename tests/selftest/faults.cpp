// Does on demand what a correct program never does: faults.exe NAME
//
// The values that matter are volatile, or the compiler would see the fault and remove it.
#include "support/CrashReport.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

template <typename T> void use(T& value) {
    asm volatile("" : : "r"(&value) : "memory");
}

/// The pointer, as one that the compiler knows nothing about.
template <typename T> T* hidden(T* pointer) {
    asm volatile("" : "+r"(pointer));
    return pointer;
}

volatile std::size_t block = 24;
volatile int large = 0x7fffffff;
volatile int zero = 0;

void nothing() {
    std::string text(100, 'x');
    use(text);
    const std::unique_ptr<char, decltype(&std::free)> copy(_strdup("text"), std::free);
    use(*copy);
}

void overrunByWriting() {
    auto memory = std::make_unique<char[]>(32);
    hidden(memory.get())[32] = 'x';
}

void overrunByReading() {
    const auto memory = std::make_unique<char[]>(32);
    const char value = hidden(memory.get())[32];
    use(value);
}

void overrunWithinTheAlignment() {
    auto memory = std::make_unique<char[]>(block);
    hidden(memory.get())[block] = 'x';
}

void underrun() {
    auto memory = std::make_unique<char[]>(32);
    hidden(memory.get())[-1] = 'x';
}

void unterminatedText() {
    const auto memory = std::make_unique<char[]>(block);
    std::memset(memory.get(), 'x', block);
    const std::size_t length = std::strlen(hidden(memory.get()));
    use(length);
}

void useAfterFree() {
    char* memory = hidden(new char[32]);
    char* const stale = hidden(memory);
    delete[] memory;
    *hidden(stale) = 'x';
}

void useOfDeadText() {
    auto text = std::make_unique<std::string>(100, 'x');
    const char* const stale = hidden(text->c_str());
    text.reset();
    const char value = *hidden(stale);
    use(value);
}

void doubleFree() {
    void* memory = hidden(std::malloc(32));
    void* const stale = hidden(memory);
    std::free(memory);
    std::free(hidden(stale));
}

void freeInsideBlock() {
    char* memory = hidden(static_cast<char*>(std::malloc(32)));
    std::free(hidden(memory + 8));
}

void mallocThenDelete() {
    delete static_cast<int*>(hidden(std::malloc(sizeof(int))));
}

void newArrayThenDelete() {
    int* memory = hidden(new int[4]);
    delete hidden(memory);
}

void deleteAsSmaller() {
    struct Base {
        int value = 0;
    };
    struct Derived : Base {
        int more[10] = {};
    };
    Base* memory = hidden(static_cast<Base*>(new Derived));
    delete memory;
}

void faultInLateLibrary() {
    const HMODULE library = LoadLibraryW(L"late_fault.dll");
    const auto overrun =
        reinterpret_cast<void (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "overrun")));
    overrun();
}

void manyBlocks() {
    std::vector<std::unique_ptr<int>> blocks;
    for (int i = 0; i < 40'000; ++i)
        blocks.push_back(std::make_unique<int>(i));
    for (int i = 0; i < 40'000; ++i) {
        if (*blocks[static_cast<std::size_t>(i)] != i)
            std::exit(1);
    }
}

void signedOverflow() {
    large = large + 1;
}

void indexOutOfRange() {
    std::vector<int> values(4);
    use(values);
    values[static_cast<std::size_t>(large)] = 1;
}

void badAccess() {
    *hidden(reinterpret_cast<int*>(16)) = 1;
}

void divisionByZero() {
    large = large / zero;
}

void terminate() {
    std::terminate();
}

LRESULT CALLBACK crashingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP)
        badAccess();
    return DefWindowProcW(window, message, wParam, lParam);
}

void crashInWindowProcedure() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = crashingProcedure;
    windowClass.lpszClassName = L"Faults";
    RegisterClassW(&windowClass);
    const HWND window =
        CreateWindowW(L"Faults", L"", 0, 0, 0, 10, 10, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SendMessageW(window, WM_APP, 0, 0);
}

const std::map<std::string, void (*)()> faults = {
    {"nothing", nothing},
    {"overrunByWriting", overrunByWriting},
    {"overrunByReading", overrunByReading},
    {"overrunWithinTheAlignment", overrunWithinTheAlignment},
    {"underrun", underrun},
    {"unterminatedText", unterminatedText},
    {"useAfterFree", useAfterFree},
    {"useOfDeadText", useOfDeadText},
    {"doubleFree", doubleFree},
    {"freeInsideBlock", freeInsideBlock},
    {"mallocThenDelete", mallocThenDelete},
    {"newArrayThenDelete", newArrayThenDelete},
    {"deleteAsSmaller", deleteAsSmaller},
    {"faultInLateLibrary", faultInLateLibrary},
    {"manyBlocks", manyBlocks},
    {"signedOverflow", signedOverflow},
    {"indexOutOfRange", indexOutOfRange},
    {"badAccess", badAccess},
    {"divisionByZero", divisionByZero},
    {"terminate", terminate},
    {"crashInWindowProcedure", crashInWindowProcedure},
};

} // namespace

int main(int argc, char** argv) {
    reportCrashes();
    const auto fault = faults.find(argc == 2 ? argv[1] : "");
    if (fault == faults.end()) {
        std::fputs("usage: faults NAME\n", stderr);
        return 2;
    }
    fault->second();
    return 0;
}
