// Registering the mail client and undoing it.
#include "draftmail/Registration.h"

#include "support/AllocationFaults.h"
#include "support/RawRegistry.h"
#include "support/ScopedRegistryKey.h"

#include <gmock/gmock.h>

#include <map>

namespace {

using draftmail::registerDraftMail;
using draftmail::unregisterDraftMail;
using test::bytesOf;
using test::bytesOfTerminated;
using test::keyExists;
using test::RawValue;
using test::readValue;
using test::writeValue;

/// A key with all below it: the values of each key by its path.
using Tree = std::map<std::wstring, std::map<std::wstring, RawValue>>;

void collect(Tree& tree, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    auto& values = tree[path];
    wchar_t name[256];
    DWORD size = 256;
    for (DWORD i = 0; RegEnumValueW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++i, size = 256)
        values[name] = *readValue(path, name);
    for (DWORD i = 0; RegEnumKeyExW(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++i, size = 256)
        collect(tree, path + L"\\" + name);
    RegCloseKey(key);
}

class RegistrationTest : public testing::Test {
protected:
    Tree tree() const {
        Tree result;
        collect(result, root);
        return result;
    }

    void writeDefault(const RawValue& value) const { writeValue(clients.path, L"", value); }
    RawValue text(const std::wstring& text) const { return {REG_SZ, bytesOfTerminated(text)}; }
    LSTATUS registerAs(const std::wstring& path) const { return registerDraftMail(clients, path); }
    LSTATUS registerIt() const { return registerAs(dll); }
    LSTATUS unregister() const { return unregisterDraftMail(clients); }

    const std::wstring root = L"Software\\BasicExportTest-" + std::to_wstring(GetCurrentProcessId());
    test::ScopedRegistryKey scope{root};
    draftmail::ClientsKey clients{HKEY_CURRENT_USER, root + L"\\Clients\\Mail"};
    const std::wstring own = clients.path + L"\\DraftMail";
    const std::wstring dll = L"C:\\P\\DraftMail.dll";
};

TEST_F(RegistrationTest, NamesTheDllAndMakesItTheClient) {
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    EXPECT_EQ(readValue(clients.path, L""), text(L"DraftMail"));
    EXPECT_EQ(readValue(own, L"DLLPath"), text(dll));
    EXPECT_EQ(readValue(own, L""), text(L"DraftMail"));
}

TEST_F(RegistrationTest, IsSeenAsLongAsItLasts) {
    writeValue(own, L"DLLPath", text(L"C:\\another.dll"));
    EXPECT_FALSE(draftmail::isDraftMailRegistered(clients));
    RegDeleteTreeW(HKEY_CURRENT_USER, own.c_str());
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    writeDefault(text(L"Newer"));
    EXPECT_TRUE(draftmail::isDraftMailRegistered(clients));
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_FALSE(draftmail::isDraftMailRegistered(clients));
}

TEST_F(RegistrationTest, LeavesNoKeyWhereThereWasNone) {
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_FALSE(keyExists(root));
}

TEST_F(RegistrationTest, LeavesAnEmptyKeyThatWasThere) {
    writeValue(root, L"kept", text(L"x"));
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, clients.path.c_str(), &key), ERROR_SUCCESS);
    RegCloseKey(key);
    const Tree before = tree();
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_EQ(tree(), before);
}

class EarlierClientTest : public RegistrationTest, public testing::WithParamInterface<RawValue> {};

TEST_P(EarlierClientTest, IsBackByteForByte) {
    writeDefault(GetParam());
    writeValue(clients.path + L"\\Other", L"DLLPath", text(L"C:\\other.dll"));
    const Tree before = tree();
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    EXPECT_EQ(readValue(clients.path, L""), text(L"DraftMail"));
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_EQ(tree(), before);
}

INSTANTIATE_TEST_SUITE_P(Values, EarlierClientTest,
                         testing::Values(RawValue{REG_SZ, bytesOfTerminated(L"Other")},
                                         RawValue{REG_SZ, bytesOfTerminated(L"")}, RawValue{REG_SZ, ""},
                                         RawValue{REG_SZ, bytesOf(L"Unterminated")},
                                         RawValue{REG_EXPAND_SZ, bytesOfTerminated(L"%Other%")},
                                         RawValue{REG_DWORD, bytesOf(7)},
                                         RawValue{REG_BINARY, "\x01\x02\x03"},
                                         RawValue{REG_SZ, bytesOfTerminated(std::wstring(5000, L'x'))}));

TEST_F(RegistrationTest, RegisteringAgainChangesOnlyThePath) {
    writeDefault(text(L"Other"));
    const Tree before = tree();
    ASSERT_EQ(registerAs(L"C:\\one.dll"), ERROR_SUCCESS);
    ASSERT_EQ(registerAs(L"C:\\two.dll"), ERROR_SUCCESS);
    EXPECT_EQ(readValue(own, L"DLLPath"), text(L"C:\\two.dll"));
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_EQ(tree(), before);
}

TEST_F(RegistrationTest, AClientRegisteredSinceStays) {
    writeDefault(text(L"Other"));
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    writeDefault(text(L"Newer"));
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_EQ(readValue(clients.path, L""), text(L"Newer"));
    EXPECT_FALSE(keyExists(own));
}

TEST_F(RegistrationTest, AClientRegisteredSinceComesBackAfterRegisteringAgain) {
    writeDefault(text(L"Other"));
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    writeDefault(text(L"Newer"));
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    EXPECT_EQ(readValue(clients.path, L""), text(L"DraftMail"));
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_EQ(readValue(clients.path, L""), text(L"Newer"));
}

TEST_F(RegistrationTest, KeysThatOthersUseMeanwhileStay) {
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    writeValue(clients.path + L"\\Other", L"DLLPath", text(L"y"));
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_EQ(readValue(clients.path + L"\\Other", L"DLLPath"), text(L"y"));
    EXPECT_EQ(readValue(clients.path, L""), std::nullopt);
}

TEST_F(RegistrationTest, AnotherClientOfThatNameIsLeftAlone) {
    writeValue(own, L"DLLPath", text(L"C:\\another.dll"));
    const Tree before = tree();
    EXPECT_EQ(registerIt(), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(tree(), before);
    EXPECT_EQ(unregister(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(tree(), before);
}

TEST_F(RegistrationTest, ADanglingNameIsBackToo) {
    writeDefault(text(L"draftMAIL"));
    const Tree before = tree();
    ASSERT_EQ(registerIt(), ERROR_SUCCESS);
    ASSERT_EQ(unregister(), ERROR_SUCCESS);
    EXPECT_EQ(tree(), before);
}

TEST_F(RegistrationTest, RefusesAPathThatSimpleMapiWouldNotFind) {
    for (const wchar_t* path :
         {L"", L"DraftMail.dll", L"..\\DraftMail.dll", L"\\DraftMail.dll", L"C:DraftMail.dll"})
        EXPECT_EQ(registerAs(path), ERROR_BAD_PATHNAME) << path;
    EXPECT_FALSE(keyExists(root));
    EXPECT_EQ(registerAs(L"\\\\server\\share\\DraftMail.dll"), ERROR_SUCCESS);
}

// Simple MAPI reads it into room for MAX_PATH characters.
TEST_F(RegistrationTest, RefusesAPathThatSimpleMapiCannotRead) {
    const std::wstring longest = L"C:\\" + std::wstring(MAX_PATH - 4, L'x');
    EXPECT_EQ(registerAs(longest + L"x"), ERROR_FILENAME_EXCED_RANGE);
    EXPECT_FALSE(keyExists(root));
    EXPECT_EQ(registerAs(longest), ERROR_SUCCESS);
}

/// Whether memory fails for a moment or for good.
class ShortMemoryRegistrationTest : public RegistrationTest, public testing::WithParamInterface<bool> {};

TEST_P(ShortMemoryRegistrationTest, LeavesEverythingAsItWas) {
    int number = 1;
    for (bool struck = true; struck; ++number) {
        test::AllocationFaults faults(number, GetParam());
        faults.arm();
        const LSTATUS status = registerIt();
        faults.disarm();
        struck = faults.hasStruck();
        EXPECT_EQ(status, struck ? ERROR_NOT_ENOUGH_MEMORY : ERROR_SUCCESS) << number;
        EXPECT_EQ(keyExists(root), !struck) << number;
    }
    EXPECT_GT(number, 5);
}

INSTANTIATE_TEST_SUITE_P(OnceOrForGood, ShortMemoryRegistrationTest, testing::Bool());

TEST_F(RegistrationTest, UnregisteringTellsThatThereIsNothing) {
    EXPECT_EQ(unregister(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(keyExists(root));
}

TEST_F(RegistrationTest, ARefusedKeyIsToldAndStaysAsItIs) {
    writeDefault(text(L"Other"));
    const Tree before = tree();
    {
        const test::RestrictedRegistryKey restricted(clients.path, KEY_READ);
        EXPECT_EQ(registerIt(), ERROR_ACCESS_DENIED);
    }
    EXPECT_EQ(tree(), before);
}

TEST_F(RegistrationTest, AFailureAtTheLastStepIsUndone) {
    writeDefault(text(L"Other"));
    const Tree before = tree();
    {
        const test::RestrictedRegistryKey restricted(clients.path, KEY_READ | KEY_CREATE_SUB_KEY);
        EXPECT_EQ(registerIt(), ERROR_ACCESS_DENIED);
    }
    EXPECT_EQ(tree(), before);
}

} // namespace
