// How factories hand out engines.
#include "ExportFactories.h"
#include "ExportToDirectory.h"
#include "ExportToMail.h"
#include "ExportToZip.h"
#include "SorvaneBase/SorvaneException.h"
#include "bxbase/LiveObjects.h"
#include "bxbase/ReferencedImpl.h"
#include "support/TestPage.h"

#include <afxwin.h>

#include <gmock/gmock.h>

#include <string>

namespace {

using SorvaneCommon::ExportEngine;

/// Looks at the parent window that an engine was given.
class ParentOf : public ExportUtils::ExportEngineBase {
public:
    static CWnd* get(ExportEngine& engine) {
        return dynamic_cast<ExportEngineBase&>(engine).*(&ParentOf::parentWindow);
    }
};

template <class Factory, class Engine> struct Kind {
    using FactoryType = Factory;
    using EngineType = Engine;
};

template <class Kind> class EngineCreationTest : public testing::Test {
protected:
    using EngineType = typename Kind::EngineType;

    int enginesAlive() const { return bxbase::LiveObjects::counter(typeid(EngineType)); }

    CWnd parent;
    bxbase::Reference<SorvaneCommon::ExportEngineFactory> factory{
        new bxbase::ReferencedImpl<typename Kind::FactoryType>};
    bxbase::Reference<ExportEngine> engine;
};

using Kinds = testing::Types<Kind<ExportToDirectoryFactory, ExportToDirectory>,
                             Kind<ExportToMailFactory, ExportToMail>, Kind<ExportToZipFactory, ExportToZip>>;

class KindNames {
public:
    template <class Kind> static std::string GetName(int) {
        if (std::is_same_v<typename Kind::EngineType, ExportToDirectory>)
            return "Directory";
        return std::is_same_v<typename Kind::EngineType, ExportToMail> ? "Mail" : "Zip";
    }
};

TYPED_TEST_SUITE(EngineCreationTest, Kinds, KindNames);

TYPED_TEST(EngineCreationTest, WithoutParentCreatesNothing) {
    EXPECT_FALSE(this->factory->createEngine(nullptr, this->engine));
    EXPECT_FALSE(this->engine);
    EXPECT_EQ(this->enginesAlive(), 0);
}

TYPED_TEST(EngineCreationTest, GivesAnEngineOfItsKindWithTheParentSet) {
    ASSERT_TRUE(this->factory->createEngine(&this->parent, this->engine));
    EXPECT_NE(dynamic_cast<typename TypeParam::EngineType*>(this->engine.get()), nullptr);
    EXPECT_EQ(ParentOf::get(*this->engine), &this->parent);
}

TYPED_TEST(EngineCreationTest, CallersReferenceIsTheOnlyOne) {
    ASSERT_TRUE(this->factory->createEngine(&this->parent, this->engine));
    EXPECT_EQ(this->enginesAlive(), 1);
    ExportEngine* const engine = this->engine.detach();
    engine->addRef();
    engine->release();
    EXPECT_EQ(this->enginesAlive(), 1);
    engine->release();
    EXPECT_EQ(this->enginesAlive(), 0);
}

TYPED_TEST(EngineCreationTest, WhatTheHandleHeldIsNotReleased) {
    ASSERT_TRUE(this->factory->createEngine(&this->parent, this->engine));
    ExportEngine* const first = this->engine.get();
    ASSERT_TRUE(this->factory->createEngine(&this->parent, this->engine));
    EXPECT_EQ(this->enginesAlive(), 2);
    first->release();
    EXPECT_EQ(this->enginesAlive(), 1);
}

TYPED_TEST(EngineCreationTest, EveryCallGivesAnEngineOfItsOwn) {
    bxbase::Reference<ExportEngine> other;
    ASSERT_TRUE(this->factory->createEngine(&this->parent, this->engine));
    ASSERT_TRUE(this->factory->createEngine(&this->parent, other));
    EXPECT_NE(this->engine, other);
}

TYPED_TEST(EngineCreationTest, EngineOutlivesItsFactory) {
    test::TestPage page(L"page.tif");
    ASSERT_TRUE(this->factory->createEngine(&this->parent, this->engine));
    this->factory.clear();
    EXPECT_TRUE(this->engine->addData(&page));
    EXPECT_EQ(page.references, 1);
    this->engine.clear();
    EXPECT_EQ(page.references, 0);
}

TEST(DirectoryEngineCreationTest, EngineHasNoTargetUntilItsDialogGivesOne) {
    CWnd parent;
    bxbase::Reference<ExportEngine> engine;
    const bxbase::Reference<SorvaneCommon::ExportEngineFactory> factory(
        new bxbase::ReferencedImpl<ExportToDirectoryFactory>);
    ASSERT_TRUE(factory->createEngine(&parent, engine));
    SorvaneException errors;
    EXPECT_EQ(engine->exportData(nullptr, errors), 1);
    ASSERT_EQ(errors.getReports().size(), 1U);
    EXPECT_EQ(errors.getReports()[0].sourceFile, "Components/BasicExport/ExportToDirectory");
    EXPECT_EQ(errors.getReports()[0].line, 52);
    EXPECT_EQ(errors.getReports()[0].message, "targetPath is not directory");
}

} // namespace
