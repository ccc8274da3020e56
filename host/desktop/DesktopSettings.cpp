// What the program with a window remembers, beside what its components do.
#include "host/desktop/DesktopSettings.h"

#include "host/MailLimit.h"
#include "host/Text.h"

namespace host {
namespace {

constexpr char languageKey[] = "ScanHost.Language";
constexpr char windowPlaceKey[] = "ScanHost.WindowPlace";
constexpr char pageOrderKey[] = "ScanHost.PageOrder";
constexpr char orderByName[] = "name";
constexpr char orderByDate[] = "date";

const char* textOf(PageOrder order) {
    switch (order) {
    case PageOrder::Name:
        return orderByName;
    case PageOrder::Date:
        return orderByDate;
    case PageOrder::Own:
        break;
    }
    return "";
}

} // namespace

std::wstring DesktopSettings::language() const {
    return wide(read(languageKey));
}

std::optional<WindowPlace> DesktopSettings::windowPlace() const {
    return windowPlaceFrom(read(windowPlaceKey));
}

PageOrder DesktopSettings::pageOrder() const {
    const std::string text = read(pageOrderKey);
    if (text == orderByName)
        return PageOrder::Name;
    return text == orderByDate ? PageOrder::Date : PageOrder::Own;
}

std::optional<int> DesktopSettings::mailLimit() const {
    bool isNumber = false;
    const int kb = Sorvane::string2Int(read(mailLimitKey), isNumber);
    return kb > 0 && kb <= largestMailLimit ? std::optional(kb) : std::nullopt;
}

bool DesktopSettings::setLanguage(const std::wstring& code) {
    return language() == code || store.write(languageKey, utf8(code));
}

bool DesktopSettings::setWindowPlace(const WindowPlace& place) {
    const std::string text = textOf(place);
    return read(windowPlaceKey) == text || store.write(windowPlaceKey, text);
}

bool DesktopSettings::setPageOrder(PageOrder order) {
    return pageOrder() == order || store.write(pageOrderKey, textOf(order));
}

bool DesktopSettings::setMailLimit(std::optional<int> limit) {
    return mailLimit() == limit || store.write(mailLimitKey, std::to_string(limit.value_or(0)));
}

std::string DesktopSettings::read(const char* key) const {
    std::string value;
    store.read(key, value);
    return value;
}

} // namespace host
