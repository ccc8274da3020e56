// Finding and loading the components beside a program.
#include "host/desktop/ComponentFolder.h"

#include "host/CommandLinePath.h"
#include "host/ProgramFolder.h"
#include "host/Text.h"
#include "support/LogRecords.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace {

using host::ComponentFolder;
using host::componentsIn;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ComponentFolderTest : public testing::Test {
protected:
    /// Copies a component for tests into the folder, under a name of its own.
    std::wstring add(const std::wstring& component, const std::wstring& name) {
        const std::wstring source =
            host::fullPathOf(host::wide(TEST_COMPONENTS)) + L'\\' + component + L".dll";
        return folder.write(name, test::readFile(source));
    }

    /// A DLL whose header says that its import table lies where nothing is.
    static std::string withImportsFarAway(std::string dll) {
        IMAGE_DOS_HEADER dosHeader;
        std::memcpy(&dosHeader, dll.data(), sizeof dosHeader);
        constexpr auto place = offsetof(IMAGE_NT_HEADERS64, OptionalHeader.DataDirectory[1].VirtualAddress);
        constexpr DWORD farAway = 0x7FFF0000;
        std::memcpy(dll.data() + dosHeader.e_lfanew + place, &farAway, sizeof farAway);
        return dll;
    }

    std::vector<std::string> factoryIds() const {
        std::vector<std::string> ids;
        for (const auto& factory : manager.getFactories())
            ids.emplace_back(factory->getId());
        return ids;
    }

    test::TempFolder folder;
    test::LogRecords log;
    host::EnginesManager manager;
};

TEST_F(ComponentFolderTest, FindsTheOneComponentOfTheProduct) {
    EXPECT_THAT(componentsIn(host::programFolder()),
                ElementsAre(host::programFolder() + L"\\BasicExport.dll"));
}

TEST_F(ComponentFolderTest, FindsWhatImportsTheContractLibrarySortedByName) {
    const std::wstring second = add(L"SoundComponent", L"b.dll");
    const std::wstring third = add(L"RefusesToStart", L"c.dll");
    const std::wstring first = add(L"ForgetsToUnregister", L"A.DLL");
    add(L"NoApplication", L"d.dll");
    add(L"SoundComponent", L"e.txt");

    EXPECT_THAT(componentsIn(folder.path()), ElementsAre(first, second, third));
    EXPECT_FALSE(GetModuleHandleW(first.c_str()));
}

TEST_F(ComponentFolderTest, PassesOverFilesThatAreNoLibraries) {
    folder.write(L"empty.dll", "");
    folder.write(L"text.dll", "some text that is not a DLL");
    const std::string sound = test::readFile(add(L"SoundComponent", L"sound.dll"));
    folder.write(L"cut.dll", sound.substr(0, 1000));
    folder.write(L"wild.dll", withImportsFarAway(sound));

    EXPECT_THAT(componentsIn(folder.path()), ElementsAre(folder / L"sound.dll"));
}

TEST_F(ComponentFolderTest, AnEmptyOrMissingFolderHasNone) {
    EXPECT_THAT(componentsIn(folder.path()), IsEmpty());
    EXPECT_THAT(componentsIn(folder / L"missing"), IsEmpty());
}

TEST_F(ComponentFolderTest, LoadsAllAndTakesThemAwayAgain) {
    const std::wstring path = add(L"SoundComponent", L"sound.dll");
    {
        const ComponentFolder components(folder.path(), manager);
        EXPECT_THAT(components.failures(), IsEmpty());
        EXPECT_THAT(factoryIds(), ElementsAre("first", "second"));
        EXPECT_TRUE(GetModuleHandleW(path.c_str()));
    }
    EXPECT_THAT(factoryIds(), IsEmpty());
    EXPECT_FALSE(GetModuleHandleW(path.c_str()));
}

TEST_F(ComponentFolderTest, LogsABrokenComponentAndLoadsTheOthers) {
    add(L"RefusesToStart", L"a.dll");
    add(L"SoundComponent", L"b.dll");

    const ComponentFolder components(folder.path(), manager);

    EXPECT_THAT(factoryIds(), ElementsAre("first", "second"));
    const auto isTold = AllOf(HasSubstr("a.dll cannot be loaded"), HasSubstr("it refused to start"));
    EXPECT_THAT(components.failures(), ElementsAre(isTold));
    EXPECT_THAT(log.all(), ElementsAre(isTold));
}

TEST_F(ComponentFolderTest, SurvivesAComponentThatCrashesAfterRegistering) {
    add(L"CrashesAfterRegistering", L"a.dll");
    add(L"SoundComponent", L"b.dll");

    const ComponentFolder components(folder.path(), manager);

    EXPECT_THAT(factoryIds(), ElementsAre("first", "second"));
    EXPECT_THAT(components.failures(), ElementsAre(AllOf(HasSubstr("a.dll cannot be loaded: it crashed with"),
                                                         HasSubstr("a.dll+0x"))));
}

TEST_F(ComponentFolderTest, TakesTheOthersAwayWhenOneThrowsAtItsEnd) {
    const std::wstring sound = add(L"SoundComponent", L"a.dll");
    const std::wstring throwing = add(L"ThrowsAtExit", L"b.dll");
    ComponentFolder components(folder.path(), manager);

    const auto isTold = AllOf(HasSubstr("b.dll"), HasSubstr("failed while ending"));
    EXPECT_THAT(components.unload(), ElementsAre(isTold));
    EXPECT_THAT(log.all(), ElementsAre(isTold));
    EXPECT_THAT(factoryIds(), IsEmpty());
    EXPECT_FALSE(GetModuleHandleW(sound.c_str()));
    EXPECT_FALSE(GetModuleHandleW(throwing.c_str()));
    EXPECT_THAT(components.unload(), IsEmpty()) << "all of them have been taken away";
}

TEST_F(ComponentFolderTest, SurvivesAComponentThatCrashesAtItsEnd) {
    add(L"CrashesAtExit", L"a.dll");
    const std::wstring sound = add(L"SoundComponent", L"b.dll");
    {
        const ComponentFolder components(folder.path(), manager);
        EXPECT_THAT(factoryIds(), ElementsAre("left behind", "first", "second"));
    }
    EXPECT_THAT(log.all(), ElementsAre(AllOf(HasSubstr("crashed while ending"), HasSubstr("a.dll+0x"))));
    EXPECT_THAT(factoryIds(), IsEmpty());
    EXPECT_FALSE(GetModuleHandleW(sound.c_str()));
}

} // namespace
