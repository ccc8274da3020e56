// The host's exception class, which also serves as the record of reported failures.
#include "SorvaneBase/SorvaneException.h"

#include <gtest/gtest.h>

namespace {

TEST(SorvaneExceptionTest, HoldsNothingAtFirst) {
    const SorvaneException error;
    EXPECT_TRUE(error.isEmpty());
    EXPECT_TRUE(error.getReports().empty());
    EXPECT_STRNE(error.what(), "");
}

TEST(SorvaneExceptionTest, KeepsReportsInOrder) {
    SorvaneException error;
    error.reportError("Components/A", 52, "first");
    error.reportError("Components/B", 76, "second");

    EXPECT_FALSE(error.isEmpty());
    ASSERT_EQ(error.getReports().size(), 2u);
    EXPECT_EQ(error.getReports()[0].sourceFile, "Components/A");
    EXPECT_EQ(error.getReports()[0].line, 52);
    EXPECT_EQ(error.getReports()[0].message, "first");
    EXPECT_EQ(error.getReports()[1].message, "second");
}

TEST(SorvaneExceptionTest, TellsTheFirstMessage) {
    SorvaneException error;
    error.reportError("A", 1, "the cause");
    error.reportError("B", 2, "the consequence");
    EXPECT_STREQ(error.what(), "the cause");
}

TEST(SorvaneExceptionTest, IsCaughtAsAStandardExceptionWithItsReports) {
    try {
        SorvaneException error;
        error.reportError("A", 1, "thrown");
        throw error;
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "thrown");
    }
}

TEST(SorvaneExceptionTest, ACopyIsIndependent) {
    SorvaneException error;
    error.reportError("A", 1, "kept");
    SorvaneException copy(error);
    error.reportError("B", 2, "later");
    EXPECT_EQ(copy.getReports().size(), 1u);
    copy = error;
    EXPECT_EQ(copy.getReports().size(), 2u);
}

TEST(SorvaneExceptionTest, AHostMayActOnEachReport) {
    struct Sink : SorvaneException {
        void reportError(const Sorvane::u8string&, int, const Sorvane::u8string& message) override {
            seen = message;
        }
        Sorvane::u8string seen;
    };
    Sink sink;
    SorvaneException& errors = sink;
    errors.reportError("A", 1, "now");
    EXPECT_EQ(sink.seen, "now");
}

} // namespace
