// How a picture is to be turned.
#include "host/desktop/PictureOrientation.h"

#include <cstdint>

namespace host {
namespace {

constexpr unsigned asItIs = 1;

enum class ByteOrder { Little, Big };

/// A number of two or four bytes; 0 behind the file's end.
unsigned numberAt(HANDLE file, std::uint64_t place, DWORD size, ByteOrder order) {
    std::uint8_t bytes[4] = {};
    OVERLAPPED where{};
    where.Offset = static_cast<DWORD>(place);
    where.OffsetHigh = static_cast<DWORD>(place >> 32);
    DWORD count = 0;
    if (!ReadFile(file, bytes, size, &count, &where) || count != size)
        return 0;
    unsigned number = 0;
    for (DWORD i = 0; i < size; ++i)
        number = number << 8 | bytes[order == ByteOrder::Big ? i : size - 1 - i];
    return number;
}

/// @param begin  where the TIFF structure begins, which EXIF data are too
unsigned orientationInTiff(HANDLE file, std::uint64_t begin) {
    constexpr unsigned orientationTag = 274;
    const unsigned mark = numberAt(file, begin, 2, ByteOrder::Big);
    if (mark != 0x4949 && mark != 0x4D4D)
        return asItIs;
    const ByteOrder order = mark == 0x4D4D ? ByteOrder::Big : ByteOrder::Little;
    if (numberAt(file, begin + 2, 2, order) != 42)
        return asItIs;
    const std::uint64_t directory = begin + numberAt(file, begin + 4, 4, order);
    const unsigned entries = numberAt(file, directory, 2, order);
    for (unsigned i = 0; i < entries; ++i) {
        const std::uint64_t entry = directory + 2 + std::uint64_t{i} * 12;
        if (numberAt(file, entry, 2, order) == orientationTag)
            return numberAt(file, entry + 8, 2, order);
    }
    return asItIs;
}

unsigned orientationInJpeg(HANDLE file) {
    // EXIF data come first or nearly so. A damaged file must not be searched to its end.
    constexpr std::uint64_t searched = 1 << 18;
    for (std::uint64_t place = 2; place < searched;) {
        const unsigned marker = numberAt(file, place, 2, ByteOrder::Big);
        if (marker == 0xFFE1 && numberAt(file, place + 4, 4, ByteOrder::Big) == 0x45786966)
            return orientationInTiff(file, place + 10);
        if (marker < 0xFFC0 || marker == 0xFFDA)
            break;
        place += 2 + numberAt(file, place + 2, 2, ByteOrder::Big);
    }
    return asItIs;
}

} // namespace

unsigned orientationOf(HANDLE file) {
    const bool isJpeg = numberAt(file, 0, 2, ByteOrder::Big) == 0xFFD8;
    const unsigned orientation = isJpeg ? orientationInJpeg(file) : orientationInTiff(file, 0);
    SetFilePointerEx(file, {}, nullptr, FILE_BEGIN);
    return orientation;
}

} // namespace host
