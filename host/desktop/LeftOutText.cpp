// Tells what was not added to the pages.
#include "host/desktop/LeftOutText.h"

#include "host/desktop/Reasons.h"
#include "host/desktop/Texts.h"

#include <algorithm>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Pages";
constexpr std::size_t mostNamed = 8;

std::wstring reasonOf(const LeftOut& leftOut) {
    switch (leftOut.why) {
    case LeftOut::Why::NoPage:
        return localText(section, "LeftOut.NoPage");
    case LeftOut::Why::NoPages:
        return localText(section, "LeftOut.NoPages");
    case LeftOut::Why::Unreadable:
        break;
    }
    return localReason(leftOut.error);
}

} // namespace

std::wstring leftOutText(const std::vector<LeftOut>& leftOut) {
    std::wstring text = localCount(section, "LeftOut", leftOut.size());
    const std::size_t named = std::min(leftOut.size(), mostNamed);
    for (std::size_t i = 0; i < named; ++i)
        text += L"\n\n" + leftOut[i].path + L'\n' + reasonOf(leftOut[i]);
    if (named < leftOut.size())
        text += L"\n\n" + localCount(section, "LeftOut.More", leftOut.size() - named);
    return text;
}

} // namespace host
