// Takes the picture of a dialog, shown by the real component over example settings.
#include "host/ComponentModule.h"
#include "host/DirectoryDialogControls.h"
#include "host/EnginesManager.h"
#include "host/FilePage.h"
#include "host/HostApplication.h"
#include "host/HostError.h"
#include "host/ZipDialogControls.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "bxbase/ReferencedImpl.h"

#include "afxwin.h"

#include <windows.h>

#include <wincodec.h>

#include <cstdio>
#include <cwchar>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr wchar_t registryBase[] = L"Sorvane\\DialogPicture";

/// A dialog of the component's.
struct Kind {
    const wchar_t* name;
    const char* factoryId;
    int pathEdit;
    int prefixEdit;
};

constexpr Kind kinds[] = {
    {L"directory", "com.brellix.sorvane.exportdata-factory.dir.file", host::directoryDialog::pathEdit,
     host::directoryDialog::prefixEdit},
    {L"zip", "com.brellix.sorvane.exportdata-factory.zip.file", host::zipDialog::pathEdit,
     host::zipDialog::prefixEdit},
};

struct Example {
    const wchar_t* language;
    const wchar_t* archive; ///< entered in the ZIP dialog, which offers nothing, as is the prefix
    const wchar_t* prefix;
    const wchar_t* recentFolders; ///< the first is the one offered
    const wchar_t* pageFolder;    ///< its name is offered as the start of the file names
};

constexpr Example examples[] = {
    {L"en", L"C:\\Scans\\Invoices 2024.zip", L"Invoice_",
     L"C:\\Scans\\Invoices;C:\\Scans\\Contracts;D:\\Archive\\2024\\Letters;\\\\office\\scans\\Incoming",
     L"C:\\Scanner\\Invoice"},
    {L"cs", L"C:\\Skeny\\Faktury 2024.zip", L"Faktura_",
     L"C:\\Skeny\\Faktury;C:\\Skeny\\Smlouvy;D:\\Archiv\\2024\\Dopisy;\\\\kancelar\\skeny\\Došlá pošta",
     L"C:\\Skener\\Faktura"},
};

template <class Entry, std::size_t count>
const Entry& find(const Entry (&entries)[count], const wchar_t* Entry::*name, const std::wstring& wanted) {
    for (const Entry& entry : entries)
        if (wanted == entry.*name)
            return entry;
    throw host::UsageError("There is no such dialog or language.");
}

void check(HRESULT result, const char* what) {
    if (FAILED(result))
        throw host::HostError(std::string("The picture cannot be written: ") + what + " failed.");
}

/// A COM object of the imaging library, released at the end.
template <class T> class Com {
public:
    Com() = default;
    ~Com() {
        if (object)
            object->Release();
    }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;

    T** operator&() { return &object; }
    T* operator->() const { return object; }
    T* get() const { return object; }

private:
    T* object = nullptr;
};

void writePng(HBITMAP bitmap, const std::wstring& path) {
    Com<IWICImagingFactory> factory;
    check(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                           reinterpret_cast<void**>(&factory)),
          "the imaging library");
    Com<IWICBitmap> pixels;
    check(factory->CreateBitmapFromHBITMAP(bitmap, nullptr, WICBitmapIgnoreAlpha, &pixels), "reading pixels");
    Com<IWICStream> stream;
    check(factory->CreateStream(&stream), "a stream");
    check(stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE), "making the file");
    Com<IWICBitmapEncoder> encoder;
    check(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder), "the PNG encoder");
    check(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache), "starting the encoder");
    Com<IWICBitmapFrameEncode> frame;
    check(encoder->CreateNewFrame(&frame, nullptr), "a frame");
    check(frame->Initialize(nullptr), "starting the frame");
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    check(frame->SetPixelFormat(&format), "the pixel format");
    check(frame->WriteSource(pixels.get(), nullptr), "writing pixels");
    check(frame->Commit(), "closing the frame");
    check(encoder->Commit(), "closing the file");
}

/// The window as it stands on the screen, with its title bar.
void photograph(HWND window, const std::wstring& path) {
    RECT area;
    GetWindowRect(window, &area);
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    const HDC windowDc = GetWindowDC(window);
    const HDC memoryDc = CreateCompatibleDC(windowDc);
    const HBITMAP bitmap = CreateCompatibleBitmap(windowDc, width, height);
    const HGDIOBJ previous = SelectObject(memoryDc, bitmap);
    BitBlt(memoryDc, 0, 0, width, height, windowDc, 0, 0, SRCCOPY);
    SelectObject(memoryDc, previous);
    writePng(bitmap, path);
    DeleteObject(bitmap);
    DeleteDC(memoryDc);
    ReleaseDC(window, windowDc);
}

const Kind* kind = nullptr;
const Example* example = nullptr;
std::wstring picturePath;
std::exception_ptr failure;

void enterIfEmpty(HWND dialog, int control, const wchar_t* text) {
    if (!GetWindowTextLengthW(GetDlgItem(dialog, control)))
        SetDlgItemTextW(dialog, control, text);
}

/// Timers come when nothing is left to paint, so the first one to see the dialog sees all of it.
void CALLBACK onTimer(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND dialog = GetActiveWindow();
    if (!dialog || !GetDlgItem(dialog, kind->pathEdit) || !IsWindowVisible(dialog))
        return;
    KillTimer(nullptr, timer);
    enterIfEmpty(dialog, kind->pathEdit, example->archive);
    enterIfEmpty(dialog, kind->prefixEdit, example->prefix);
    // Neither a selection nor a caret, which would look different each time.
    SendDlgItemMessageW(dialog, kind->pathEdit, EM_SETSEL, static_cast<WPARAM>(-1), 0);
    HideCaret(GetDlgItem(dialog, kind->pathEdit));
    // Without a window manager the title bar is drawn as that of a window in the background.
    SendMessageW(dialog, WM_NCACTIVATE, TRUE, 0);
    UpdateWindow(dialog);
    try {
        photograph(dialog, picturePath);
    } catch (...) {
        failure = std::current_exception();
    }
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

/// What the component has remembered of earlier exports.
class Settings {
public:
    explicit Settings(const host::HostApplication& application)
        : root(L"SOFTWARE\\" + application.getBaseRegistryPath()) {
        const std::wstring key =
            root + L"\\" + application.getRegistryVersion() + L"\\Components\\BasicExport";
        const std::wstring folders = example->recentFolders;
        RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"ExportPath", REG_SZ, folders.c_str(),
                        static_cast<DWORD>((folders.size() + 1) * sizeof(wchar_t)));
    }
    ~Settings() { RegDeleteTreeW(HKEY_CURRENT_USER, root.c_str()); }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

private:
    std::wstring root;
};

void takePicture(const std::wstring& page) {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::wstring folder(program, std::wcsrchr(program, L'\\'));
    if (!bxutils::getResourceManager()->loadLanguageFile(folder + L"\\lang\\" + example->language + L".ini"))
        throw host::HostError("The language file cannot be read.");

    host::HostApplication application(registryBase);
    const Settings settings(application);
    host::EnginesManager manager;
    host::ComponentModule component(folder + L"\\BasicExport.dll", manager);
    const HWND owner = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    bxbase::Reference<SorvaneCommon::ExportEngine> engine;
    manager.findFactory(kind->factoryId)->createEngine(CWnd::FromHandle(owner), engine);
    const auto pageFolder = std::make_shared<host::FileFolder>(example->pageFolder);
    for (int count = 0; count < 2; ++count) {
        const bxbase::Reference<host::FilePage> item(
            new bxbase::ReferencedImpl<host::FilePage>(page, pageFolder, nullptr));
        engine->addData(item.get());
    }
    SetTimer(nullptr, 0, 200, onTimer);
    engine->showDialog();
    engine.clear();
    DestroyWindow(owner);
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    try {
        if (argumentCount != 5)
            throw host::UsageError("usage: DialogPicture DIALOG LANGUAGE PAGE PICTURE");
        kind = &find(kinds, &Kind::name, arguments[1]);
        example = &find(examples, &Example::language, arguments[2]);
        picturePath = arguments[4];
        CoInitialize(nullptr);
        takePicture(arguments[3]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
