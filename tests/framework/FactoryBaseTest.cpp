// What all factories have in common.
#include "SorvaneCommon/ExportUtils/ExportFactoryBase.h"

#include "BXImage/Image.h"
#include "SorvaneCommon/ExportEngine.h"
#include "bxbase/LiveObjects.h"
#include "bxbase/ReferencedImpl.h"

#include <gtest/gtest.h>

namespace {

class Factory : public ExportUtils::ExportFactoryBase {
public:
    const char* getId() const override { return "id"; }
    bool isAvailable() const override { return true; }
    bool createEngine(CWnd*, bxbase::Reference<SorvaneCommon::ExportEngine>&) override { return false; }

    using ExportFactoryBase::icon;
    using ExportFactoryBase::name;
};

class FactoryBaseTest : public testing::Test {
protected:
    static int imagesAlive() { return bxbase::LiveObjects::counter(typeid(BXImage::Image)); }

    bxbase::Reference<Factory> factory{new bxbase::ReferencedImpl<Factory>};
};

TEST_F(FactoryBaseTest, HasNoNameUntilOneIsSet) {
    EXPECT_EQ(factory->getName(), "");
}

TEST_F(FactoryBaseTest, GivesTheNameItHolds) {
    factory->name = "Export";
    EXPECT_EQ(&factory->getName(), &factory->name);
}

TEST_F(FactoryBaseTest, WithoutIconLeavesTheCallersHandleUntouched) {
    const bxbase::Reference<BXImage::Image> before(new bxbase::ReferencedImpl<BXImage::Image>);
    bxbase::Reference<BXImage::Image> icon = before;
    EXPECT_FALSE(factory->getIcon(icon));
    EXPECT_EQ(icon, before);
}

TEST_F(FactoryBaseTest, IconHandedOutOutlivesTheFactory) {
    factory->icon = new bxbase::ReferencedImpl<BXImage::Image>;
    bxbase::Reference<BXImage::Image> icon;
    ASSERT_TRUE(factory->getIcon(icon));
    EXPECT_EQ(icon, factory->icon);
    factory.clear();
    EXPECT_EQ(imagesAlive(), 1);
    icon.clear();
    EXPECT_EQ(imagesAlive(), 0);
}

TEST_F(FactoryBaseTest, ReleasesItsIconWhenItDies) {
    factory->icon = new bxbase::ReferencedImpl<BXImage::Image>;
    EXPECT_EQ(imagesAlive(), 1);
    factory.clear();
    EXPECT_EQ(imagesAlive(), 0);
}

} // namespace
