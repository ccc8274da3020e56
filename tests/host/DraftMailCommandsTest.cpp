// The console program making DraftMail the mail client and taking that back.
#include "host/ScanExportFixture.h"

#include "host/Text.h"
#include "support/RawRegistry.h"

#include <gmock/gmock.h>

namespace {

constexpr char registered[] =
    "DraftMail is your mail client now. Messages become files in the folder Drafts among "
    "your documents.\n";
constexpr char refused[] =
    "scanexport: The registry's list of mail clients cannot be changed: access to it is denied.\n";

class DraftMailCommandsTest : public ScanExportFixture {
protected:
    DraftMailCommandsTest() {
        surroundings.mailClients = {HKEY_CURRENT_USER, clients};
        writeText(clients, L"", L"Other");
    }

    static void writeText(const std::wstring& key, const std::wstring& name, const std::wstring& text) {
        test::writeValue(key, name, {REG_SZ, test::bytesOfTerminated(text)});
    }

    void expectText(const std::wstring& key, const std::wstring& name, const std::wstring& text) const {
        const auto value = test::readValue(key, name);
        ASSERT_TRUE(value);
        EXPECT_EQ(value->bytes, test::bytesOfTerminated(text));
    }

    const std::wstring clients = L"SOFTWARE\\" + basePath + L"\\Clients\\Mail";
    const std::wstring own = clients + L"\\DraftMail";
};

TEST_F(DraftMailCommandsTest, TheDllBesideTheProgramBecomesTheClientHoweverOften) {
    for (int round = 0; round < 2; ++round) {
        console.output.clear();
        EXPECT_EQ(run({L"--register-draft-mail"}), 0);
        EXPECT_EQ(console.output, registered);
        expectText(clients, L"", L"DraftMail");
        expectText(own, L"DLLPath", host::programFolder() + L"\\DraftMail.dll");
    }
    EXPECT_EQ(console.errors, "");
}

TEST_F(DraftMailCommandsTest, WhatWasThereBeforeComesBack) {
    ASSERT_EQ(run({L"--register-draft-mail"}), 0);
    console.output.clear();

    EXPECT_EQ(run({L"--unregister-draft-mail"}), 0);

    EXPECT_EQ(console.output, "DraftMail is no longer registered. Programs use the mail client from before, "
                              "or a newer one, if any.\n");
    expectText(clients, L"", L"Other");
    EXPECT_FALSE(test::keyExists(own));
}

TEST_F(DraftMailCommandsTest, WhatIsNotRegisteredIsToldAbout) {
    EXPECT_EQ(run({L"--unregister-draft-mail"}), 1);
    EXPECT_EQ(console.errors, "scanexport: DraftMail is not registered.\n");
    EXPECT_EQ(console.output, "");
}

TEST_F(DraftMailCommandsTest, AnotherClientOfThatNameStays) {
    writeText(own, L"DLLPath", L"C:\\another.dll");

    EXPECT_EQ(run({L"--register-draft-mail"}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: A mail client named DraftMail that is not this one is registered already.\n");
    expectText(own, L"DLLPath", L"C:\\another.dll");
    expectText(clients, L"", L"Other");
}

TEST_F(DraftMailCommandsTest, ARefusalOfTheSystemIsToldAbout) {
    {
        const test::RestrictedRegistryKey restricted(clients, KEY_READ);
        EXPECT_EQ(run({L"--register-draft-mail"}), 1);
        EXPECT_EQ(console.errors, refused);
    }
    EXPECT_FALSE(test::keyExists(own));
    ASSERT_EQ(run({L"--register-draft-mail"}), 0);
    console.errors.clear();
    console.output.clear();
    {
        const test::RestrictedRegistryKey restricted(clients, KEY_READ);
        EXPECT_EQ(run({L"--unregister-draft-mail"}), 1);
        EXPECT_EQ(console.errors, refused);
    }
    EXPECT_EQ(console.output, "");
    expectText(clients, L"", L"DraftMail");
}

TEST_F(DraftMailCommandsTest, ADllThatIsMissingIsNamed) {
    surroundings.programFolder = folder.path();

    EXPECT_EQ(run({L"--register-draft-mail"}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The mail client " + folder.utf8() + "\\DraftMail.dll does not exist.\n");
    expectText(clients, L"", L"Other");
}

} // namespace
