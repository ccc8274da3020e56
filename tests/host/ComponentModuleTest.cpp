// Loading components, sound and broken ones.
#include "host/ComponentModule.h"

#include "bxbase/LiveObjects.h"
#include "components/TestFactory.h"
#include "host/CommandLinePath.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

namespace {

using host::ComponentModule;
using host::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

class ComponentModuleTest : public testing::Test {
protected:
    static std::wstring component(const std::wstring& name) {
        return host::fullPathOf(host::wide(TEST_COMPONENTS)) + L"\\" + name + L".dll";
    }

    std::string failureOf(const std::wstring& path) {
        try {
            const ComponentModule module(path, manager);
        } catch (const host::HostError& error) {
            return error.what();
        }
        return "loaded";
    }

    /// The same component with some of its bytes changed.
    std::wstring damaged(std::string (*change)(std::string bytes)) {
        return folder.write(L"damaged.dll", change(test::readFile(component(L"SoundComponent"))));
    }

    static std::string cannotLoad(const std::wstring& path, const std::string& reason) {
        return "The component " + utf8(path) + " cannot be loaded: " + reason + ".";
    }

    static bool isLoaded(const std::wstring& path) { return GetModuleHandleW(path.c_str()) != nullptr; }

    test::TempFolder folder;
    host::EnginesManager manager;
};

TEST_F(ComponentModuleTest, ASoundComponentRegistersWhileItIsLoaded) {
    const std::wstring path = component(L"SoundComponent");
    {
        const ComponentModule module(path, manager);
        ASSERT_EQ(manager.getFactories().size(), 2);
        EXPECT_STREQ(manager.getFactories()[0]->getId(), "first");
        EXPECT_STREQ(manager.getFactories()[1]->getId(), "second");
        EXPECT_TRUE(isLoaded(path));
    }
    EXPECT_THAT(manager.getFactories(), IsEmpty());
    EXPECT_FALSE(isLoaded(path));
}

TEST_F(ComponentModuleTest, FindsAFactoryByItsIdentifier) {
    const ComponentModule module(component(L"SoundComponent"), manager);

    EXPECT_EQ(manager.findFactory("second"), manager.getFactories()[1].get());
    EXPECT_EQ(manager.findFactory("third"), nullptr);
}

TEST_F(ComponentModuleTest, AMissingFile) {
    EXPECT_EQ(failureOf(folder / L"x.dll"), cannotLoad(folder / L"x.dll", "it does not exist"));
}

TEST_F(ComponentModuleTest, AFileThatIsNoDll) {
    const std::wstring path = folder.write(L"x.dll", "some text that is not a DLL");

    EXPECT_EQ(failureOf(path), cannotLoad(path, "it is not a DLL for 64-bit Windows"));
}

TEST_F(ComponentModuleTest, ADllForAnotherArchitecture) {
    const std::wstring path = damaged([](std::string bytes) {
        constexpr char arm64[] = {'\x64', '\xAA'};
        return bytes.replace(bytes.find(std::string("PE\0\0", 4)) + 4, 2, arm64, 2);
    });

    EXPECT_EQ(failureOf(path), cannotLoad(path, "it is not a DLL for 64-bit Windows"));
}

TEST_F(ComponentModuleTest, ADllThatNeedsAnother) {
    const std::wstring path =
        damaged([](std::string bytes) { return bytes.replace(bytes.find("toolkit.dll"), 7, "missing"); });

    EXPECT_EQ(failureOf(path), cannotLoad(path, "a DLL that it needs is missing"));
}

TEST_F(ComponentModuleTest, ADllWithoutAnApplicationObject) {
    const std::wstring path = component(L"NoApplication");

    EXPECT_EQ(failureOf(path), cannotLoad(path, "it has no application object"));
    EXPECT_FALSE(isLoaded(path));
}

TEST_F(ComponentModuleTest, AComponentThatRefusesToStartLeavesNothingBehind) {
    const std::wstring path = component(L"RefusesToStart");

    EXPECT_EQ(failureOf(path), cannotLoad(path, "it refused to start"));
    EXPECT_THAT(manager.getFactories(), IsEmpty());
    EXPECT_FALSE(isLoaded(path));
}

TEST_F(ComponentModuleTest, AComponentThatThrowsWhileItStartsLeavesNothingBehind) {
    const std::wstring path = component(L"Throws");

    EXPECT_EQ(failureOf(path), cannotLoad(path, "it failed while starting: there is no scanner"));
    EXPECT_THAT(manager.getFactories(), IsEmpty());
    EXPECT_FALSE(isLoaded(path));
}

TEST_F(ComponentModuleTest, AComponentThatThrowsNoExceptionObjectLeavesNothingBehindEither) {
    const std::wstring path = component(L"ThrowsNumber");

    EXPECT_EQ(failureOf(path), cannotLoad(path, "it failed while starting"));
    EXPECT_FALSE(isLoaded(path));
}

TEST_F(ComponentModuleTest, AComponentThatRegistersNothingIsLoadedAllTheSame) {
    const ComponentModule module(component(L"RegistersNothing"), manager);

    EXPECT_THAT(manager.getFactories(), IsEmpty());
}

TEST_F(ComponentModuleTest, FactoriesThatAComponentForgetsAreDroppedBeforeItsCodeGoes) {
    { const ComponentModule module(component(L"ForgetsToUnregister"), manager); }

    EXPECT_THAT(manager.getFactories(), IsEmpty());
}

TEST_F(ComponentModuleTest, AReferenceThatAComponentLeaksIsCounted) {
    { const ComponentModule module(component(L"LeaksReference"), manager); }

    EXPECT_THAT(bxbase::LiveObjects::byType(), ElementsAre(testing::Pair("TestFactory", 1)));

    // The factory can never be released: its code is gone. Strike it off, or this test would count as leaking.
    bxbase::LiveObjects::counter(typeid(TestFactory)) = 0;
}

TEST_F(ComponentModuleTest, TheProductsComponentExportsNoFunction) {
    const HMODULE module = LoadLibraryW(L"BasicExport.dll"); // it lies beside the tests
    ASSERT_TRUE(module);
    const auto* image = reinterpret_cast<const BYTE*>(module);
    const auto* dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dosHeader->e_lfanew);
    const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    if (place.VirtualAddress) {
        const auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + place.VirtualAddress);
        EXPECT_EQ(exports->NumberOfFunctions, 0U);
    }
    FreeLibrary(module);
}

} // namespace
