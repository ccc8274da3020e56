// Decoded images.
#include "BXImage/Image.h"

namespace BXImage {

Image::Image() = default;
Image::~Image() = default;

void Image::Attach(Bitmap* newBitmap) {
    bitmap.reset(newBitmap);
}

int Image::getWidth() const noexcept {
    return bitmap ? bitmap->width : 0;
}

int Image::getHeight() const noexcept {
    return bitmap ? bitmap->height : 0;
}

const Bitmap* Image::getBitmap() const noexcept {
    return bitmap.get();
}

} // namespace BXImage
