// The mail clients that Simple MAPI knows, and which of them it calls.
#include "host/desktop/MailClients.h"

#include "SorvaneBase/bxdisk/File.h"
#include "bxbase/RegistryKey.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {
namespace {

using bxbase::RegistryKey;
using draftmail::ClientsKey;

bool isSame(const std::wstring& one, const std::wstring& other) {
    return CompareStringOrdinal(one.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
}

RegistryKey open(HKEY root, const std::wstring& path, REGSAM access) {
    HKEY key = nullptr;
    return RegistryKey(RegOpenKeyExW(root, path.c_str(), 0, access, &key) == ERROR_SUCCESS ? key : nullptr);
}

/// The default value of a key; "" when it has none that is a text.
std::wstring textOf(HKEY key) {
    DWORD size = 0;
    if (RegGetValueW(key, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return {};
    std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(key, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &size) != ERROR_SUCCESS)
        return {};
    return text.substr(0, text.find(L'\0'));
}

std::wstring textOf(const ClientsKey& place) {
    const RegistryKey key = open(place.root, place.path, KEY_READ);
    return key ? textOf(key.get()) : L"";
}

bool takesMessages(HKEY client) {
    // Installers that mend their programs before these are called name them by the last.
    constexpr std::array names = {L"DLLPath", L"DLLPathEx", L"MSIComponentID"};
    return std::ranges::any_of(names, [client](const wchar_t* name) {
        return RegQueryValueExW(client, name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
    });
}

std::vector<std::wstring> keysBelow(HKEY key) {
    std::vector<std::wstring> names;
    wchar_t name[256]; // no key's name is longer
    DWORD size = 256;
    for (DWORD i = 0; RegEnumKeyExW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++i, size = 256)
        names.emplace_back(name);
    return names;
}

MailClients::Client* find(std::vector<MailClients::Client>& clients, const std::wstring& key) {
    const auto found = std::ranges::find_if(
        clients, [&key](const MailClients::Client& client) { return isSame(client.key, key); });
    return found == clients.end() ? nullptr : &*found;
}

void addFrom(const ClientsKey& place, std::vector<MailClients::Client>& clients) {
    const RegistryKey all = open(place.root, place.path, KEY_READ);
    if (!all)
        return;
    for (const std::wstring& name : keysBelow(all.get())) {
        const RegistryKey client = open(all.get(), name, KEY_READ);
        if (!client || !takesMessages(client.get()) || find(clients, name))
            continue;
        const std::wstring shown = textOf(client.get());
        clients.push_back({name, shown.empty() ? name : shown});
    }
}

bool comesBefore(const MailClients::Client& one, const MailClients::Client& other) {
    return CompareStringEx(LOCALE_NAME_USER_DEFAULT, LINGUISTIC_IGNORECASE, one.name.c_str(), -1,
                           other.name.c_str(), -1, nullptr, nullptr, 0) == CSTR_LESS_THAN;
}

} // namespace

std::vector<ClientsKey> mailClientPlaces() {
    std::vector<ClientsKey> places{ClientsKey::ofThisSystem()};
    if (places.front().root != HKEY_LOCAL_MACHINE)
        places.push_back({HKEY_LOCAL_MACHINE, places.front().path});
    return places;
}

MailClients::MailClients(std::vector<ClientsKey> places, std::wstring draftMailDll)
    : places(std::move(places)), draftMailDll(std::move(draftMailDll)) {}

std::wstring MailClients::current() const {
    for (const ClientsKey& place : places)
        if (std::wstring client = textOf(place); !client.empty())
            return client;
    return {};
}

std::vector<MailClients::Client> MailClients::all() const {
    std::vector<Client> clients;
    for (const ClientsKey& place : places)
        addFrom(place, clients);
    if (!find(clients, draftmail::clientName) && bxdisk::File(draftMailDll).exists())
        clients.push_back({draftmail::clientName, draftmail::clientName});
    const std::wstring key = current();
    // The registry does not tell capitals from small letters, but whoever compares keys does.
    if (Client* client = find(clients, key))
        client->key = key;
    else if (!key.empty())
        clients.push_back({key, key});
    std::ranges::sort(clients, comesBefore);
    return clients;
}

bool MailClients::isDraftMail(const std::wstring& key) const {
    if (!isSame(key, draftmail::clientName))
        return false;
    return draftmail::isDraftMailRegistered(own()) ||
           std::ranges::none_of(places, [](const ClientsKey& place) {
               return open(place.root, place.path + L"\\" + draftmail::clientName, KEY_READ) != nullptr;
           });
}

LSTATUS MailClients::choose(const std::wstring& key) const {
    if (isSame(key, current()))
        return ERROR_SUCCESS;
    if (isDraftMail(key))
        return draftmail::registerDraftMail(own(), draftMailDll);
    if (draftmail::isDraftMailRegistered(own())) {
        const LSTATUS status = draftmail::unregisterDraftMail(own());
        if (status != ERROR_SUCCESS)
            return status;
    }
    if (key.empty() || isSame(key, current()))
        return ERROR_SUCCESS;
    return RegSetKeyValueW(own().root, own().path.c_str(), nullptr, REG_SZ, key.c_str(),
                           static_cast<DWORD>((key.size() + 1) * sizeof(wchar_t)));
}

} // namespace host
