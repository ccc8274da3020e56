// A component whose engine needs no dialog and crashes when it exports.
#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class CrashingEngine : public ExportUtils::ExportEngineBase {
public:
    bool showDialog() override { return true; }
    int exportData(void*, ExportErrorSink&) override { __builtin_trap(); }
};

class CrashingFactory : public TestFactory {
public:
    CrashingFactory() : TestFactory("com.brellix.sorvane.exportdata-factory.dir.file") {}

    bool isAvailable() const override { return true; }
    bool createEngine(CWnd*, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) override {
        engine = bxbase::Reference<SorvaneCommon::ExportEngine>(new bxbase::ReferencedImpl<CrashingEngine>);
        return true;
    }
};

class CrashingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        const bxbase::Reference<CrashingFactory> factory(new bxbase::ReferencedImpl<CrashingFactory>);
        SorvaneCommon::getExportEnginesManager()->registerFactory(factory.get());
        return TRUE;
    }
};

CrashingApp app;

} // namespace
