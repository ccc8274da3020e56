// The host's localised texts in the form that windows take.
#include "LocalizedText.h"

#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/bxutils/ResourceManager.h"

std::wstring localizedText(const char* section, const char* key) {
    std::wstring text;
    Sorvane::c_u8u16(text, bxutils::getResourceManager()->getText(section, key));
    return text;
}
