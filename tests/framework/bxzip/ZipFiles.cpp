// Writes an archive as a process of its own: zip_files ARCHIVE [--wait] [--empty COUNT] [NAME FILE]...
//   --wait   says that it has written everything and waits to be killed
//   --empty  starts with empty entries, named by their numbers
#include "SorvaneBase/Text.h"
#include "SorvaneBase/bxzip/ZipWriterPtr.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <string>

namespace {

using Sorvane::utf8;

/// The path of a file without content, made beside the archive.
std::wstring makeEmptyFile(const std::wstring& archive) {
    std::wstring path = archive + L".empty";
    CloseHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    return path;
}

} // namespace

extern "C" int wmain(int argc, wchar_t** argv) {
    int next = 1;
    const auto take = [&] { return next < argc ? std::wstring(argv[next++]) : std::wstring(); };
    const std::wstring archive = take();
    bool waits = false;
    bxzip::ZipWriterPtr writer(nullptr);
    if (!writer.createZipFile(utf8(archive)))
        return EXIT_FAILURE;
    while (next < argc) {
        const std::wstring word = take();
        if (word == L"--wait") {
            waits = true;
        } else if (word == L"--empty") {
            const std::wstring empty = makeEmptyFile(archive);
            const long count = std::wcstol(take().c_str(), nullptr, 10);
            for (long i = 0; i < count; ++i)
                if (!writer.addItemFromFile(std::to_string(i), utf8(empty)))
                    return EXIT_FAILURE;
            DeleteFileW(empty.c_str());
        } else if (!writer.addItemFromFile(utf8(word), utf8(take()))) {
            return EXIT_FAILURE;
        }
    }
    if (waits) {
        std::puts("written");
        std::fflush(stdout);
        Sleep(INFINITE);
    }
    return EXIT_SUCCESS;
}
