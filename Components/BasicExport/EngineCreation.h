// How every factory of the component makes its engine.
#pragma once

#include "SorvaneCommon/ExportEngine.h"
#include "bxbase/Reference.h"
#include "bxbase/ReferencedImpl.h"

class CWnd;

/// Does what ExportEngineFactory::createEngine() promises, for one class of engine.
template <class Engine>
bool createEngineOf(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) {
    if (!parent)
        return false;
    bxbase::Reference<Engine> created(new bxbase::ReferencedImpl<Engine>);
    created->setParentWindow(parent);
    // The pointer is written, not assigned: whatever the handle held is not released, as the contract says.
    *engine.getAddressOf() = created.detach();
    return true;
}
