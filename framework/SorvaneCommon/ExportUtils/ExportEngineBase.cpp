// Keeps an engine's pages and parent window.
#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"

namespace ExportUtils {

ExportEngineBase::ExportEngineBase() = default;

ExportEngineBase::~ExportEngineBase() = default;

bool ExportEngineBase::addData(ExportDataItem* item) {
    pages.emplace_back(item);
    return true;
}

void ExportEngineBase::setParentWindow(CWnd* parent) {
    parentWindow = parent;
}

} // namespace ExportUtils
