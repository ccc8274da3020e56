// A host whose pages have no files: packs their copies into a ZIP archive, and can be killed at one of them.
// CopyingHost TEMPORARY_FOLDER ARCHIVE PAGES [KILLED_AT]
#include "SorvaneBase/SorvaneException.h"
#include "SorvaneCommon/ExportDataItem.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "bxbase/ReferencedImpl.h"
#include "host/ComponentModule.h"
#include "host/DialogPilot.h"
#include "host/EnginesManager.h"
#include "host/HostApplication.h"
#include "host/ProgramFolder.h"
#include "host/TemporaryRoot.h"
#include "host/ZipDialogControls.h"

#include "afxwin.h"

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <string>

namespace {

using host::zipDialog::pathEdit;

constexpr UINT killedExitCode = 9;

class DrawnPage : public ExportDataItem {
public:
    DrawnPage(int number, bool isKilled) : number(number), isKilled(isKilled) {}

    ExportFolder* getParentFolder() override { return nullptr; }
    void getFileName(Sorvane::u8string& name) override { name = "page.txt"; }
    bool getFilePath(std::wstring&) override { return false; }
    bool createDataCopy(std::wstring& path, SorvaneException&) override {
        std::wstring directory;
        if (!host::createPageCopyDirectory(directory))
            return false;
        path = directory + L"\\page.txt";
        std::FILE* file = _wfopen(path.c_str(), L"wb");
        if (!file)
            return false;
        std::fprintf(file, "page %d", number);
        std::fclose(file);
        // Nothing that would run at an ordinary end runs now.
        if (isKilled)
            TerminateProcess(GetCurrentProcess(), killedExitCode);
        return true;
    }

private:
    int number;
    bool isKilled;
};

} // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    if (argumentCount < 4)
        return 7;
    const int pages = _wtoi(arguments[3]);
    const int killedAt = argumentCount > 4 ? _wtoi(arguments[4]) : 0;

    const host::TemporaryRoot temporaryRoot(arguments[1]);
    const host::HostApplication application(L"BasicExportTests\\CopyingHost");
    host::EnginesManager manager;
    const host::ComponentModule component(host::programFolder() + L"\\BasicExport.dll", manager);
    CWnd owner;
    bxbase::Reference<SorvaneCommon::ExportEngine> engine;
    manager.findFactory("com.brellix.sorvane.exportdata-factory.zip.file")->createEngine(&owner, engine);
    for (int number = 1; number <= pages; ++number) {
        const bxbase::Reference<DrawnPage> page(
            new bxbase::ReferencedImpl<DrawnPage>(number, number == killedAt));
        engine->addData(page.get());
    }
    host::DialogPilot pilot(std::chrono::seconds(30));
    pilot.then("the ZIP dialog", host::dialogWith(pathEdit),
               host::inOrder({host::enterText(pathEdit, arguments[2]), host::click(IDOK)}));
    SorvaneException errors;
    return engine->showDialog() ? engine->exportData(nullptr, errors) : 2;
}
