// What all factories have in common: a name and an icon.
#pragma once

#include "BXImage/Image.h"
#include "SorvaneCommon/Api.h"
#include "SorvaneCommon/ExportEngineFactory.h"

namespace ExportUtils {

/// Base class of factories; concrete ones set `name` and `icon` in their constructor.
class SORVANECOMMON_API ExportFactoryBase : public SorvaneCommon::ExportEngineFactory {
public:
    ExportFactoryBase();

    const Sorvane::u8string& getName() const override;
    bool getIcon(bxbase::Reference<BXImage::Image>& icon) const override;

    /// Slot 7, behind createEngine.
    virtual ~ExportFactoryBase();

protected:
    Sorvane::u8string name;
    bxbase::Reference<BXImage::Image> icon;
};

} // namespace ExportUtils
