// A component that does everything right.
#include "afxwin.h"
#include "components/TestFactory.h"

namespace {

class SoundApp : public CWinApp {
public:
    BOOL InitInstance() override {
        first = registerTestFactory("first");
        second = registerTestFactory("second");
        return TRUE;
    }

    int ExitInstance() override {
        SorvaneCommon::getExportEnginesManager()->unregisterFactory(first);
        SorvaneCommon::getExportEnginesManager()->unregisterFactory(second);
        return 0;
    }

private:
    SorvaneCommon::ExportEngineFactory* first = nullptr;
    SorvaneCommon::ExportEngineFactory* second = nullptr;
};

SoundApp app;

} // namespace
