// The console program: exports pages through the component.
#include "host/ScanExport.h"

#include "BXImage/Image.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneCommon/ExportEngine.h"
#include "afxwin.h"
#include "host/ComponentModule.h"
#include "host/ConsoleApplication.h"
#include "host/DialogPilot.h"
#include "host/EnginesManager.h"
#include "host/ExportTarget.h"
#include "host/GuardedExport.h"
#include "host/HostError.h"
#include "host/LanguageFile.h"
#include "host/Options.h"
#include "host/PageList.h"
#include "host/PagePosition.h"
#include "host/PrintingErrorSink.h"
#include "host/ProgressConsole.h"
#include "host/Text.h"
#include "host/ThreadLanguage.h"
#include "version.h"

#include <commctrl.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace host {
namespace {

using SorvaneCommon::ExportEngine;
using SorvaneCommon::ExportEngineFactory;

constexpr wchar_t programName[] = L"scanexport";

void loadLanguage(const Options& options, const Surroundings& surroundings) {
    const std::wstring& folder = surroundings.programFolder;
    if (options.language && !isLanguageOffered(folder, *options.language))
        throw UsageError("There is no language \"" + utf8(*options.language) + "\".");
    useLanguage(folder, options.language.value_or(preferredLanguage(folder, surroundings.uiLanguage)));
}

/// A message box of the component, answered in the way that changes nothing.
std::string dismiss(HWND box) {
    std::string text = utf8(messageBoxText(box));
    std::replace(text.begin(), text.end(), '\n', ' ');
    for (int answer : {IDCANCEL, IDNO, IDABORT, IDOK}) {
        if (HWND button = GetDlgItem(box, answer); button && IsWindowVisible(button)) {
            PostMessageW(button, BM_CLICK, 0, 0);
            break;
        }
    }
    return text;
}

class ExportRun {
public:
    ExportRun(const Options& options, ProgressConsole& console, const Surroundings& surroundings,
              const FilePages& pages, PagePosition& position)
        : options(options), console(console), surroundings(surroundings), pages(pages), position(position),
          target(makeExportTarget(options)) {}

    void checkBefore() const { target->checkBefore(pages); }

    SettingValues settings() const { return target->settings(); }

    Overwrite overwrite() const { return options.overwrite.value_or(target->defaultOverwrite()); }

    int run(const EnginesManager& manager, ConsoleApplication& application) {
        ExportEngineFactory* factory = manager.findFactory(target->factoryId());
        if (!factory || !factory->isAvailable())
            throw HostError("The component does not offer this kind of export.");

        OwnerWindow owner;
        bxbase::Reference<ExportEngine> engine;
        if (!factory->createEngine(&owner, engine))
            throw HostError("The component did not make an engine for this kind of export.");
        for (const auto& page : pages)
            engine->addData(page.get());

        const bool confirmed = options.showDialog ? showToPerson(*engine) : confirmForPerson(*engine);
        if (!confirmed)
            return exitStopped;
        target->checkObserved(pages);
        const auto replaced = target->fileReplacedUnasked();
        const bool allowed = !replaced || application.mayOverwrite(*replaced);
        target->beforeExport();
        const int code = allowed ? exportPages(*engine, application, owner) : exitStopped;
        if (code == exitStopped && application.hasProtectedPage())
            return exitFailed;
        if (code == exitDone)
            target->checkDone();
        if (code == exitDone && console.isWatched())
            console.print(std::to_string(pages.size()) + (pages.size() == 1 ? " page " : " pages ") +
                          target->outcome() + " " + target->destination() + ".\n");
        return code;
    }

private:
    /// Owns the engine's windows; never seen itself.
    class OwnerWindow : public CWnd {
    public:
        OwnerWindow() {
            CreateEx(0, AfxRegisterWndClass(0), programName, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
        }
        ~OwnerWindow() override { DestroyWindow(); }
    };

    bool isSettingsDialog(HWND window) const {
        return windowClass(window) == L"#32770" && GetDlgItem(window, target->tellingControl());
    }

    bool showToPerson(ExportEngine& engine) {
        DialogPilot pilot;
        pilot.then(
            "the settings dialog", [this](HWND window) { return isSettingsDialog(window); },
            [this](HWND dialog) {
                target->fillIn(dialog);
                return SetWindowSubclass(dialog, observeConfirmation, 0,
                                         reinterpret_cast<DWORD_PTR>(target.get())) != FALSE;
            });
        return engine.showDialog();
    }

    /// Sees the person press OK before the dialog does, while the entries are still there.
    static LRESULT CALLBACK observeConfirmation(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam,
                                                UINT_PTR id, DWORD_PTR target) noexcept {
        if (message == WM_COMMAND && wParam == MAKEWPARAM(IDOK, BN_CLICKED))
            reinterpret_cast<ExportTarget*>(target)->observe(dialog);
        if (message == WM_NCDESTROY)
            RemoveWindowSubclass(dialog, observeConfirmation, id);
        return DefSubclassProc(dialog, message, wParam, lParam);
    }

    bool confirmForPerson(ExportEngine& engine) {
        std::string refusal;
        DialogPilot pilot(surroundings.unattendedLimit);
        pilot.always(anyMessageBox(), [&](HWND box) {
            refusal = "The export to " + target->destination() + " is not possible: " + dismiss(box);
            return true;
        });
        pilot.then(
            "the settings dialog", [this](HWND window) { return isSettingsDialog(window); },
            [&](HWND dialog) {
                target->fillIn(dialog);
                target->observe(dialog);
                try {
                    target->checkObserved(pages);
                } catch (const HostError& error) {
                    refusal = error.what();
                }
                return click(refusal.empty() ? IDOK : IDCANCEL)(dialog);
            });
        // The dialog stays open behind a message box.
        pilot.always([&](HWND window) { return !refusal.empty() && isSettingsDialog(window); },
                     click(IDCANCEL));
        const bool confirmed = engine.showDialog();
        if (!refusal.empty())
            throw HostError(refusal);
        if (!confirmed)
            throw HostError("The settings dialog could not be confirmed: " + pilot.failure() + ".");
        return true;
    }

    int exportPages(ExportEngine& engine, ConsoleApplication& application, OwnerWindow& owner) {
        const bool isAttended = surroundings.isDesktopVisible();
        DialogPilot pilot(surroundings.unattendedLimit);
        if (isAttended)
            pilot.ignore([this](HWND window) { return target->isForeign(window); });
        pilot.always(anyMessageBox(), [&](HWND box) {
            return target->answer(
                box, [&application](const std::string& question) { return application.confirm(question); });
        });
        pilot.always(anyMessageBox(), [this](HWND box) {
            const bool isTwice = target->isToldByReason(utf8(messageBoxText(box)));
            const std::string text = dismiss(box);
            if (!isTwice)
                console.printError("scanexport: " + text + "\n");
            return true;
        });
        PrintingErrorSink errors(console, [this](const std::string& message) { return explain(message); });
        const int code = exportGuarded(engine, owner, errors);
        if (code == exitDone && !pilot.succeeded())
            throw HostError("The export to " + target->destination() +
                            " waited for somebody who was not there: " + pilot.failure() + ".");
        return code;
    }

    std::string explain(const std::string& message) const {
        const auto index = position.current();
        if (!index || !target->concernsPage(message))
            return target->sentenceFor(message);
        const FilePage& page = *pages[*index];
        std::string failure;
        try {
            checkPageFile(page.path());
            failure = "The page " + utf8(page.path()) +
                      " was not exported: " + target->reasonForFailure(page, *index, pages.size()) + ".";
        } catch (const HostError& error) {
            failure = error.what();
        }
        return failure;
    }

    const Options& options;
    ProgressConsole& console;
    const Surroundings& surroundings;
    const FilePages& pages;
    PagePosition& position;
    std::unique_ptr<ExportTarget> target;
};

/// What a loaded component finds around it, and the component itself. Gone again in the opposite order.
struct ComponentSession {
    ComponentSession(const Surroundings& surroundings, Console& console, Overwrite overwrite,
                     const FilePages& pages, SettingValues settings)
        : temporaryRoot(surroundings.temporaryFolder),
          application(surroundings.baseRegistryPath, console, overwrite, pages, std::move(settings)),
          component(surroundings.programFolder + L"\\BasicExport.dll", manager) {}

    /// The component asks for it, to name its prompts and to disable the other windows for the mail client.
    CWinApp program{programName};
    TemporaryRoot temporaryRoot;
    ConsoleApplication application;
    EnginesManager manager;
    ComponentModule component;
};

int printList(Console& console, const Surroundings& surroundings) {
    const FilePages noPages;
    const ComponentSession session(surroundings, console, Overwrite::No, noPages, {});
    for (const auto& factory : session.manager.getFactories()) {
        bxbase::Reference<BXImage::Image> icon;
        const std::string size = factory->getIcon(icon) ? std::to_string(icon->getWidth()) + "x" +
                                                              std::to_string(icon->getHeight())
                                                        : "no icon";
        console.print(std::string(factory->getId()) + "\t" + factory->getName() + "\t" + size + "\n");
    }
    return exitDone;
}

HostError clientsCannotBeChanged(LSTATUS status) {
    return HostError("The registry's list of mail clients cannot be changed: " +
                     reasonFor(static_cast<DWORD>(status)) + ".");
}

int registerMailClient(Console& console, const Surroundings& surroundings) {
    const std::wstring library = surroundings.programFolder + L"\\DraftMail.dll";
    if (!bxdisk::File(library).exists())
        throw HostError("The mail client " + utf8(library) + " does not exist.");
    const LSTATUS status = draftmail::registerDraftMail(surroundings.mailClients, library);
    if (status == ERROR_ALREADY_EXISTS)
        throw HostError("A mail client named DraftMail that is not this one is registered already.");
    if (status != ERROR_SUCCESS)
        throw clientsCannotBeChanged(status);
    console.print("DraftMail is your mail client now. Messages become files in the folder Drafts among your "
                  "documents.\n");
    return exitDone;
}

int unregisterMailClient(Console& console, const Surroundings& surroundings) {
    const LSTATUS status = draftmail::unregisterDraftMail(surroundings.mailClients);
    if (status == ERROR_FILE_NOT_FOUND)
        throw HostError("DraftMail is not registered.");
    if (status != ERROR_SUCCESS)
        throw clientsCannotBeChanged(status);
    console.print("DraftMail is no longer registered. Programs use the mail client from before, or a newer "
                  "one, if any.\n");
    return exitDone;
}

int exportPages(const Options& options, ProgressConsole& console, const Surroundings& surroundings) {
    if (options.showDialog && !surroundings.isDesktopVisible())
        throw HostError("--show-dialog is not possible, because there is no desktop to see the dialog on.");

    // The watcher is made before the pages that it looks at, and they before everything that holds them.
    PageList list;
    PagePosition position(list.pages, [&](std::size_t index) {
        console.showProgress("Exporting page " + std::to_string(index + 1) + " of " +
                             std::to_string(list.pages.size()));
    });
    list = collectPages(options.pages, &position);
    for (const std::string& remark : list.remarks)
        console.printError("scanexport: " + remark + "\n");
    if (list.pages.empty())
        throw HostError("There are no pages to export.");
    ExportRun run(options, console, surroundings, list.pages, position);
    run.checkBefore();

    ComponentSession session(surroundings, console, run.overwrite(), list.pages, run.settings());
    return run.run(session.manager, session.application);
}

} // namespace

int runScanExport(const std::vector<std::wstring>& arguments, Console& console,
                  const Surroundings& surroundings) {
    const ThreadLanguageKeeper language;
    ProgressConsole progress(console);
    try {
        const Options options = parseOptions(arguments);
        switch (options.command) {
        case Options::Command::Help:
            console.print(helpText);
            return exitDone;
        case Options::Command::Version:
            console.print("scanexport " PRODUCT_VERSION "\n");
            return exitDone;
        case Options::Command::List:
            loadLanguage(options, surroundings);
            return printList(progress, surroundings);
        case Options::Command::RegisterDraftMail:
            return registerMailClient(progress, surroundings);
        case Options::Command::UnregisterDraftMail:
            return unregisterMailClient(progress, surroundings);
        case Options::Command::Export:
            break;
        }
        loadLanguage(options, surroundings);
        return exportPages(options, progress, surroundings);
    } catch (const UsageError& error) {
        progress.printError("scanexport: " + std::string(error.what()) + " (--help explains the usage.)\n");
        return exitUsage;
    } catch (const std::exception& error) {
        progress.printError("scanexport: " + std::string(error.what()) + "\n");
        return exitFailed;
    }
}

} // namespace host
