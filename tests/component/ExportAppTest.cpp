// What the component registers with the host and takes back.
#include "ExportApp.h"

#include "BXImage/Image.h"
#include "ExportFactories.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportEngine.h"
#include "bxbase/LiveObjects.h"
#include "support/TempFolder.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using Call = test::TestEnginesManager::Call;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A manager that takes no references, so nothing of the component's own may keep the factories alive.
class ForgetfulManager : public SorvaneCommon::ExportEnginesManager {
public:
    ForgetfulManager() { SorvaneCommon::setExportEnginesManager(this); }
    ~ForgetfulManager() override { SorvaneCommon::setExportEnginesManager(nullptr); }

    void registerFactory(SorvaneCommon::ExportEngineFactory* factory) override {
        registered.push_back(factory);
    }
    void unregisterFactory(SorvaneCommon::ExportEngineFactory* factory) override {
        unregistered.push_back(factory);
    }

    // Never looked into: the factories are dead.
    std::vector<void*> registered;
    std::vector<void*> unregistered;
};

/// A manager that is gone from the host once it has its first factory.
class LeavingManager : public test::TestEnginesManager {
public:
    void registerFactory(SorvaneCommon::ExportEngineFactory* factory) override {
        TestEnginesManager::registerFactory(factory);
        SorvaneCommon::setExportEnginesManager(nullptr);
    }
};

int factoriesAlive() {
    return bxbase::LiveObjects::counter(typeid(ExportToDirectoryFactory)) +
           bxbase::LiveObjects::counter(typeid(ExportToMailFactory)) +
           bxbase::LiveObjects::counter(typeid(ExportToZipFactory));
}

std::vector<std::string> idsOf(const test::TestEnginesManager& manager) {
    std::vector<std::string> ids;
    for (const auto& factory : manager.factories)
        ids.emplace_back(factory->getId());
    return ids;
}

class ExportAppTest : public testing::Test {
protected:
    test::TestHost host;
};

TEST_F(ExportAppTest, IsTheApplicationObjectOfItsModule) {
    EXPECT_EQ(AfxGetApp(), &theApp);
}

TEST_F(ExportAppTest, RegistersDirectoryThenMailThenZip) {
    test::TestEnginesManager manager;
    EXPECT_EQ(theApp.InitInstance(), 1);
    EXPECT_THAT(idsOf(manager), ElementsAre("com.brellix.sorvane.exportdata-factory.dir.file",
                                            "com.brellix.sorvane.exportdata-factory.mail.file",
                                            "com.brellix.sorvane.exportdata-factory.zip.file"));
    theApp.ExitInstance();
}

TEST_F(ExportAppTest, UnregistersTheSameFactoriesInTheSameOrder) {
    test::TestEnginesManager manager;
    theApp.InitInstance();
    ASSERT_EQ(manager.calls.size(), 3U);
    auto* const directory = manager.calls[0].second;
    auto* const mail = manager.calls[1].second;
    auto* const zip = manager.calls[2].second;

    EXPECT_EQ(theApp.ExitInstance(), 0);

    EXPECT_THAT(manager.calls, ElementsAre(Pair(Call::Register, directory), Pair(Call::Register, mail),
                                           Pair(Call::Register, zip), Pair(Call::Unregister, directory),
                                           Pair(Call::Unregister, mail), Pair(Call::Unregister, zip)));
}

TEST_F(ExportAppTest, ManagersReferencesAreTheOnlyOnes) {
    test::TestEnginesManager manager;
    theApp.InitInstance();
    EXPECT_EQ(factoriesAlive(), 3);
    manager.factories.clear();
    EXPECT_EQ(factoriesAlive(), 0);
    theApp.ExitInstance();
}

TEST_F(ExportAppTest, ManagerThatTakesNoReferenceSeesTheFactoriesDie) {
    ForgetfulManager manager;
    EXPECT_EQ(theApp.InitInstance(), 1);
    EXPECT_EQ(manager.registered.size(), 3U);
    EXPECT_EQ(bxbase::LiveObjects::total(), 0);
    theApp.ExitInstance();
    EXPECT_EQ(manager.unregistered, manager.registered);
}

TEST_F(ExportAppTest, ExitKeepsFactoriesAliveThatTheHostStillHolds) {
    test::TestEnginesManager manager;
    theApp.InitInstance();
    const auto held = manager.factories.front();
    theApp.ExitInstance();
    EXPECT_EQ(factoriesAlive(), 1);
    EXPECT_STREQ(held->getId(), "com.brellix.sorvane.exportdata-factory.dir.file");
}

TEST_F(ExportAppTest, WithoutManagerKeepsNothingAndSucceeds) {
    EXPECT_EQ(theApp.InitInstance(), 1);
    EXPECT_EQ(bxbase::LiveObjects::total(), 0);
    EXPECT_TRUE(host.messages.empty());

    // Had a factory been recorded, it would be unregistered now.
    ForgetfulManager manager;
    EXPECT_EQ(theApp.ExitInstance(), 0);
    EXPECT_THAT(manager.unregistered, IsEmpty());
}

TEST_F(ExportAppTest, ManagerGoneAtExitLeavesTheRecordForALaterExit) {
    std::vector<void*> registered;
    {
        ForgetfulManager manager;
        theApp.InitInstance();
        registered = manager.registered;
    }
    EXPECT_EQ(theApp.ExitInstance(), 0);

    ForgetfulManager manager;
    theApp.ExitInstance();
    EXPECT_EQ(manager.unregistered, registered);
}

TEST_F(ExportAppTest, ManagerGoneAmidTheStartKeepsTheFactoryItHas) {
    LeavingManager manager;
    EXPECT_EQ(theApp.InitInstance(), 1);
    EXPECT_THAT(idsOf(manager), ElementsAre("com.brellix.sorvane.exportdata-factory.dir.file"));
    EXPECT_EQ(factoriesAlive(), 1);

    SorvaneCommon::setExportEnginesManager(&manager);
    auto* const directory = manager.factories.front().get();
    theApp.ExitInstance();
    EXPECT_THAT(manager.calls,
                ElementsAre(Pair(Call::Register, directory), Pair(Call::Unregister, directory)));
}

TEST_F(ExportAppTest, SecondExitUnregistersNothing) {
    ForgetfulManager manager;
    theApp.InitInstance();
    theApp.ExitInstance();
    manager.unregistered.clear();
    EXPECT_EQ(theApp.ExitInstance(), 0);
    EXPECT_THAT(manager.unregistered, IsEmpty());
}

TEST_F(ExportAppTest, StartsAgainAfterExit) {
    test::TestEnginesManager manager;
    theApp.InitInstance();
    theApp.ExitInstance();
    theApp.InitInstance();
    EXPECT_EQ(manager.factories.size(), 3U);
    theApp.ExitInstance();
    EXPECT_THAT(manager.factories, IsEmpty());
}

// The factories.

class FactoryTest : public testing::Test {
protected:
    void start() {
        theApp.InitInstance();
        ASSERT_EQ(manager.factories.size(), 3U);
    }
    ~FactoryTest() override { theApp.ExitInstance(); }

    test::TestHost host;
    test::TestEnginesManager manager;
};

TEST_F(FactoryTest, HasItsNameInTheHostsLanguage) {
    const test::TempFolder folder;
    ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(
        folder.write(L"texts.ini", "[Scan]\nBasicExport.ExportToDirectory=Do složky\n"
                                   "BasicExport.SendAsEmail=Poslat\nBasicExport.ExportToZIP=Zabalit\n")));
    start();
    EXPECT_EQ(manager.factories[0]->getName(), "Do složky");
    EXPECT_EQ(manager.factories[1]->getName(), "Poslat");
    EXPECT_EQ(manager.factories[2]->getName(), "Zabalit");
}

TEST_F(FactoryTest, TakesTheNameAsItComesWhenTheLanguageHasNone) {
    const test::TempFolder folder;
    ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(folder.write(L"texts.ini", "")));
    start();
    EXPECT_EQ(manager.factories[0]->getName(), "BasicExport.ExportToDirectory");
    EXPECT_EQ(manager.factories[1]->getName(), "BasicExport.SendAsEmail");
    EXPECT_EQ(manager.factories[2]->getName(), "BasicExport.ExportToZIP");
}

TEST_F(FactoryTest, HasTheIconOfItsTarget) {
    start();
    std::vector<std::pair<int, int>> sizes;
    for (const auto& factory : manager.factories) {
        bxbase::Reference<BXImage::Image> icon;
        ASSERT_TRUE(factory->getIcon(icon));
        sizes.emplace_back(icon->getWidth(), icon->getHeight());
    }
    EXPECT_THAT(sizes, ElementsAre(Pair(32, 32), Pair(32, 32), Pair(24, 24)));
}

TEST_F(FactoryTest, DirectoryAndMailHaveIconsOfTheirOwn) {
    start();
    bxbase::Reference<BXImage::Image> directory;
    bxbase::Reference<BXImage::Image> mail;
    manager.factories[0]->getIcon(directory);
    manager.factories[1]->getIcon(mail);
    EXPECT_NE(directory->getBitmap()->pixels, mail->getBitmap()->pixels);
}

TEST_F(FactoryTest, KeepsOneIconForAllWhoAsk) {
    start();
    EXPECT_EQ(bxbase::LiveObjects::counter(typeid(BXImage::Image)), 3);
    bxbase::Reference<BXImage::Image> first;
    bxbase::Reference<BXImage::Image> second;
    manager.factories[0]->getIcon(first);
    manager.factories[0]->getIcon(second);
    EXPECT_EQ(first, second);
    EXPECT_EQ(bxbase::LiveObjects::counter(typeid(BXImage::Image)), 3);
}

TEST_F(FactoryTest, IsAlwaysAvailable) {
    start();
    for (const auto& factory : manager.factories)
        EXPECT_TRUE(factory->isAvailable());
}

} // namespace
