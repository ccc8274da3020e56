// What happens to the application's windows around the call of the mail client.
#include "SorvaneMailFixture.h"

#include "support/ImportHook.h"

#include <functional>
#include <utility>

namespace {

using testing::ElementsAre;

class SequenceTest;
SequenceTest* running = nullptr;

/// Writes down, in order, the component's calls that change windows, with the state of the parent's flag at each, and
/// the records of the log that came before them.
class SequenceTest : public SorvaneMailFixture {
public:
    void add(const std::string& event) {
        const std::vector<std::string> records = log.all();
        for (; logged < records.size(); ++logged)
            events.push_back("log: " + records[logged].substr(records[logged].find(' ', 2) + 1));
        events.push_back(event + ((parent.m_nFlags & WF_STAYDISABLED) ? ", held off" : ""));
    }

    std::string nameOf(HWND window) const {
        if (!window)
            return "null";
        return window == parent.m_hWnd || window == parentHandle ? "parent" : "another window";
    }

protected:
    class RecordingApp : public CWinApp {
    public:
        explicit RecordingApp(SequenceTest& test) : CWinApp(L"Host"), test(test) {}
        void EnableModeless(BOOL enable) override {
            test.add(enable ? "EnableModeless(TRUE)" : "EnableModeless(FALSE)");
            CWinApp::EnableModeless(enable);
        }

    private:
        SequenceTest& test;
    };

    SequenceTest() {
        running = this;
        hostState.m_pCurrentWinApp = &app;
        app.m_pMainWnd = &parent;
        client.behaviour = test::meanwhile([this] { add("MAPISendMail"); });
    }
    ~SequenceTest() override { running = nullptr; }

    std::vector<std::string> eventsOfSending(CWnd* owner) {
        const auto message = newMessage();
        events.clear();
        logged = log.all().size();
        EXPECT_TRUE(send(*message, owner));
        return std::exchange(events, {});
    }

    HWND parentHandle = parent.m_hWnd;
    RecordingApp app{*this};

private:
    static HWND WINAPI setCapture(HWND window) {
        running->add("SetCapture(" + running->nameOf(window) + ")");
        return SetCapturePointer(window);
    }
    static BOOL WINAPI releaseCapture() {
        running->add("ReleaseCapture()");
        return ReleaseCapturePointer();
    }
    static HWND WINAPI setFocus(HWND window) {
        running->add("SetFocus(" + running->nameOf(window) + ")");
        return SetFocusPointer(window);
    }
    static HWND WINAPI setActiveWindow(HWND window) {
        running->add("SetActiveWindow(" + running->nameOf(window) + ")");
        return SetActiveWindowPointer(window);
    }
    static BOOL WINAPI enableWindow(HWND window, BOOL enable) {
        running->add("EnableWindow(" + running->nameOf(window) + (enable ? ", TRUE)" : ", FALSE)"));
        return EnableWindowPointer(window, enable);
    }

    template <class Function> static Function* systems(const char* name) {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
    }
    // The system's own functions, past the hooks.
    inline static const auto SetCapturePointer = systems<HWND WINAPI(HWND)>("SetCapture");
    inline static const auto ReleaseCapturePointer = systems<BOOL WINAPI()>("ReleaseCapture");
    inline static const auto SetFocusPointer = systems<HWND WINAPI(HWND)>("SetFocus");
    inline static const auto SetActiveWindowPointer = systems<HWND WINAPI(HWND)>("SetActiveWindow");
    inline static const auto EnableWindowPointer = systems<BOOL WINAPI(HWND, BOOL)>("EnableWindow");

    test::ImportHook hooks[5]{{"SetCapture", reinterpret_cast<void*>(&setCapture)},
                              {"ReleaseCapture", reinterpret_cast<void*>(&releaseCapture)},
                              {"SetFocus", reinterpret_cast<void*>(&setFocus)},
                              {"SetActiveWindow", reinterpret_cast<void*>(&setActiveWindow)},
                              {"EnableWindow", reinterpret_cast<void*>(&enableWindow)}};
    std::vector<std::string> events;
    std::size_t logged = 0;
};

TEST_F(SequenceTest, WithAParentIsExact) {
    EXPECT_THAT(eventsOfSending(&parent),
                ElementsAre("log: SorvaneMailMessage::send", "log: Preparing MapiMessage",
                            "EnableModeless(FALSE)", "log: Sending message to MAPI", "SetCapture(parent)",
                            "SetFocus(null)", "MAPISendMail, held off", "log: Back from MAPI",
                            "ReleaseCapture(), held off", "EnableWindow(parent, TRUE)",
                            "SetActiveWindow(null)", "SetActiveWindow(parent)", "SetFocus(parent)",
                            "EnableWindow(parent, TRUE)", "EnableModeless(TRUE)"));
}

TEST_F(SequenceTest, WithoutParentOnlySwitchesTheModelessWindows) {
    EXPECT_THAT(eventsOfSending(nullptr),
                ElementsAre("log: SorvaneMailMessage::send", "log: Preparing MapiMessage",
                            "EnableModeless(FALSE)", "log: Sending message to MAPI", "MAPISendMail",
                            "log: Back from MAPI", "EnableModeless(TRUE)"));
}

TEST_F(SequenceTest, IsTheSameForAParentWithoutWindowButForTheLastEnabling) {
    CWnd windowless;
    parentHandle = nullptr;
    EXPECT_THAT(eventsOfSending(&windowless),
                ElementsAre("log: SorvaneMailMessage::send", "log: Preparing MapiMessage",
                            "EnableModeless(FALSE)", "log: Sending message to MAPI", "SetCapture(null)",
                            "SetFocus(null)", "MAPISendMail", "log: Back from MAPI", "ReleaseCapture()",
                            "EnableWindow(null, TRUE)", "SetActiveWindow(null)", "SetActiveWindow(null)",
                            "SetFocus(null)", "EnableModeless(TRUE)"));
}

// What the user can reach meanwhile, and afterwards.

class MailWindowsTest : public SorvaneMailFixture {
protected:
    MailWindowsTest() {
        other.CreateEx(0, nullptr, L"other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                       nullptr);
        parent.SetActiveWindow();
    }

    bool sendAnd(test::MailClient::Behaviour behaviour, CWnd* owner) {
        client.behaviour = std::move(behaviour);
        const bool sent = send(*newMessage(), owner);
        EXPECT_EQ(client.finished, 1);
        return sent;
    }

    void expectUsable() {
        EXPECT_TRUE(parent.IsWindowEnabled());
        EXPECT_TRUE(other.IsWindowEnabled());
        EXPECT_EQ(parent.m_nFlags & WF_STAYDISABLED, 0U);
        EXPECT_EQ(GetCapture(), nullptr);
    }

    CWnd other;
};

TEST_F(MailWindowsTest, AreOutOfReachDuringTheCall) {
    EXPECT_TRUE(sendAnd(test::meanwhile([this] {
                            EXPECT_FALSE(parent.IsWindowEnabled());
                            EXPECT_FALSE(other.IsWindowEnabled());
                            EXPECT_EQ(GetCapture(), parent.m_hWnd);
                            EXPECT_EQ(GetFocus(), nullptr);
                        }),
                        &parent));
    expectUsable();
    EXPECT_EQ(GetActiveWindow(), parent.m_hWnd);
    EXPECT_EQ(GetFocus(), parent.m_hWnd);
}

TEST_F(MailWindowsTest, AreOutOfReachWithoutParentToo) {
    EXPECT_TRUE(sendAnd(test::meanwhile([this] { EXPECT_FALSE(other.IsWindowEnabled()); }), nullptr));
    expectUsable();
}

TEST_F(MailWindowsTest, StayOutOfReachWhenTheClientEnablesItsOwner) {
    bool enabled = true;
    EXPECT_TRUE(sendAnd(
        [&](const test::MailCall& call) {
            const ULONG result = test::enablesOwner()(call);
            enabled = parent.IsWindowEnabled() != FALSE;
            return result;
        },
        &parent));
    EXPECT_FALSE(enabled);
    expectUsable();
}

TEST_F(MailWindowsTest, AreUsableAfterTheClientHasDestroyedItsOwner) {
    CWnd doomed;
    doomed.CreateEx(0, nullptr, L"doomed", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr);
    EXPECT_TRUE(sendAnd(test::destroysOwner(), &doomed));
    EXPECT_EQ(doomed.m_hWnd, nullptr);
    expectUsable();
}

TEST_F(MailWindowsTest, AreUsableAfterTheClientHasDestroyedAForeignOwner) {
    HWND foreign = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr,
                                   nullptr, nullptr);
    EXPECT_TRUE(sendAnd(test::destroysOwner(), CWnd::FromHandle(foreign)));
    EXPECT_FALSE(IsWindow(foreign));
    expectUsable();
}

TEST_F(MailWindowsTest, HandleTheirMessagesWhenTheClientPumpsThem) {
    struct Window : CWnd {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            got += message == WM_APP;
            return CWnd::WindowProc(message, wParam, lParam);
        }
        int got = 0;
    } window;
    window.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr);
    window.PostMessage(WM_APP);
    EXPECT_TRUE(sendAnd(test::pumpsMessages(), &parent));
    EXPECT_EQ(window.got, 1);
    expectUsable();
}

TEST_F(MailWindowsTest, StayOutOfReachOfTheOuterCallWhenAnotherIsMadeInside) {
    const auto inner = newMessage();
    bool enabled = true;
    client.behaviour = [&](const test::MailCall&) {
        if (client.calls.size() == 1) {
            EXPECT_TRUE(inner->send(nullptr));
            enabled = other.IsWindowEnabled() != FALSE;
        }
        return ULONG{SUCCESS_SUCCESS};
    };
    EXPECT_TRUE(send(*newMessage(), &parent));
    EXPECT_EQ(client.finished, 2);
    EXPECT_FALSE(enabled);
    expectUsable();
}

TEST_F(MailWindowsTest, AnotherCallInsideGivesASharedParentBackButNoOther) {
    // Whoever sends from inside the mail client's call, over the same parent, ends the holding off for both.
    const auto inner = newMessage();
    client.behaviour = [&](const test::MailCall&) {
        if (client.calls.size() == 1) {
            EXPECT_TRUE(inner->send(&parent));
            EXPECT_TRUE(parent.IsWindowEnabled());
            EXPECT_EQ(parent.m_nFlags & WF_STAYDISABLED, 0U);
            EXPECT_FALSE(other.IsWindowEnabled());
        }
        return ULONG{SUCCESS_SUCCESS};
    };
    EXPECT_TRUE(send(*newMessage(), &parent));
    EXPECT_EQ(client.finished, 2);
    expectUsable();
}

TEST_F(MailWindowsTest, AreUsableWhileAFailureIsShown) {
    client.behaviour = test::returns(MAPI_E_FAILURE);
    CWnd* const watched = &other;
    bool enabled = false;
    host::DialogPilot pilot(std::chrono::seconds(30));
    pilot.then("the prompt", host::anyMessageBox(), [&](HWND box) {
        enabled = watched->IsWindowEnabled() != FALSE;
        return host::click(IDOK)(box);
    });
    EXPECT_FALSE(newMessage()->send(&parent));
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    EXPECT_TRUE(enabled);
    expectUsable();
}

TEST_F(MailWindowsTest, AreLeftAloneWithoutAnApplicationObject) {
    hostState.m_pCurrentWinApp = nullptr;
    EXPECT_TRUE(sendAnd(test::meanwhile([this] { EXPECT_TRUE(other.IsWindowEnabled()); }), &parent));
    expectUsable();
}

} // namespace
