// Decodes an image that is stored in a module's resources.
#include "BXImage/Image.h"

#include "SorvaneBase/SorvaneException.h"

#include <windows.h>

#include <wincodec.h>
#include <wrl/client.h>

#include <array>
#include <cstdio>

// Makes the factory without COM having been initialised on the thread. The compiler's headers lack it.
extern "C" HRESULT WINAPI WICCreateImagingFactory_Proxy(UINT version, IWICImagingFactory** factory);

namespace BXImage {

namespace {

using Microsoft::WRL::ComPtr;

/// No icon comes near it; a damaged header that claims more must not take the memory.
constexpr UINT MAX_SIDE = 16384;

void report(SorvaneException& error, int line, const std::string& message) {
    error.reportError("framework/BXImage/FreeImageLoadFromResource", line, message);
}

HRESULT decodePng(BYTE* data, DWORD size, Bitmap& bitmap) {
    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICStream> stream;
    ComPtr<IWICBitmapDecoder> decoder;
    ComPtr<IWICBitmapFrameDecode> frame;
    ComPtr<IWICBitmapSource> pixels;
    UINT width = 0;
    UINT height = 0;
    HRESULT result = WICCreateImagingFactory_Proxy(WINCODEC_SDK_VERSION, &factory);
    if (SUCCEEDED(result))
        result = factory->CreateStream(&stream);
    if (SUCCEEDED(result))
        result = stream->InitializeFromMemory(data, size);
    if (SUCCEEDED(result))
        result = factory->CreateDecoder(GUID_ContainerFormatPng, nullptr, &decoder);
    if (SUCCEEDED(result))
        result = decoder->Initialize(stream.Get(), WICDecodeMetadataCacheOnDemand);
    if (SUCCEEDED(result))
        result = decoder->GetFrame(0, &frame);
    if (SUCCEEDED(result))
        result = WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, frame.Get(), &pixels);
    if (SUCCEEDED(result))
        result = pixels->GetSize(&width, &height);
    if (FAILED(result))
        return result;
    if (width == 0 || height == 0 || width > MAX_SIDE || height > MAX_SIDE)
        return WINCODEC_ERR_SOURCERECTDOESNOTMATCHDIMENSIONS;

    bitmap.width = static_cast<int>(width);
    bitmap.height = static_cast<int>(height);
    bitmap.pixels.resize(std::size_t{width} * height * 4);
    return pixels->CopyPixels(nullptr, width * 4, static_cast<UINT>(bitmap.pixels.size()),
                              bitmap.pixels.data());
}

} // namespace

Bitmap* FreeImage_LoadFromResource(int format, HMODULE module, const wchar_t* type, const wchar_t* name,
                                   SorvaneException& error) {
    if (format != FORMAT_PNG) {
        report(error, __LINE__, "Image format " + std::to_string(format) + " is not supported");
        return nullptr;
    }
    const HRSRC resource = FindResourceW(module, name, type);
    const HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
    void* const data = loaded ? LockResource(loaded) : nullptr;
    if (!data) {
        report(error, __LINE__, "Image resource not found, error " + std::to_string(GetLastError()));
        return nullptr;
    }
    auto bitmap = std::make_unique<Bitmap>();
    const HRESULT result = decodePng(static_cast<BYTE*>(data), SizeofResource(module, resource), *bitmap);
    if (FAILED(result)) {
        std::array<char, 64> message{};
        std::snprintf(message.data(), message.size(), "Image cannot be decoded, error 0x%08lX",
                      static_cast<unsigned long>(result));
        report(error, __LINE__, message.data());
        return nullptr;
    }
    return bitmap.release();
}

} // namespace BXImage
