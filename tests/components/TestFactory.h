// The factory that the components for tests register.
#pragma once

#include "SorvaneCommon/ExportEnginesManager.h"
#include "SorvaneCommon/ExportUtils/ExportFactoryBase.h"
#include "bxbase/ReferencedImpl.h"

/// Offers an export that makes no engines.
class TestFactory : public ExportUtils::ExportFactoryBase {
public:
    explicit TestFactory(const char* id) : id(id) { name = id; }

    const char* getId() const override { return id; }
    bool isAvailable() const override { return false; }
    bool createEngine(CWnd*, bxbase::Reference<SorvaneCommon::ExportEngine>&) override { return false; }

private:
    const char* id;
};

/// Creates a factory and registers it, so that only the manager holds it.
inline SorvaneCommon::ExportEngineFactory* registerTestFactory(const char* id) {
    const bxbase::Reference<SorvaneCommon::ExportEngineFactory> factory(
        new bxbase::ReferencedImpl<TestFactory>(id));
    SorvaneCommon::getExportEnginesManager()->registerFactory(factory.get());
    return factory.get();
}
