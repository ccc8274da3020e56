// An export, from the engine's dialog to the result.
#include "host/desktop/ExportRun.h"

#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "afxwin.h"
#include "host/GuardedExport.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/desktop/EngineDialogs.h"
#include "host/desktop/ExportFailure.h"
#include "host/desktop/ExportWatch.h"
#include "host/desktop/ProgressWindow.h"
#include "host/desktop/ResultWindow.h"
#include "host/desktop/Texts.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Export";
constexpr int engineDone = 0;
constexpr int engineStopped = 2;

std::wstring byteSize(std::int64_t bytes) {
    wchar_t text[64] = L"";
    StrFormatByteSizeW(bytes, text, 64);
    return text;
}

/// Windows stay as they are while nobody handles their messages; this lets them paint, and answer other threads.
void letWindowsPaint() {
    // A window that never gets done with painting must not hold up the export.
    constexpr int enough = 100;
    MSG message;
    for (int count = 0;
         count < enough && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE);
         ++count)
        DispatchMessageW(&message);
}

std::optional<MSG> takeMessage(HWND window, UINT first, UINT last) {
    MSG message;
    if (!PeekMessageW(&message, window, first, last, PM_REMOVE))
        return std::nullopt;
    // It comes whatever was asked for.
    if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));
        return std::nullopt;
    }
    return message;
}

/// What was typed and clicked into windows that did not react was not meant for what they do now.
void dropInput() {
    constexpr std::pair<UINT, UINT> ranges[] = {
        {WM_KEYFIRST, WM_KEYLAST}, {WM_MOUSEFIRST, WM_MOUSELAST}, {WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK}};
    for (const auto& [first, last] : ranges)
        while (takeMessage(nullptr, first, last)) {
        }
}

/// Whether the person wants to close the owner. Whatever else they do to it waits for the end of the export.
bool isAskedToClose(HWND owner) {
    bool isAsked = false;
    while (const auto click = takeMessage(owner, WM_NCLBUTTONDOWN, WM_NCLBUTTONDOWN))
        isAsked |= click->wParam == HTCLOSE;
    while (takeMessage(owner, WM_CLOSE, WM_CLOSE))
        isAsked = true;
    MSG command;
    if (PeekMessageW(&command, owner, WM_SYSCOMMAND, WM_SYSCOMMAND, PM_NOREMOVE) &&
        command.message == WM_SYSCOMMAND && (command.wParam & 0xFFF0) == SC_CLOSE)
        isAsked = takeMessage(owner, WM_SYSCOMMAND, WM_SYSCOMMAND).has_value();
    return isAsked;
}

void log(const std::exception& error) {
    bxutils::getSystemLogFormater()->log(0, error.what(), "host/desktop/ExportRun", __LINE__);
}

/// Sees to the owner during an export: others learn when it is disabled because somebody asks the person something,
/// and the end of the Windows session is refused.
class OwnerGuard {
public:
    OwnerGuard(HWND owner, std::function<void(bool isEnabled)> whenEnabled)
        : owner(owner), whenEnabled(std::move(whenEnabled)) {
        ShutdownBlockReasonCreate(owner, localText(section, "Progress.Running").c_str());
        SetWindowSubclass(owner, procedure, subclassId, reinterpret_cast<DWORD_PTR>(this));
    }
    ~OwnerGuard() {
        RemoveWindowSubclass(owner, procedure, subclassId);
        ShutdownBlockReasonDestroy(owner);
    }
    OwnerGuard(const OwnerGuard&) = delete;
    OwnerGuard& operator=(const OwnerGuard&) = delete;

private:
    static constexpr UINT_PTR subclassId = 2000;

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR self) noexcept {
        if (message == WM_QUERYENDSESSION)
            return FALSE;
        if (message == WM_ENABLE)
            reinterpret_cast<OwnerGuard*>(self)->whenEnabled(wParam != FALSE);
        if (message == WM_NCDESTROY)
            RemoveWindowSubclass(window, procedure, id);
        return DefSubclassProc(window, message, wParam, lParam);
    }

    HWND owner;
    std::function<void(bool)> whenEnabled;
};

class ExportRun {
public:
    ExportRun(CWnd& owner, SorvaneCommon::ExportEngineFactory& factory, FilePages pages, ExportWatch& watch)
        : owner(owner), factory(factory), pages(std::move(pages)), watch(watch) {
        report.title = wide(factory.getName());
    }

    ExportResult run() {
        bxbase::Reference<SorvaneCommon::ExportEngine> engine;
        if (!factory.createEngine(&owner, engine)) {
            tellFailure({localText(section, "Failure.NotAvailable"), {}, {}, {}}, {});
            return ExportResult::Failed;
        }
        for (const auto& page : pages)
            engine->addData(page.get());
        if (!engine->showDialog())
            return ExportResult::Cancelled;
        dialogs.exportBegins();
        addUpSizes();
        ExportFailure failure(pages, watch, dialogs);
        return exportPages(*engine, failure);
    }

    const ExportReport& outcome() const { return report; }

private:
    void addUpSizes() {
        sizesBefore.reserve(pages.size());
        for (const auto& page : pages) {
            sizesBefore.push_back(totalSize);
            totalSize += page->size();
        }
    }

    Progress progressAt(std::size_t index) const {
        return {localText(section, "Progress.Page",
                          {{L"page", std::to_wstring(index + 1)}, {L"total", std::to_wstring(pages.size())}}),
                pages[index]->fileName(),
                localText(section, "Progress.Bytes",
                          {{L"done", byteSize(sizesBefore[index])}, {L"total", byteSize(totalSize)}}),
                totalSize ? static_cast<double>(sizesBefore[index]) / static_cast<double>(totalSize) : 0};
    }

    ExportResult exportPages(SorvaneCommon::ExportEngine& engine, ExportFailure& failure) {
        std::optional<std::size_t> last;
        int result = 0;
        try {
            ProgressWindow progress(
                owner,
                {report.title, localText(section, "Progress.Stop"), localText(section, "Progress.Stopping")},
                [this] { watch.stop(); });
            const OwnerGuard guard(owner, [&](bool isEnabled) { progress.standAside(!isEnabled); });
            const Running running(watch, pages, [&](std::size_t index) {
                if (isAskedToClose(owner))
                    owner.SendMessage(WM_CLOSE);
                if (!watch.hasRefused())
                    last = index;
                dialogs.forgetAnswers();
                progress.show(progressAt(index));
                letWindowsPaint();
            });
            result = exportGuarded(engine, owner, failure);
        } catch (const HostError& error) {
            log(error);
            return tellFailure({localText(section, "Failure.Crashed"), {}, {}, {}}, failure.details());
        } catch (const std::exception& error) {
            log(error);
            return tellFailure(failure.general(), failure.details());
        }
        // Before success is believed: an engine may pass over pages that it gets no data of.
        if (result == engineStopped || watch.hasRefused())
            return tellStopped(last.value_or(0));
        if (result == engineDone && failure.details().empty())
            return tellDone();
        if (result != engineDone && dialogs.isRefused() && !failure.isMailRefused())
            return tellStopped(std::nullopt);
        return tellFailure(failure.explanation(), failure.details());
    }

    /// The time of an export, as the watch knows it.
    class Running {
    public:
        Running(ExportWatch& watch, const FilePages& pages, std::function<void(std::size_t)> whenAtPage)
            : watch(watch) {
            watch.begin(pages, std::move(whenAtPage));
        }
        ~Running() { watch.end(); }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        ExportWatch& watch;
    };

    ExportResult tellDone() {
        report.kind = ExportReport::Kind::Done;
        report.text = localCount(section, "Result.Done", pages.size());
        showPlace();
        return ExportResult::Done;
    }

    /// @param done  how many pages were done by then, if that is known
    ExportResult tellStopped(std::optional<std::size_t> done) {
        report.kind = ExportReport::Kind::Stopped;
        report.text = localText(section, "Result.Stopped");
        if (done && *done == 0) {
            report.text += L'\n' + localText(section, "Result.Nothing");
        } else if (done && dialogs.place()) {
            // Pages that have no place may be nowhere, as those of a message that was not made.
            report.text += L'\n' + localCount(section, "Result.StoppedAfter", *done,
                                              {{L"total", std::to_wstring(pages.size())}});
            showPlace();
        }
        return ExportResult::Stopped;
    }

    ExportResult tellFailure(const Explanation& explanation, const std::wstring& details) {
        report.kind = ExportReport::Kind::Failed;
        report.text = explanation.sentence;
        if (!explanation.reason.empty())
            report.text += L'\n' + explanation.reason;
        report.path = explanation.path;
        report.pathLabel = localText(section, "Result.File");
        report.details = details;
        return ExportResult::Failed;
    }

    void showPlace() {
        const auto place = dialogs.place();
        if (!place || !bxdisk::File(*place).exists())
            return;
        report.path = *place;
        report.pathLabel = localText(section, "Result.Place");
        report.canOpen = true;
    }

    CWnd& owner;
    SorvaneCommon::ExportEngineFactory& factory;
    const FilePages pages;
    ExportWatch& watch;
    EngineDialogs dialogs;
    std::vector<std::int64_t> sizesBefore; ///< of the pages before each
    std::int64_t totalSize = 0;
    ExportReport report;
};

} // namespace

void showInFolder(const std::wstring& path) {
    if (bxdisk::File(path).isDirectory()) {
        ShellExecuteW(nullptr, L"open", path.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
        return;
    }
    // Windows takes "/" in paths of files, its shell does not.
    std::wstring shellPath = path;
    std::ranges::replace(shellPath, L'/', L'\\');
    if (PIDLIST_ABSOLUTE item = ILCreateFromPathW(shellPath.c_str())) {
        SHOpenFolderAndSelectItems(item, 0, nullptr, 0);
        ILFree(item);
    }
}

ExportResult runExport(CWnd& owner, SorvaneCommon::ExportEngineFactory& factory, FilePages pages,
                       ExportWatch& watch, const std::function<void(const std::wstring& path)>& open) {
    ExportReport report;
    ExportResult result = ExportResult::Cancelled;
    {
        ExportRun run(owner, factory, std::move(pages), watch);
        result = run.run();
        report = run.outcome();
    }
    if (result == ExportResult::Cancelled)
        return result;
    dropInput();
    ResultWindow(owner, report, open).DoModal();
    return result;
}

} // namespace host
