// Makes thumbnails out of page files.
#include "host/desktop/PageDecoder.h"

#include "SorvaneBase/bxdisk/File.h"
#include "host/GuardedCall.h"
#include "host/UniqueHandle.h"
#include "host/desktop/PageIcons.h"
#include "host/desktop/PictureOrientation.h"
#include "host/desktop/PictureShrinker.h"

#include <windows.h>

#include <shlwapi.h>
#include <wincodec.h>
#include <wrl/client.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>
#include <vector>

// Makes the factory without COM having been initialised on the thread. The compiler's headers lack it.
extern "C" HRESULT WINAPI WICCreateImagingFactory_Proxy(UINT version, IWICImagingFactory** factory);

namespace host {
namespace {

using Microsoft::WRL::ComPtr;

// Larger ones would keep the others waiting for many seconds.
constexpr std::uint64_t mostPixels = 400'000'000;
constexpr UINT longestRow = 1'000'000;
constexpr UINT stripBytes = 1 << 20;

/// Thrown where a picture cannot be had.
struct NoPicture {
    Thumbnail::Kind instead;
};

void require(HRESULT result) {
    if (FAILED(result))
        throw NoPicture{Thumbnail::Kind::Broken};
}

bool isCalledPicture(const std::wstring& path) {
    return PathMatchSpecW(path.c_str(), L"*.bmp;*.gif;*.jpe;*.jpeg;*.jpg;*.png;*.tif;*.tiff");
}

ComPtr<IWICBitmapDecoder> decoderFor(const std::wstring& path, const UniqueHandle& file) {
    ComPtr<IWICImagingFactory> factory;
    require(WICCreateImagingFactory_Proxy(WINCODEC_SDK_VERSION, &factory));
    ComPtr<IWICBitmapDecoder> decoder;
    const HRESULT result = factory->CreateDecoderFromFileHandle(
        reinterpret_cast<ULONG_PTR>(file.get()), nullptr, WICDecodeMetadataCacheOnDemand, &decoder);
    if (result == WINCODEC_ERR_COMPONENTNOTFOUND && !isCalledPicture(path))
        throw NoPicture{Thumbnail::Kind::Document};
    require(result);
    return decoder;
}

Thumbnail decode(const std::wstring& path, const UniqueHandle& file, int side,
                 const std::atomic<bool>& stopped) {
    if (!file)
        throw NoPicture{Thumbnail::Kind::Broken};
    const unsigned orientation = orientationOf(file.get());
    const ComPtr<IWICBitmapDecoder> decoder = decoderFor(path, file);
    UINT frames = 0;
    ComPtr<IWICBitmapFrameDecode> frame;
    UINT width = 0;
    UINT height = 0;
    require(decoder->GetFrameCount(&frames));
    require(decoder->GetFrame(0, &frame));
    require(frame->GetSize(&width, &height));
    if (width == 0 || height == 0)
        throw NoPicture{Thumbnail::Kind::Broken};
    if (width > longestRow || std::uint64_t{width} * height > mostPixels)
        throw NoPicture{Thumbnail::Kind::Document};

    ComPtr<IWICBitmapSource> pixels;
    require(WICConvertBitmapSource(GUID_WICPixelFormat32bppPBGRA, frame.Get(), &pixels));
    // The system's own scaler would be enough if it took the mean everywhere; under Wine it leaves pixels out, and
    // writing becomes illegible. In strips, because a page in full may take a gigabyte.
    PictureShrinker shrinker(width, height, side);
    const UINT stripRows = std::max(1U, stripBytes / (width * 4));
    std::vector<std::uint8_t> strip(std::size_t{width} * 4 * stripRows);
    for (UINT y = 0; y < height; y += stripRows) {
        if (stopped)
            throw NoPicture{Thumbnail::Kind::Document};
        const UINT rows = std::min(stripRows, height - y);
        const WICRect where{0, static_cast<INT>(y), static_cast<INT>(width), static_cast<INT>(rows)};
        require(pixels->CopyPixels(&where, width * 4, static_cast<UINT>(strip.size()), strip.data()));
        for (UINT row = 0; row < rows; ++row)
            shrinker.addRow(strip.data() + std::size_t{row} * width * 4);
    }
    Thumbnail thumbnail = turned(shrinker.picture(), orientation);
    thumbnail.frames = std::max(1U, frames);
    return thumbnail;
}

} // namespace

Thumbnail decodePage(const std::wstring& path, int side, const std::atomic<bool>& stopped) {
    // Opened here, so that it is closed after a crash as well.
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const UniqueHandle file(CreateFileW(bxdisk::File(path).getPath().c_str(), GENERIC_READ, shareAll, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    Thumbnail::Kind instead = Thumbnail::Kind::Broken;
    std::optional<Thumbnail> thumbnail;
    // A crash leaves it without a thumbnail, as an exception does.
    callGuarded([&] {
        try {
            thumbnail = decode(path, file, side, stopped);
        } catch (const NoPicture& reason) {
            instead = reason.instead;
        } catch (const std::bad_alloc&) {
            instead = Thumbnail::Kind::Document;
        }
    });
    if (thumbnail)
        return std::move(*thumbnail);
    return instead == Thumbnail::Kind::Document ? documentIcon(side) : brokenIcon(side);
}

} // namespace host
