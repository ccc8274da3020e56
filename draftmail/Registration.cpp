// Makes DraftMail the mail client that Simple MAPI calls, and undoes it.
#include "draftmail/Registration.h"

#include "bxbase/RegistryKey.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace draftmail {
namespace {

constexpr wchar_t dllPathValue[] = L"DLLPath";
/// Its existence tells our key from another client's.
constexpr wchar_t beforeKey[] = L"Before";
/// In it: the default value of the key of mail clients, when there was one ...
constexpr wchar_t clientBeforeValue[] = L"Client";
/// ... and how many keys had to be made down to the key of mail clients.
constexpr wchar_t keysMadeValue[] = L"KeysMade";
constexpr const wchar_t* defaultValue = nullptr;

using Key = bxbase::RegistryKey;

class RegistryError {
public:
    explicit RegistryError(LSTATUS status) : status(status) {}
    const LSTATUS status;
};

void check(LSTATUS status) {
    if (status != ERROR_SUCCESS)
        throw RegistryError(status);
}

/// For what may be missing: returns whether it was there.
bool checkFound(LSTATUS status) {
    if (status == ERROR_FILE_NOT_FOUND)
        return false;
    check(status);
    return true;
}

std::wstring below(const std::wstring& path, const wchar_t* name) {
    return path + L"\\" + name;
}

/// Whether it starts at a drive's root or a server.
bool isFullPath(const std::wstring& path) {
    const auto isSeparator = [](wchar_t c) { return c == L'\\' || c == L'/'; };
    return path.starts_with(L"\\\\") || (path.size() > 2 && path[1] == L':' && isSeparator(path[2]));
}

/// Null when there is no such key.
Key openKey(HKEY root, const std::wstring& path, REGSAM access) {
    HKEY key = nullptr;
    return Key(checkFound(RegOpenKeyExW(root, path.c_str(), 0, access, &key)) ? key : nullptr);
}

Key makeKey(HKEY root, const std::wstring& path, bool* made = nullptr) {
    HKEY key = nullptr;
    DWORD disposition = 0;
    check(RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                          &disposition));
    if (made)
        *made = disposition == REG_CREATED_NEW_KEY;
    return Key(key);
}

struct Value {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;

    friend bool operator==(const Value&, const Value&) = default;

    /// Names of keys, which is what the text is, come in any case.
    bool isText(const wchar_t* text) const {
        const std::wstring own(reinterpret_cast<const wchar_t*>(bytes.data()),
                               bytes.size() / sizeof(wchar_t));
        return type == REG_SZ && CompareStringOrdinal(own.c_str(), -1, text, -1, TRUE) == CSTR_EQUAL;
    }
};

std::optional<Value> readValue(HKEY key, const wchar_t* name) {
    Value value;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        DWORD size = 0;
        if (!checkFound(RegQueryValueExW(key, name, nullptr, nullptr, nullptr, &size)))
            return std::nullopt;
        value.bytes.resize(size);
        // An empty vector has no buffer, and without one the call would only tell the size.
        BYTE none = 0;
        status = RegQueryValueExW(key, name, nullptr, &value.type, size ? value.bytes.data() : &none, &size);
        value.bytes.resize(std::min<std::size_t>(size, value.bytes.size()));
    }
    check(status);
    return value;
}

/// Writes the value, or removes it when there is none to write.
void writeValue(HKEY key, const wchar_t* name, const std::optional<Value>& value) {
    if (!value) {
        checkFound(RegDeleteValueW(key, name));
        return;
    }
    // A text that has no NUL would get one if one happened to follow in memory.
    std::vector<BYTE> bytes = value->bytes;
    bytes.insert(bytes.end(), sizeof(wchar_t), 0xFF);
    check(RegSetValueExW(key, name, 0, value->type, bytes.data(), static_cast<DWORD>(value->bytes.size())));
}

Value textValue(const std::wstring& text) {
    const auto* bytes = reinterpret_cast<const BYTE*>(text.c_str());
    return {REG_SZ, {bytes, bytes + (text.size() + 1) * sizeof(wchar_t)}};
}

Value numberValue(DWORD number) {
    const auto* bytes = reinterpret_cast<const BYTE*>(&number);
    return {REG_DWORD, {bytes, bytes + sizeof number}};
}

DWORD numberIn(const std::optional<Value>& value) {
    DWORD number = 0;
    if (value && value->type == REG_DWORD && value->bytes.size() == sizeof number)
        std::copy(value->bytes.begin(), value->bytes.end(), reinterpret_cast<BYTE*>(&number));
    return number;
}

/// How many keys there are to make down to this one.
DWORD missingKeys(HKEY root, const std::wstring& path) {
    DWORD missing = 0;
    for (std::size_t end = 0; end != std::wstring::npos;) {
        end = path.find(L'\\', end + 1);
        missing += openKey(root, path.substr(0, end), KEY_READ) ? 0 : 1;
    }
    return missing;
}

/// Removes the innermost keys of a path, as long as they are empty.
void removeKeys(HKEY root, std::wstring path, DWORD count) {
    for (; count != 0; --count) {
        const Key key = openKey(root, path, KEY_READ);
        DWORD keys = 0;
        DWORD values = 0;
        if (!key ||
            RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                             nullptr, nullptr, nullptr) != ERROR_SUCCESS ||
            keys != 0 || values != 0)
            return;
        check(RegDeleteKeyW(root, path.c_str()));
        path.erase(std::min(path.rfind(L'\\'), path.size()));
    }
}

void restore(const ClientsKey& clients) {
    const std::wstring ownPath = below(clients.path, clientName);
    DWORD keysMade = 0;
    {
        const Key before = openKey(clients.root, below(ownPath, beforeKey), KEY_READ);
        if (!before)
            throw RegistryError(ERROR_FILE_NOT_FOUND);
        keysMade = numberIn(readValue(before.get(), keysMadeValue));
        const Key key = openKey(clients.root, clients.path, KEY_READ);
        const std::optional<Value> client = readValue(key.get(), defaultValue);
        const std::optional<Value> clientBefore = readValue(before.get(), clientBeforeValue);
        if (client && client->isText(clientName) && client != clientBefore)
            writeValue(openKey(clients.root, clients.path, KEY_WRITE).get(), defaultValue, clientBefore);
    }
    check(RegDeleteTreeW(clients.root, ownPath.c_str()));
    removeKeys(clients.root, clients.path, keysMade);
}

/// Everything but the last step, which makes DraftMail the client.
/// @param keysMade  how many keys it makes down to that of mail clients
void prepare(const ClientsKey& clients, const std::wstring& dllPath, DWORD keysMade) {
    const std::wstring ownPath = below(clients.path, clientName);
    bool isNew = false;
    const Key before = makeKey(clients.root, below(ownPath, beforeKey), &isNew);
    const Key key = openKey(clients.root, clients.path, KEY_READ);
    const std::optional<Value> client = readValue(key.get(), defaultValue);
    if (isNew)
        writeValue(before.get(), keysMadeValue, numberValue(keysMade));
    if (isNew || !client || !client->isText(clientName))
        writeValue(before.get(), clientBeforeValue, client);
    const Key own = makeKey(clients.root, ownPath);
    writeValue(own.get(), defaultValue, textValue(clientName));
    writeValue(own.get(), dllPathValue, textValue(dllPath));
}

/// Makes a code of what an action throws.
template <typename Action> LSTATUS statusOf(const Action& action) {
    try {
        action();
        return ERROR_SUCCESS;
    } catch (const RegistryError& error) {
        return error.status;
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

} // namespace

ClientsKey ClientsKey::ofThisSystem() {
    const bool isWine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    return {isWine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, L"Software\\Clients\\Mail"};
}

bool isDraftMailRegistered(const ClientsKey& clients) {
    HKEY key = nullptr;
    const std::wstring path = below(below(clients.path, clientName), beforeKey);
    return RegOpenKeyExW(clients.root, path.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS && Key(key);
}

LSTATUS registerDraftMail(const ClientsKey& clients, const std::wstring& dllPath) {
    return statusOf([&] {
        if (!isFullPath(dllPath))
            throw RegistryError(ERROR_BAD_PATHNAME);
        // Simple MAPI reads it into room for so many characters.
        if (dllPath.size() >= MAX_PATH)
            throw RegistryError(ERROR_FILENAME_EXCED_RANGE);
        const std::wstring ownPath = below(clients.path, clientName);
        const bool isRegistered = openKey(clients.root, below(ownPath, beforeKey), KEY_READ) != nullptr;
        if (!isRegistered && openKey(clients.root, ownPath, KEY_READ))
            throw RegistryError(ERROR_ALREADY_EXISTS);
        const DWORD keysMade = missingKeys(clients.root, clients.path);
        // Undoing must not need memory, which may be what there is none of.
        std::wstring innermost = clients.path;
        const LSTATUS status = statusOf([&] {
            prepare(clients, dllPath, keysMade);
            const Key key = openKey(clients.root, clients.path, KEY_WRITE);
            writeValue(key.get(), defaultValue, textValue(clientName));
        });
        if (status != ERROR_SUCCESS && !isRegistered) {
            RegDeleteTreeW(clients.root, ownPath.c_str());
            statusOf([&] { removeKeys(clients.root, std::move(innermost), keysMade); });
        }
        check(status);
    });
}

LSTATUS unregisterDraftMail(const ClientsKey& clients) {
    return statusOf([&] { restore(clients); });
}

} // namespace draftmail
