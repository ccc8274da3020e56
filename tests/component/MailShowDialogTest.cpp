// What the mail engine takes from its dialog and keeps in the host's settings.
#include "MailExportFixture.h"

#include "host/DialogPilot.h"
#include "resource.h"
#include "support/DialogInspection.h"

#include <chrono>
#include <vector>

namespace {

using host::click;
using host::enterText;
using test::controlText;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class MailShowDialogTest : public MailExportFixture {
protected:
    using Action = host::DialogPilot::Action;

    /// Shows the engine's dialog, does the actions in it one by one and gives what showDialog() returned. The last
    /// action must close the dialog.
    bool show(std::vector<Action> actions) {
        host::DialogPilot pilot(std::chrono::seconds(30));
        for (Action& action : actions)
            pilot.then("the mail dialog", host::dialogWith(IDC_SEND_MAIL_SUBJECT), std::move(action));
        const bool confirmed = engine->showDialog();
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        return confirmed;
    }

    static Action expectSubject(std::wstring subject) {
        return test::now([subject = std::move(subject)](HWND window) {
            EXPECT_EQ(controlText(window, IDC_SEND_MAIL_SUBJECT), subject);
        });
    }
};

TEST_F(MailShowDialogTest, ConfirmedSubjectIsTheEnginesAndStored) {
    EXPECT_TRUE(show({enterText(IDC_SEND_MAIL_SUBJECT, L" Faktury říjen 漢"), click(IDOK)}));
    EXPECT_EQ(engine->data.subject, " Faktury říjen 漢");
    EXPECT_THAT(settings.written, ElementsAre(Pair("Export.ToMail.Subject", " Faktury říjen 漢")));
}

TEST_F(MailShowDialogTest, OffersTheStoredSubject) {
    settings.values["Export.ToMail.Subject"] = "Faktury říjen 漢";
    EXPECT_TRUE(show({expectSubject(L"Faktury říjen 漢"), click(IDOK)}));
    EXPECT_EQ(engine->data.subject, "Faktury říjen 漢");
}

TEST_F(MailShowDialogTest, WithoutStoredSubjectOffersNone) {
    EXPECT_TRUE(show({expectSubject(L""), click(IDOK)}));
    EXPECT_EQ(engine->data.subject, "");
    EXPECT_THAT(settings.written, ElementsAre(Pair("Export.ToMail.Subject", "")));
}

TEST_F(MailShowDialogTest, CancelledKeepsSubjectAndSetting) {
    settings.values["Export.ToMail.Subject"] = "stored";
    EXPECT_FALSE(show({enterText(IDC_SEND_MAIL_SUBJECT, L"typed"), click(IDCANCEL)}));
    EXPECT_EQ(engine->data.subject, "stored");
    EXPECT_THAT(settings.written, IsEmpty());
}

TEST_F(MailShowDialogTest, SubjectThatCannotBeStoredIsStillTheEngines) {
    settings.readOnly = true;
    EXPECT_TRUE(show({enterText(IDC_SEND_MAIL_SUBJECT, L"typed"), click(IDOK)}));
    EXPECT_EQ(engine->data.subject, "typed");
}

TEST_F(MailShowDialogTest, WithoutSettingsShowsNothing) {
    host.settingsStore = nullptr;
    engine->data.subject = "before";
    EXPECT_FALSE(show({}));
    EXPECT_EQ(engine->data.subject, "before");
}

TEST_F(MailShowDialogTest, BelongsToTheActiveWindowWhateverTheEnginesParent) {
    CWnd active;
    active.CreateEx(0, L"Static", L"active", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                    nullptr);
    SetActiveWindow(active);
    show({test::now([&](HWND window) {
              EXPECT_EQ(GetWindow(window, GW_OWNER), active.m_hWnd);
              EXPECT_FALSE(active.IsWindowEnabled());
              EXPECT_TRUE(owner.IsWindowEnabled());
          }),
          click(IDCANCEL)});
    EXPECT_TRUE(active.IsWindowEnabled());
}

TEST_F(MailShowDialogTest, UsesTheComponentsResourcesAndGivesTheStateBack) {
    // A host whose own module, which has no such dialog, is current when it calls.
    AFX_MODULE_STATE hostState(GetModuleHandleW(L"kernel32.dll"));
    const AFX_MAINTAIN_STATE2 hostIsCurrent(&hostState);
    EXPECT_TRUE(show({click(IDOK)}));
    EXPECT_EQ(AfxGetModuleState(), &hostState);
    EXPECT_FALSE(show({click(IDCANCEL)}));
    EXPECT_EQ(AfxGetModuleState(), &hostState);
    host.settingsStore = nullptr;
    EXPECT_FALSE(engine->showDialog());
    EXPECT_EQ(AfxGetModuleState(), &hostState);
}

TEST_F(MailShowDialogTest, ExportFollowsTheConfirmedSubject) {
    ASSERT_EQ(GetACP(), 1252U);
    EXPECT_TRUE(show({enterText(IDC_SEND_MAIL_SUBJECT, L"Caf\u00E9"), click(IDOK)}));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.calls.at(0).subject, "Caf\xE9");
}

// The limit, as the settings have it.

struct StoredLimit {
    const char* what;
    std::optional<std::string> text;
    bool asks; ///< about 1025 bytes
};

class StoredLimitTest : public MailShowDialogTest, public testing::WithParamInterface<StoredLimit> {};

TEST_P(StoredLimitTest, IsTheExports) {
    if (GetParam().text)
        settings.values["Export.ToMail.MaxTotalSizeInKb"] = *GetParam().text;
    EXPECT_TRUE(show({click(IDOK)}));
    addPage(L"a.tif", std::string(1025, 'a'));
    if (GetParam().asks) {
        EXPECT_EQ(runAndPress(IDNO), 1);
    } else {
        EXPECT_EQ(run(), 0);
    }
    EXPECT_EQ(client.calls.empty(), GetParam().asks);
}

INSTANTIATE_TEST_SUITE_P(
    Limits, StoredLimitTest,
    testing::Values(StoredLimit{"Absent", {}, false}, StoredLimit{"Empty", "", false},
                    StoredLimit{"NotANumber", "unlimited", false},
                    StoredLimit{"NumberWithAUnit", "1 KB", false}, StoredLimit{"Zero", "0", false},
                    StoredLimit{"Negative", "-1", false}, StoredLimit{"One", "1", true},
                    StoredLimit{"Two", "2", false}, StoredLimit{"WrapsToNegative", "2097152", false},
                    StoredLimit{"WrapsToZero", "4194304", false}, StoredLimit{"WrapsToOne", "4194305", true},
                    StoredLimit{"TooLarge", "99999999999", false}),
    [](const auto& info) { return std::string(info.param.what); });

TEST_F(MailShowDialogTest, LimitOfAnEarlierShowingDoesNotStay) {
    settings.values["Export.ToMail.MaxTotalSizeInKb"] = "1";
    EXPECT_TRUE(show({click(IDOK)}));
    EXPECT_EQ(engine->data.maxTotalSizeInKb, 1);
    settings.values.erase("Export.ToMail.MaxTotalSizeInKb");
    EXPECT_TRUE(show({click(IDOK)}));
    EXPECT_EQ(engine->data.maxTotalSizeInKb, 0);
}

} // namespace
