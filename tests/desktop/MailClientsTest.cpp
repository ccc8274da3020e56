// Choosing among the mail clients of a system.
#include "host/desktop/MailClients.h"

#include "support/RawRegistry.h"
#include "support/ScopedRegistryKey.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

using host::MailClients;
using test::RawValue;
using test::readValue;
using test::writeValue;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MailClientsTest : public testing::Test {
protected:
    static RawValue text(const std::wstring& text) { return {REG_SZ, test::bytesOfTerminated(text)}; }

    static void addClient(const std::wstring& place, const std::wstring& key, const std::wstring& name) {
        writeValue(place + L"\\" + key, L"", text(name));
        writeValue(place + L"\\" + key, L"DLLPath", text(L"C:\\" + key + L".dll"));
    }

    static void setCurrent(const std::wstring& place, const std::wstring& key) {
        writeValue(place, L"", text(key));
    }

    std::vector<std::wstring> names() const {
        std::vector<std::wstring> names;
        for (const MailClients::Client& client : clients.all())
            names.push_back(client.name);
        return names;
    }

    const std::wstring root = L"Software\\BasicExportTest-" + std::to_wstring(GetCurrentProcessId());
    const test::ScopedRegistryKey scope{root};
    const std::wstring user = root + L"\\User";
    const std::wstring computer = root + L"\\Computer";
    const test::TempFolder folder;
    const std::wstring dll = folder.write(L"DraftMail.dll", "");
    const MailClients clients{{{HKEY_CURRENT_USER, user}, {HKEY_CURRENT_USER, computer}}, dll};
};

TEST(MailClientPlacesTest, BeginWithTheOneThatRegistrationChanges) {
    const auto places = host::mailClientPlaces();
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.front().root, draftmail::ClientsKey::ofThisSystem().root);
    EXPECT_EQ(places.back().root, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(places.back().path, L"Software\\Clients\\Mail");
}

TEST_F(MailClientsTest, AreOnlyDraftMailWhereThereAreNone) {
    EXPECT_EQ(clients.current(), L"");
    EXPECT_THAT(names(), ElementsAre(L"DraftMail"));
}

TEST_F(MailClientsTest, AreNoneWithoutTheDllOfDraftMail) {
    const MailClients without({{HKEY_CURRENT_USER, user}}, folder / L"missing.dll");
    EXPECT_THAT(without.all(), IsEmpty());
}

TEST_F(MailClientsTest, AreThoseOfTheUserAndTheComputerByName) {
    addClient(user, L"b", L"Pošta");
    addClient(computer, L"c", L"Anton");
    addClient(computer, L"d", L"");
    EXPECT_THAT(clients.all(),
                ElementsAre(MailClients::Client{L"c", L"Anton"}, MailClients::Client{L"d", L"d"},
                            MailClients::Client{L"DraftMail", L"DraftMail"},
                            MailClients::Client{L"b", L"Pošta"}));
}

TEST_F(MailClientsTest, AreListedOnceAsTheUserHasThem) {
    addClient(user, L"Post", L"Mine");
    addClient(computer, L"POST", L"Theirs");
    EXPECT_THAT(names(), ElementsAre(L"DraftMail", L"Mine"));
}

TEST_F(MailClientsTest, ThatTakeNoMessagesAreLeftOut) {
    writeValue(computer + L"\\Web", L"", text(L"Web"));
    writeValue(computer + L"\\Old", L"DLLPathEx", text(L"C:\\old.dll"));
    writeValue(computer + L"\\Office", L"MSIComponentID", text(L"{1}"));
    EXPECT_THAT(names(), ElementsAre(L"DraftMail", L"Office", L"Old"));
}

TEST_F(MailClientsTest, HaveTheCurrentOneAmongThemThoughItIsNotRegistered) {
    setCurrent(computer, L"Gone");
    EXPECT_THAT(names(), ElementsAre(L"DraftMail", L"Gone"));
}

TEST_F(MailClientsTest, CallTheCurrentOneByTheKeyThatNamesIt) {
    addClient(computer, L"Post", L"Post");
    setCurrent(computer, L"POST");
    EXPECT_THAT(clients.all(), testing::Contains(MailClients::Client{clients.current(), L"Post"}));
}

TEST_F(MailClientsTest, TheUsersChoiceCountsBeforeTheComputers) {
    setCurrent(computer, L"Theirs");
    EXPECT_EQ(clients.current(), L"Theirs");
    setCurrent(user, L"Mine");
    EXPECT_EQ(clients.current(), L"Mine");
}

TEST_F(MailClientsTest, AValueThatIsNoTextIsNoChoice) {
    for (const RawValue& value : {RawValue{REG_DWORD, test::bytesOf(7)}, RawValue{REG_SZ, ""},
                                  RawValue{REG_BINARY, "x"}, text(L"")}) {
        writeValue(user, L"", value);
        EXPECT_EQ(clients.current(), L"");
    }
}

TEST_F(MailClientsTest, ANameWithoutItsEndIsReadWhole) {
    writeValue(user, L"", {REG_SZ, test::bytesOf(L"Post")});
    EXPECT_EQ(clients.current(), L"Post");
}

TEST_F(MailClientsTest, ChoosingOneIsTheUsersOwn) {
    addClient(computer, L"Post", L"Post");
    setCurrent(computer, L"Other");
    EXPECT_EQ(clients.choose(L"Post"), ERROR_SUCCESS);
    EXPECT_EQ(clients.current(), L"Post");
    EXPECT_EQ(readValue(computer, L""), text(L"Other"));
}

TEST_F(MailClientsTest, ChoosingTheCurrentOneWritesNothing) {
    setCurrent(computer, L"Post");
    EXPECT_EQ(clients.choose(L"post"), ERROR_SUCCESS);
    EXPECT_FALSE(test::keyExists(user));
}

TEST_F(MailClientsTest, ChoosingDraftMailRegistersIt) {
    EXPECT_EQ(clients.choose(L"DraftMail"), ERROR_SUCCESS);
    EXPECT_EQ(clients.current(), L"DraftMail");
    EXPECT_EQ(readValue(user + L"\\DraftMail", L"DLLPath"), text(dll));
}

TEST_F(MailClientsTest, ChoosingNoneAfterDraftMailLeavesWhatWasThere) {
    addClient(computer, L"Post", L"Post");
    setCurrent(computer, L"Post");
    ASSERT_EQ(clients.choose(L"DraftMail"), ERROR_SUCCESS);
    EXPECT_EQ(clients.choose(L""), ERROR_SUCCESS);
    EXPECT_EQ(clients.current(), L"Post");
    EXPECT_FALSE(test::keyExists(user));
}

TEST_F(MailClientsTest, ChoosingTheOneFromBeforeDraftMailLeavesWhatWasThere) {
    addClient(computer, L"Post", L"Post");
    setCurrent(computer, L"Post");
    ASSERT_EQ(clients.choose(L"DraftMail"), ERROR_SUCCESS);
    EXPECT_EQ(clients.choose(L"Post"), ERROR_SUCCESS);
    EXPECT_FALSE(test::keyExists(user));
}

TEST_F(MailClientsTest, ChoosingAnotherAfterDraftMailUnregistersIt) {
    setCurrent(user, L"Before");
    ASSERT_EQ(clients.choose(L"DraftMail"), ERROR_SUCCESS);
    EXPECT_EQ(clients.choose(L"Post"), ERROR_SUCCESS);
    EXPECT_EQ(clients.current(), L"Post");
    EXPECT_FALSE(test::keyExists(user + L"\\DraftMail"));
}

TEST_F(MailClientsTest, AnotherClientNamedDraftMailIsOneLikeTheRest) {
    addClient(computer, L"DraftMail", L"Foreign");
    EXPECT_THAT(names(), ElementsAre(L"Foreign"));
    EXPECT_FALSE(clients.isDraftMail(L"DraftMail"));
    EXPECT_EQ(clients.choose(L"DraftMail"), ERROR_SUCCESS);
    EXPECT_EQ(clients.current(), L"DraftMail");
    EXPECT_FALSE(test::keyExists(user + L"\\DraftMail"));
}

TEST_F(MailClientsTest, ARefusalIsToldAndChangesNothing) {
    setCurrent(user, L"Before");
    addClient(user, L"Post", L"Post");
    const test::RestrictedRegistryKey restricted(user, KEY_READ);
    EXPECT_EQ(clients.choose(L"Post"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(clients.choose(L"DraftMail"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(clients.current(), L"Before");
}

} // namespace
