// Finding out why an export failed.
#include "host/desktop/ExportFailure.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "bxbase/ReferencedImpl.h"
#include "host/desktop/EngineDialogs.h"
#include "host/desktop/ExportWatch.h"
#include "support/HostTexts.h"
#include "support/ImportHook.h"
#include "support/OpenFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <optional>

namespace {

BOOL WINAPI leaveNothing(const wchar_t*, ULARGE_INTEGER* available, ULARGE_INTEGER*, ULARGE_INTEGER*) {
    available->QuadPart = 3;
    return TRUE;
}

class ExportFailureTest : public testing::Test {
protected:
    ExportFailureTest() {
        test::loadLanguage(L"en.ini");
        const auto inFolder = std::make_shared<host::FileFolder>(folder.path());
        for (const wchar_t* name : {L"1.tif", L"2.tif"})
            pages.emplace_back(
                new bxbase::ReferencedImpl<host::FilePage>(folder.write(name, "data"), inFolder, &watch));
        watch.begin(pages, [](std::size_t) {});
        failure.emplace(pages, watch, dialogs);
    }

    void report(const char* message) { failure->reportError("Engine", 1, message); }
    static void log(const char* message) { bxutils::getSystemLogFormater()->log(0, message, "Engine", 2); }

    const test::TempFolder folder;
    host::ExportWatch watch;
    host::FilePages pages;
    host::EngineDialogs dialogs;
    std::optional<host::ExportFailure> failure;
};

TEST_F(ExportFailureTest, IsAboutThePageThatTheEngineIsAt) {
    watch.pageAsked(*pages[1]);
    report("Failed to export file");
    EXPECT_EQ(failure->explanation().sentence, L"Page 2 could not be exported.");
    EXPECT_EQ(failure->explanation().page, 1u);
}

TEST_F(ExportFailureTest, IsAboutNoPageBeforeTheFirst) {
    report("Failed to export file");
    EXPECT_EQ(failure->explanation().sentence, L"The export failed.");
    EXPECT_EQ(failure->explanation().path, L"");
}

TEST_F(ExportFailureTest, WhatNobodyKnowsIsToldInGeneral) {
    report("The flux is out of phase");
    EXPECT_EQ(failure->explanation().sentence, L"The export failed.");
    EXPECT_EQ(failure->explanation().reason, L"");
    EXPECT_EQ(failure->details(), L"Engine:1: The flux is out of phase");
}

TEST_F(ExportFailureTest, TheErrorThatWasLoggedIsTheReason) {
    log("The archive cannot be written, error 112");
    report("Failed to create zip file");
    EXPECT_EQ(failure->explanation().reason, L"The disk is full.");
}

TEST_F(ExportFailureTest, ThePagesOwnStateComesBeforeTheErrorThatWasLogged) {
    watch.pageAsked(*pages[0]);
    const test::OpenFile used(pages[0]->path());
    log("The archive cannot be written, error 112");
    report("Failed to add item");
    EXPECT_EQ(failure->explanation().reason, L"Another program is using the file.");
    EXPECT_EQ(failure->explanation().path, pages[0]->path());
}

TEST_F(ExportFailureTest, AnErrorWithoutWordsIsToldByItsNumber) {
    log("The archive cannot be written, error 4711");
    report("Failed to create zip file");
    EXPECT_EQ(failure->explanation().reason, L"Windows reports error 4711.");
}

TEST_F(ExportFailureTest, AttachmentsThatTheTemporaryDiskHasNoRoomForFailByThat) {
    watch.pageAsked(*pages[0]);
    const test::ImportHook hook("GetDiskFreeSpaceExW", reinterpret_cast<void*>(&leaveNothing));
    report("Failed to prepare attachments");
    EXPECT_EQ(failure->explanation().sentence, L"Page 1 could not be attached.");
    EXPECT_EQ(failure->explanation().reason, L"The disk is full.");
}

} // namespace
