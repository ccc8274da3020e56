// How long the component keeps its own references to the factories that it makes.
#include "ExportApp.h"
#include "ExportFactories.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> ended;

} // namespace

// These stand in for the component's own, without name and icon.

ExportToDirectoryFactory::ExportToDirectoryFactory() = default;

ExportToDirectoryFactory::~ExportToDirectoryFactory() {
    ended.emplace_back("directory");
}

const char* ExportToDirectoryFactory::getId() const {
    return "directory";
}

bool ExportToDirectoryFactory::isAvailable() const {
    return true;
}

ExportToMailFactory::ExportToMailFactory() = default;

ExportToMailFactory::~ExportToMailFactory() {
    ended.emplace_back("mail");
}

const char* ExportToMailFactory::getId() const {
    return "mail";
}

bool ExportToMailFactory::isAvailable() const {
    return true;
}

ExportToZipFactory::ExportToZipFactory() = default;

ExportToZipFactory::~ExportToZipFactory() {
    ended.emplace_back("zip");
}

const char* ExportToZipFactory::getId() const {
    return "zip";
}

bool ExportToZipFactory::isAvailable() const {
    return true;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Takes no references, so that only the component's own keep the factories alive.
class WatchingManager : public SorvaneCommon::ExportEnginesManager {
public:
    WatchingManager() { SorvaneCommon::setExportEnginesManager(this); }
    ~WatchingManager() override { SorvaneCommon::setExportEnginesManager(nullptr); }

    void registerFactory(SorvaneCommon::ExportEngineFactory* factory) override {
        registered.emplace_back(factory->getId());
        EXPECT_THAT(ended, IsEmpty());
    }
    void unregisterFactory(SorvaneCommon::ExportEngineFactory*) override {}

    std::vector<std::string> registered;
};

class CreationReferencesTest : public testing::Test {
protected:
    CreationReferencesTest() { ended.clear(); }
    ~CreationReferencesTest() override { theApp.ExitInstance(); }
};

TEST_F(CreationReferencesTest, AreReleasedInReverseOrder) {
    theApp.InitInstance();
    EXPECT_THAT(ended, ElementsAre("zip", "mail", "directory"));
}

TEST_F(CreationReferencesTest, AreKeptUntilEveryFactoryIsRegistered) {
    WatchingManager manager;
    theApp.InitInstance();
    EXPECT_THAT(manager.registered, ElementsAre("directory", "mail", "zip"));
    EXPECT_THAT(ended, ElementsAre("zip", "mail", "directory"));
}

} // namespace
