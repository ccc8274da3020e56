// Which module is current, and how a program finds the application object of a DLL.
#include "AfxModule.h"
#include "afxwin.h"
#include "resource.h"

#include "host/DialogPilot.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

class ModuleStateTest : public testing::Test {
protected:
    AFX_MODULE_STATE* own = AfxGetStaticModuleState();
};

TEST_F(ModuleStateTest, ProgramStartsWithItsOwn) {
    EXPECT_EQ(AfxGetModuleState(), own);
    EXPECT_EQ(AfxGetInstanceHandle(), GetModuleHandle(nullptr));
    EXPECT_EQ(AfxGetResourceHandle(), GetModuleHandle(nullptr));
}

TEST_F(ModuleStateTest, AnotherThreadStartsWithTheProgramsState) {
    AFX_MODULE_STATE* other = nullptr;
    std::thread([&] { other = AfxGetModuleState(); }).join();
    EXPECT_EQ(other, own);
}

TEST_F(ModuleStateTest, SwitchesNestAndComeBack) {
    AFX_MODULE_STATE first(GetModuleHandle(L"kernel32.dll"));
    AFX_MODULE_STATE second(GetModuleHandle(L"user32.dll"));
    {
        AFX_MANAGE_STATE(&first);
        {
            AFX_MANAGE_STATE(&second);
            EXPECT_EQ(AfxGetModuleState(), &second);
        }
        EXPECT_EQ(AfxGetModuleState(), &first);
    }
    EXPECT_EQ(AfxGetModuleState(), own);
}

TEST_F(ModuleStateTest, ComesBackWhenAnExceptionLeaves) {
    AFX_MODULE_STATE other(GetModuleHandle(L"kernel32.dll"));
    try {
        AFX_MANAGE_STATE(&other);
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(AfxGetModuleState(), own);
}

TEST_F(ModuleStateTest, DestroyingTheCurrentOneLeavesTheProgramsCurrent) {
    {
        AFX_MODULE_STATE other(GetModuleHandle(L"kernel32.dll"));
        AfxSetModuleState(&other);
    }
    EXPECT_EQ(AfxGetModuleState(), own);
    AfxSetModuleState(own);
}

TEST_F(ModuleStateTest, ApplicationObjectBelongsToTheCurrentModule) {
    EXPECT_EQ(AfxGetApp(), nullptr);
    {
        CWinApp app(L"Named");
        EXPECT_EQ(AfxGetApp(), &app);
        EXPECT_EQ(app.m_hInstance, GetModuleHandle(nullptr));
        EXPECT_STREQ(AfxGetAppName(), L"Named");
    }
    EXPECT_EQ(AfxGetApp(), nullptr);
}

TEST_F(ModuleStateTest, ModuleWithoutStateHasNoApplicationObject) {
    EXPECT_EQ(AfxFindModuleState(GetModuleHandle(L"kernel32.dll")), nullptr);
    EXPECT_EQ(AfxFindModuleApp(GetModuleHandle(L"kernel32.dll")), nullptr);
}

class LoadedModuleTest : public ModuleStateTest {
protected:
    LoadedModuleTest() : module(LoadLibrary(L"toolkit_test_module.dll")) {}
    ~LoadedModuleTest() override {
        if (module)
            FreeLibrary(module);
    }

    void SetUp() override { ASSERT_NE(module, nullptr); }

    template <class Function> Function* exported(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    }
    AFX_MODULE_STATE* moduleState() const { return exported<AFX_MODULE_STATE*()>("ownState")(); }

    HMODULE module;
};

TEST_F(LoadedModuleTest, HasItsApplicationObjectUnderItsHandle) {
    CWinApp* app = AfxFindModuleApp(module);
    ASSERT_NE(app, nullptr);
    EXPECT_EQ(app->m_hInstance, module);
    EXPECT_STREQ(app->m_pszAppName, L"toolkit_test_module");
}

TEST_F(LoadedModuleTest, HasItsOwnStateWhileItsGlobalsAreConstructed) {
    EXPECT_EQ(exported<AFX_MODULE_STATE*()>("stateWhenConstructed")(), moduleState());
    EXPECT_EQ(AfxFindModuleState(module), moduleState());
}

TEST_F(LoadedModuleTest, LeavesTheLoadersStateCurrent) {
    EXPECT_EQ(AfxGetModuleState(), own);
}

TEST_F(LoadedModuleTest, IsNotInitialisedByLoading) {
    EXPECT_FALSE(exported<bool()>("isInitialised")());
    EXPECT_TRUE(AfxFindModuleApp(module)->InitInstance());
    EXPECT_TRUE(exported<bool()>("isInitialised")());
}

TEST_F(LoadedModuleTest, IsForgottenWhenUnloaded) {
    FreeLibrary(module);
    EXPECT_EQ(AfxFindModuleApp(module), nullptr);
    EXPECT_EQ(AfxFindModuleState(module), nullptr);
    module = nullptr;
}

TEST_F(LoadedModuleTest, UnloadedWhileCurrentLeavesTheProgramsCurrent) {
    AfxSetModuleState(moduleState());
    FreeLibrary(module);
    module = nullptr;
    EXPECT_EQ(AfxGetModuleState(), own);
    AfxSetModuleState(own);
}

TEST_F(LoadedModuleTest, ReadsItsOwnTexts) {
    static CString programsGreeting;
    CString modulesGreeting;
    exported<void(CString*, void (*)())>("readGreeting")(&modulesGreeting, [] {
        AFX_MANAGE_STATE(AfxGetStaticModuleState());
        programsGreeting.LoadString(IDS_GREETING);
    });
    EXPECT_EQ(modulesGreeting, L"Greetings from the module");
    EXPECT_EQ(programsGreeting, L"Dobrý den");
    EXPECT_EQ(AfxGetModuleState(), own);
}

TEST_F(LoadedModuleTest, ShowsItsOwnTemplate) {
    host::DialogPilot pilot(std::chrono::seconds(10));
    pilot.then("press OK", host::dialogTitled(L"The module's"), host::click(IDOK));
    AFX_MANAGE_STATE(moduleState());
    CDialog dialog(IDD_SAMPLE);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
}

class StateWindow : public CWnd {
public:
    AFX_MODULE_STATE* stateInside = nullptr;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_APP)
            stateInside = AfxGetModuleState();
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

TEST_F(LoadedModuleTest, IsCurrentForTheMessagesOfItsWindows) {
    StateWindow programs;
    programs.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
    AFX_MANAGE_STATE(moduleState());
    StateWindow modules;
    modules.CreateEx(0, nullptr, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);

    programs.SendMessage(WM_APP);
    EXPECT_EQ(programs.stateInside, own);
    EXPECT_EQ(AfxGetModuleState(), moduleState());

    AFX_MAINTAIN_STATE2 programsAgain(own);
    modules.SendMessage(WM_APP);
    EXPECT_EQ(modules.stateInside, moduleState());
    EXPECT_EQ(AfxGetModuleState(), own);
}

} // namespace
