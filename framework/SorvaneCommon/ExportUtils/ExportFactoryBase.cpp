// Keeps a factory's name and icon.
#include "SorvaneCommon/ExportUtils/ExportFactoryBase.h"

namespace ExportUtils {

ExportFactoryBase::ExportFactoryBase() = default;

ExportFactoryBase::~ExportFactoryBase() = default;

const Sorvane::u8string& ExportFactoryBase::getName() const {
    return name;
}

bool ExportFactoryBase::getIcon(bxbase::Reference<BXImage::Image>& result) const {
    if (!icon)
        return false;
    result = icon;
    return true;
}

} // namespace ExportUtils
