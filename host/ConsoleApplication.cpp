// The host application of a program without windows: it answers questions itself.
#include "host/ConsoleApplication.h"

#include "host/OverwriteQuestion.h"
#include "host/Text.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace host {

using SorvaneCommon::MessageDlgResult;
using SorvaneCommon::MessageDlgType;

ConsoleApplication::ConsoleApplication(std::wstring basePath, Console& console, Overwrite overwrite,
                                       const FilePages& pages, SettingValues settings)
    : HostApplication(std::move(basePath)),
      settings(*HostApplication::getSettingsStore(), std::move(settings)), console(console),
      overwrite(overwrite) {
    pagesByIdentity.reserve(pages.size());
    for (const auto& page : pages)
        pagesByIdentity.push_back(page.get());
    std::ranges::sort(pagesByIdentity, std::less<>(), &FilePage::identity);
}

MessageDlgResult ConsoleApplication::showMessage(HWND, MessageDlgType type, const Sorvane::u8string& text,
                                                 const Sorvane::u8string&) {
    if (type != MessageDlgType::Question) {
        console.printError("scanexport: " + text + "\n");
        return MessageDlgResult::Ok;
    }
    const auto path = pathToOverwrite(text);
    const bool yes = path ? mayOverwrite(*path) : confirm(text);
    return yes ? MessageDlgResult::Yes : MessageDlgResult::No;
}

bool ConsoleApplication::mayOverwrite(const std::wstring& path) {
    if (isPage(path)) {
        protectedPage = true;
        console.printError("scanexport: " + utf8(path) +
                           " is itself a page to export and is not overwritten.\n");
        return false;
    }
    if (overwrite == Overwrite::Yes)
        return true;
    if (overwrite == Overwrite::Ask && console.canAsk())
        return confirm(utf8(path) + " exists already. Overwrite it?");
    console.printError("scanexport: Stopped, because " + utf8(path) + " exists already" +
                       (overwrite == Overwrite::Ask ? "; --overwrite=yes overwrites.\n" : ".\n"));
    return false;
}

bool ConsoleApplication::confirm(const std::string& question) {
    if (!console.canAsk())
        return false;
    const auto answer = console.ask(question + " [y/N] ");
    return answer && (answer->starts_with('y') || answer->starts_with('Y'));
}

bool ConsoleApplication::isPage(const std::wstring& path) const {
    const auto identity = identityOf(path);
    if (!identity)
        return false;
    for (auto candidate =
             std::ranges::lower_bound(pagesByIdentity, *identity, std::less<>(), &FilePage::identity);
         candidate != pagesByIdentity.end() && (*candidate)->identity() == *identity; ++candidate) {
        if (isSameFile((*candidate)->path(), path))
            return true;
    }
    return false;
}

} // namespace host
