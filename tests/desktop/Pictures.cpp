// Picture files for tests.
#include "desktop/Pictures.h"

#include <windows.h>

#include <objidl.h>
#include <wincodec.h>
#include <wrl/client.h>

#include <map>
#include <stdexcept>
#include <utility>

extern "C" HRESULT WINAPI WICCreateImagingFactory_Proxy(UINT version, IWICImagingFactory** factory);

namespace test {
namespace {

using Microsoft::WRL::ComPtr;

void require(HRESULT result) {
    if (FAILED(result))
        throw std::runtime_error("the picture cannot be encoded: " + std::to_string(result));
}

/// @param redFirst  the order of the bytes
std::string halves(unsigned width, unsigned height, bool redFirst) {
    std::string bytes;
    bytes.reserve(std::size_t{width} * height * 3);
    for (unsigned y = 0; y < height; ++y)
        for (unsigned x = 0; x < width; ++x)
            bytes += (x < width / 2) == redFirst ? std::string("\xFF\0\0", 3) : std::string("\0\0\xFF", 3);
    return bytes;
}

std::string little(unsigned value, int bytes) {
    std::string result;
    for (int i = 0; i < bytes; ++i, value >>= 8)
        result += static_cast<char>(value & 0xFF);
    return result;
}

/// Appends a directory and what belongs to it to a TIFF file that ends with the directory's offset.
void appendTiffPage(std::string& file, unsigned width, unsigned height, unsigned orientation,
                    const std::string& pixels, bool last) {
    constexpr unsigned shortType = 3;
    constexpr unsigned longType = 4;
    constexpr unsigned entries = 11;
    const auto begin = static_cast<unsigned>(file.size());
    const unsigned bits = begin + 2 + entries * 12 + 4;
    const unsigned data = bits + 6;
    const auto size = static_cast<unsigned>(pixels.size());
    file += little(entries, 2);
    const auto entry = [&](unsigned tag, unsigned type, unsigned count, unsigned value) {
        file += little(tag, 2) + little(type, 2) + little(count, 4) + little(value, 4);
    };
    entry(256, longType, 1, width);
    entry(257, longType, 1, height);
    entry(258, shortType, 3, bits);
    entry(259, shortType, 1, 1); // not compressed
    entry(262, shortType, 1, 2); // RGB
    entry(273, longType, 1, data);
    entry(274, shortType, 1, orientation);
    entry(277, shortType, 1, 3);
    entry(278, longType, 1, height);
    entry(279, longType, 1, size);
    entry(284, shortType, 1, 1);
    file += little(last ? 0 : data + size, 4);
    file += little(8, 2) + little(8, 2) + little(8, 2) + pixels;
}

} // namespace

std::string encodedPicture(const std::string& format, unsigned width, unsigned height) {
    const std::map<std::string, GUID> containers = {{"bmp", GUID_ContainerFormatBmp},
                                                    {"gif", GUID_ContainerFormatGif},
                                                    {"jpg", GUID_ContainerFormatJpeg},
                                                    {"png", GUID_ContainerFormatPng}};
    ComPtr<IStream> stream;
    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICBitmapEncoder> encoder;
    ComPtr<IWICBitmapFrameEncode> frame;
    ComPtr<IWICBitmap> bitmap;
    ComPtr<IWICPalette> palette;
    std::string pixels = halves(width, height, false);
    require(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    require(WICCreateImagingFactory_Proxy(WINCODEC_SDK_VERSION, &factory));
    require(factory->CreateEncoder(containers.at(format), nullptr, &encoder));
    require(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache));
    require(encoder->CreateNewFrame(&frame, nullptr));
    require(frame->Initialize(nullptr));
    require(frame->SetSize(width, height));
    if (format == "gif") {
        WICColor colours[] = {0xFFFF0000, 0xFF0000FF};
        require(factory->CreatePalette(&palette));
        require(palette->InitializeCustom(colours, 2));
        require(frame->SetPalette(palette.Get()));
        std::string indices;
        for (std::size_t i = 0; i < pixels.size(); i += 3)
            indices += static_cast<char>(pixels[i] ? 1 : 0);
        WICPixelFormatGUID pixelFormat = GUID_WICPixelFormat8bppIndexed;
        require(frame->SetPixelFormat(&pixelFormat));
        require(frame->WritePixels(height, width, static_cast<UINT>(indices.size()),
                                   reinterpret_cast<BYTE*>(indices.data())));
    } else {
        WICPixelFormatGUID pixelFormat = GUID_WICPixelFormat24bppBGR;
        require(frame->SetPixelFormat(&pixelFormat));
        require(frame->WritePixels(height, width * 3, static_cast<UINT>(pixels.size()),
                                   reinterpret_cast<BYTE*>(pixels.data())));
    }
    require(frame->Commit());
    require(encoder->Commit());

    STATSTG state{};
    require(stream->Stat(&state, STATFLAG_NONAME));
    require(stream->Seek({}, STREAM_SEEK_SET, nullptr));
    std::string bytes(static_cast<std::size_t>(state.cbSize.QuadPart), '\0');
    ULONG count = 0;
    require(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count));
    return bytes;
}

std::string tiffPicture(unsigned pages, unsigned width, unsigned height, unsigned orientation) {
    std::string file = "II*" + std::string(1, '\0') + little(8, 4);
    const std::string pixels = halves(width, height, true);
    for (unsigned page = 1; page <= pages; ++page)
        appendTiffPage(file, width, height, orientation, pixels, page == pages);
    return file;
}

std::string emptyTiff(unsigned width, unsigned height) {
    std::string file = "II*" + std::string(1, '\0') + little(8, 4);
    appendTiffPage(file, width, height, 1, "", true);
    return file;
}

} // namespace test
