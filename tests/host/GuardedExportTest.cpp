// What is left of the mail client's doings when an export has come back.
#include "host/GuardedExport.h"

#include "AfxModule.h"
#include "SorvaneBase/SorvaneException.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "afxwin.h"
#include "host/ComponentModule.h"
#include "host/DialogPilot.h"
#include "host/EnginesManager.h"
#include "host/GuardedCall.h"
#include "host/HostApplication.h"
#include "host/HostError.h"
#include "host/ProgramFolder.h"
#include "host/TemporaryRoot.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"
#include "support/ScopedRegistryKey.h"
#include "support/TempFolder.h"
#include "support/TestPage.h"
#include "support/mail/MailClient.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <chrono>
#include <list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using SorvaneCommon::ExportEngine;
using test::MailCall;
using test::MailClient;
using testing::MatchesRegex;
using testing::StartsWith;

std::wstring currentDirectory() {
    wchar_t path[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, path);
    return path;
}

/// A program with two windows, the first of which owns the engine's, with the real component and a mail client of the
/// test's.
class GuardedExportTest : public testing::Test {
protected:
    GuardedExportTest() {
        for (CWnd* window : {&owner, &other})
            window->CreateEx(0, L"Static", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 99, 99, nullptr,
                             nullptr);
        owner.SetActiveWindow();
        owner.SetFocus();
    }

    bxbase::Reference<ExportEngine> newEngine(CWnd& parent) {
        bxbase::Reference<ExportEngine> engine;
        auto* const factory = manager.findFactory("com.brellix.sorvane.exportdata-factory.mail.file");
        EXPECT_TRUE(factory && factory->createEngine(&parent, engine));
        engine->addData(&pages.emplace_back(folder.write(L"page.tif", "the page")));
        return engine;
    }

    int exportAnd(MailClient::Behaviour behaviour) {
        client.behaviour = std::move(behaviour);
        return host::exportGuarded(*newEngine(owner), owner, errors);
    }

    /// Exports, and expects that this fails with a crash. Returns the message for the user.
    std::string messageAfter(MailClient::Behaviour behaviour) {
        try {
            exportAnd(std::move(behaviour));
        } catch (const host::HostError& error) {
            return error.what();
        }
        ADD_FAILURE() << "nothing crashed";
        return {};
    }

    void expectUsable() {
        for (const CWnd* window : {&owner, &other}) {
            EXPECT_TRUE(!window->GetSafeHwnd() || window->IsWindowEnabled());
            EXPECT_EQ(window->m_nFlags & WF_STAYDISABLED, 0u);
        }
        EXPECT_EQ(GetCapture(), nullptr);
        // Nothing is left over that would make the next disabling a nested one.
        app.EnableModeless(FALSE);
        EXPECT_FALSE(other.IsWindowEnabled());
        app.EnableModeless(TRUE);
    }

    void expectOwnerActive() {
        EXPECT_EQ(GetActiveWindow(), owner.m_hWnd);
        EXPECT_EQ(GetFocus(), owner.m_hWnd);
    }

    const test::TempFolder folder;
    const test::TempFolder temporary;
    const std::wstring basePath = L"BasicExportTests\\guarded-" + std::to_wstring(GetCurrentProcessId());
    const test::ScopedRegistryKey key{L"SOFTWARE\\" + basePath};
    std::list<test::TestPage> pages;
    std::unique_ptr<host::TemporaryRoot> root = std::make_unique<host::TemporaryRoot>(temporary.path());
    host::HostApplication application{basePath};
    host::EnginesManager manager;
    std::optional<host::ComponentModule> component{std::in_place,
                                                   host::programFolder() + L"\\BasicExport.dll", manager};
    MailClient client;
    CWinApp app;
    CWnd owner;
    CWnd other;
    SorvaneException errors;
};

TEST_F(GuardedExportTest, ReturnsWhatTheEngineReturns) {
    EXPECT_EQ(exportAnd(test::returns(SUCCESS_SUCCESS)), 0);
    host::DialogPilot pilot(std::chrono::seconds(30));
    pilot.then("the prompt", host::anyMessageBox(), host::click(IDOK));
    EXPECT_EQ(exportAnd(test::returns(MAPI_E_FAILURE)), 1);
    EXPECT_EQ(errors.getReports().size(), 1u);
    EXPECT_EQ(client.finished, 2);
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr) << "the mail library is not given back";
}

TEST_F(GuardedExportTest, PutsTheCurrentDirectoryBack) {
    const std::wstring before = currentDirectory();
    std::wstring meanwhile;
    EXPECT_EQ(exportAnd([&](const MailCall& call) {
                  const ULONG result = test::changesDirectory(folder.path())(call);
                  meanwhile = currentDirectory();
                  return result;
              }),
              0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(meanwhile, folder.path());
    EXPECT_EQ(currentDirectory(), before);
}

TEST_F(GuardedExportTest, TellsWhereTheMailClientHasCrashed) {
    const std::string message = messageAfter(test::crashes());

    EXPECT_EQ(client.calls.size(), 1u);
    EXPECT_EQ(client.finished, 0);
    EXPECT_THAT(
        message,
        MatchesRegex("The export crashed with exception 0xc000\\w+ at guarded_export_tests.exe.0x\\w+,"
                     " and nobody knows whether the pages were taken over\\."));
}

TEST_F(GuardedExportTest, LeavesTheWindowsUsableAfterACrash) {
    bool enabled = true;
    messageAfter([&](const MailCall& call) {
        enabled = owner.IsWindowEnabled() || other.IsWindowEnabled() || GetCapture() != owner.m_hWnd ||
                  !(owner.m_nFlags & WF_STAYDISABLED);
        return test::crashes()(call);
    });
    EXPECT_FALSE(enabled) << "there was nothing to put right";
    expectOwnerActive();
    expectUsable();
}

TEST_F(GuardedExportTest, PutsTheCurrentDirectoryBackAfterACrash) {
    const std::wstring before = currentDirectory();
    messageAfter([&](const MailCall& call) {
        test::changesDirectory(folder.path())(call);
        EXPECT_EQ(currentDirectory(), folder.path());
        return test::crashes()(call);
    });
    EXPECT_EQ(currentDirectory(), before);
}

TEST_F(GuardedExportTest, CanExportAgainAfterACrash) {
    messageAfter(test::crashes());
    EXPECT_EQ(exportAnd(test::returns(SUCCESS_SUCCESS)), 0);
    EXPECT_EQ(client.finished, 1);
    expectUsable();
}

TEST_F(GuardedExportTest, SurvivesAnOwnerThatWasDestroyedBeforeTheCrash) {
    messageAfter([&](const MailCall& call) {
        test::destroysOwner()(call);
        return test::crashes()(call);
    });
    EXPECT_EQ(owner.m_hWnd, nullptr);
    expectUsable();
}

TEST_F(GuardedExportTest, EnablesAnOwnerThatTheMailClientHadDisabledBeforeTheCrash) {
    // Without an application object the component disables no window itself.
    AfxGetModuleState()->m_pCurrentWinApp = nullptr;
    messageAfter([&](const MailCall& call) {
        EXPECT_TRUE(owner.IsWindowEnabled());
        EnableWindow(call.owner(), FALSE);
        return test::crashes()(call);
    });
    EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST_F(GuardedExportTest, LeavesWindowsDisabledThatWereSoBeforeTheCrash) {
    owner.EnableWindow(FALSE);
    other.EnableWindow(FALSE);
    messageAfter(test::crashes());
    EXPECT_FALSE(owner.IsWindowEnabled());
    EXPECT_FALSE(other.IsWindowEnabled());
}

TEST_F(GuardedExportTest, MakesTheModuleStateOfBeforeCurrentAfterACrash) {
    AFX_MODULE_STATE* const before = AfxGetModuleState();
    AFX_MODULE_STATE another(GetModuleHandleW(L"kernel32.dll"));
    messageAfter([&](const MailCall& call) {
        AfxSetModuleState(&another);
        return test::crashes()(call);
    });
    EXPECT_EQ(AfxGetModuleState(), before);
}

TEST_F(GuardedExportTest, KeepsWhatHasCrashedLoaded) {
    HMODULE meanwhile = nullptr;
    const HMODULE extra = LoadLibraryW(L"library_without_mail.dll");
    ASSERT_NE(extra, nullptr);
    messageAfter([&](const MailCall& call) {
        meanwhile = GetModuleHandleW(L"mapi32.dll");
        return test::crashes()(call);
    });
    EXPECT_NE(meanwhile, nullptr);
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), meanwhile);
    FreeLibrary(extra);
    EXPECT_EQ(GetModuleHandleW(L"library_without_mail.dll"), extra);
}

TEST_F(GuardedExportTest, LeavesAComponentThatHasCrashedLoadedWhenItIsTakenAway) {
    const HMODULE module = GetModuleHandleW(L"BasicExport.dll");
    ASSERT_NE(module, nullptr);
    messageAfter(test::crashes());
    component.reset();
    EXPECT_EQ(GetModuleHandleW(L"BasicExport.dll"), module);
}

TEST_F(GuardedExportTest, DoesNotNoticeACrashThatTheMailClientHandles) {
    std::optional<host::Crash> handled;
    EXPECT_EQ(exportAnd(test::meanwhile(
                  [&] { handled = host::callGuarded([&] { test::crashes()(client.calls.back()); }); })),
              0);
    EXPECT_TRUE(handled);
    EXPECT_EQ(client.finished, 1);
    expectUsable();
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
}

TEST_F(GuardedExportTest, LetsExceptionsPassAndLeavesTheWindowsUsable) {
    const std::wstring before = currentDirectory();
    EXPECT_THROW(exportAnd(test::meanwhile([&] {
                     SetCurrentDirectoryW(folder.path().c_str());
                     throw std::length_error("list<T> too long");
                 })),
                 std::length_error);
    EXPECT_EQ(client.calls.size(), 1u);
    EXPECT_EQ(currentDirectory(), before);
    expectOwnerActive();
    expectUsable();
}

TEST_F(GuardedExportTest, LeavesTheWindowsUsableWhenTheMailClientEnablesItsOwner) {
    bool enabled = true;
    EXPECT_EQ(exportAnd([&](const MailCall& call) {
                  const ULONG result = test::enablesOwner()(call);
                  enabled = owner.IsWindowEnabled();
                  return result;
              }),
              0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_FALSE(enabled);
    expectOwnerActive();
    expectUsable();
}

TEST_F(GuardedExportTest, LeavesTheWindowsUsableWhenTheMailClientDestroysItsOwner) {
    EXPECT_EQ(exportAnd(test::destroysOwner()), 0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(owner.m_hWnd, nullptr);
    expectUsable();
}

TEST_F(GuardedExportTest, LetsTheHostsMessagesBeHandledMeanwhile) {
    struct Window : CWnd {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            got += message == WM_APP;
            return CWnd::WindowProc(message, wParam, lParam);
        }
        int got = 0;
    } window;
    window.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr);
    window.PostMessage(WM_APP);
    EXPECT_EQ(exportAnd(test::pumpsMessages()), 0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(window.got, 1);
    expectUsable();
}

TEST_F(GuardedExportTest, CanBeCalledBackInto) {
    const auto inner = newEngine(other);
    int innerResult = -1;
    bool enabled = true;
    EXPECT_EQ(exportAnd([&](const MailCall&) {
                  if (client.calls.size() == 1) {
                      innerResult = host::exportGuarded(*inner, other, errors);
                      enabled = owner.IsWindowEnabled();
                  }
                  return ULONG{SUCCESS_SUCCESS};
              }),
              0);
    EXPECT_EQ(client.finished, 2);
    EXPECT_EQ(innerResult, 0);
    EXPECT_FALSE(enabled);
    expectUsable();
}

TEST_F(GuardedExportTest, GoesOnAfterACrashOfTheExportInside) {
    const auto inner = newEngine(owner);
    std::string innerMessage;
    bool reachable = true;
    EXPECT_EQ(exportAnd([&](const MailCall& call) {
                  if (client.calls.size() == 2)
                      return test::crashes()(call);
                  try {
                      host::exportGuarded(*inner, owner, errors);
                  } catch (const host::HostError& error) {
                      innerMessage = error.what();
                  }
                  reachable = owner.IsWindowEnabled() || other.IsWindowEnabled() ||
                              !(owner.m_nFlags & WF_STAYDISABLED);
                  return ULONG{SUCCESS_SUCCESS};
              }),
              0);
    EXPECT_EQ(client.calls.size(), 2u);
    EXPECT_EQ(client.finished, 1);
    EXPECT_THAT(innerMessage, StartsWith("The export crashed with exception"));
    EXPECT_FALSE(reachable) << "while the outer export was running";
    expectOwnerActive();
    expectUsable();
}

TEST_F(GuardedExportTest, LeavesTheAttachmentsToAMailClientThatReadsThemWhenTheRunIsOver) {
    EXPECT_EQ(exportAnd(test::returns(SUCCESS_SUCCESS)), 0);
    ASSERT_EQ(client.calls.size(), 1u);
    ASSERT_EQ(client.calls[0].files.size(), 1u);
    root.reset();
    EXPECT_EQ(test::readFile(host::wide(client.calls[0].files[0].path.value())), "the page");
}

TEST_F(GuardedExportTest, GivesTheMailClientAttachmentsThatItCanReadWhateverTheTemporaryFolderIsCalled) {
    root.reset();
    root = std::make_unique<host::TemporaryRoot>(temporary / L"\u65E5\u672C\u0159\u03C9");
    std::string bytes(100, '\0');
    EXPECT_EQ(exportAnd([&](const MailCall& call) {
                  const host::UniqueHandle file(CreateFileA(call.files.at(0).path->c_str(), GENERIC_READ, 0,
                                                            nullptr, OPEN_EXISTING, 0, nullptr));
                  DWORD size = 0;
                  ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &size, nullptr);
                  bytes.resize(size);
                  return ULONG{SUCCESS_SUCCESS};
              }),
              0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(bytes, "the page");
}

} // namespace
