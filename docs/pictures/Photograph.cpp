// A picture of a window.
#include "Photograph.h"

#include "host/HostError.h"

#include <wincodec.h>

namespace {

constexpr UINT bitsPerPixel = 24;

void check(HRESULT result, const char* what) {
    if (FAILED(result))
        throw host::HostError(std::string("The picture cannot be written: ") + what + " failed.");
}

/// A COM object of the imaging library, released at the end.
template <class T> class Com {
public:
    Com() = default;
    ~Com() {
        if (object)
            object->Release();
    }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;

    T** operator&() { return &object; }
    T* operator->() const { return object; }
    T* get() const { return object; }

private:
    T* object = nullptr;
};

UINT rowSize(UINT width) {
    return (width * bitsPerPixel + 31) / 32 * 4;
}

} // namespace

Photograph::Photograph(HWND window) {
    RECT area;
    GetWindowRect(window, &area);
    width = static_cast<UINT>(area.right - area.left);
    height = static_cast<UINT>(area.bottom - area.top);
    pixels.resize(static_cast<std::size_t>(rowSize(width)) * height);

    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = static_cast<LONG>(width);
    format.bmiHeader.biHeight = -static_cast<LONG>(height); // from the top
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = bitsPerPixel;
    const HDC windowDc = GetWindowDC(window);
    const HDC memoryDc = CreateCompatibleDC(windowDc);
    const HBITMAP bitmap =
        CreateCompatibleBitmap(windowDc, static_cast<int>(width), static_cast<int>(height));
    const HGDIOBJ previous = SelectObject(memoryDc, bitmap);
    BitBlt(memoryDc, 0, 0, static_cast<int>(width), static_cast<int>(height), windowDc, 0, 0, SRCCOPY);
    SelectObject(memoryDc, previous);
    GetDIBits(memoryDc, bitmap, 0, height, pixels.data(), &format, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memoryDc);
    ReleaseDC(window, windowDc);
}

void Photograph::writePng(const std::wstring& path) const {
    Com<IWICImagingFactory> factory;
    check(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                           reinterpret_cast<void**>(&factory)),
          "the imaging library");
    Com<IWICStream> stream;
    check(factory->CreateStream(&stream), "a stream");
    check(stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE), "making the file");
    Com<IWICBitmapEncoder> encoder;
    check(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder), "the PNG encoder");
    check(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache), "starting the encoder");
    Com<IWICBitmapFrameEncode> frame;
    check(encoder->CreateNewFrame(&frame, nullptr), "a frame");
    check(frame->Initialize(nullptr), "starting the frame");
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    check(frame->SetPixelFormat(&format), "the pixel format");
    check(frame->SetSize(width, height), "the size");
    check(frame->WritePixels(height, rowSize(width), static_cast<UINT>(pixels.size()),
                             const_cast<BYTE*>(pixels.data())),
          "writing pixels");
    check(frame->Commit(), "closing the frame");
    check(encoder->Commit(), "closing the file");
}
