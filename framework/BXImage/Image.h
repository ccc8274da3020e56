// Decoded images.
#pragma once

#include "BXImage/Api.h"
#include "bxbase/ReferencedObject.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <vector>

class SorvaneException;

namespace BXImage {

/// Pixels in memory: rows from top to bottom, four bytes a pixel in the order blue, green, red, alpha, colours
/// not multiplied by alpha.
struct Bitmap {
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    std::vector<std::uint8_t> pixels;
};

/// Format codes of the image library, as far as this host decodes them.
constexpr int FORMAT_PNG = 13;

/// An image shared by reference count. Thread: the host's user-interface thread.
class BXIMAGE_API Image : public bxbase::ReferencedObject {
public:
    /// An image without pixels, 0 by 0.
    Image();
    virtual ~Image();

    /// Makes the image own `bitmap`, made by this library, and destroys what it held before. Null empties it.
    void Attach(Bitmap* bitmap);

    int getWidth() const noexcept;
    int getHeight() const noexcept;

    /// The pixels, or null. Valid until the next Attach or the end of the image.
    const Bitmap* getBitmap() const noexcept;

private:
    std::unique_ptr<Bitmap> bitmap;
};

/// Decodes an image that is stored in a module's resources.
/// @param format  FORMAT_PNG; others are refused
/// @param module  where to look; null is the program itself
/// @param type    the resource's type
/// @param name    its name, or an identifier made with MAKEINTRESOURCEW
/// @param error   receives the reason of a failure
/// @return a new bitmap, owned by the caller (pass it to Image::Attach), or null
BXIMAGE_API Bitmap* FreeImage_LoadFromResource(int format, HMODULE module, const wchar_t* type,
                                               const wchar_t* name, SorvaneException& error);

} // namespace BXImage
