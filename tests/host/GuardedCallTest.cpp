// Calls that come back from crashes.
#include "host/GuardedCall.h"

#include <gmock/gmock.h>

#include <malloc.h>
#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace {

using host::callGuarded;
using host::Crash;
using testing::MatchesRegex;

// The compiler must neither see through these nor trap what they do, as it does in checked builds.
#define CRASHING [[gnu::noinline, gnu::no_sanitize_undefined]]

CRASHING void readNowhere() {
    *static_cast<volatile int*>(nullptr);
}

CRASHING void divideByZero() {
    volatile int dividend = 2;
    volatile int divisor = 0;
    dividend = dividend / divisor;
}

CRASHING void runDataAsCode() {
    static const unsigned char data[] = {0x0F, 0x0B};
    DWORD before = 0;
    VirtualProtect(const_cast<unsigned char*>(data), sizeof data, PAGE_EXECUTE_READ, &before);
    reinterpret_cast<void (*)()>(reinterpret_cast<std::uintptr_t>(data))();
}

CRASHING int fillStack(const volatile char* outer) {
    volatile char here[1024];
    here[0] = *outer;
    return here[0] ? fillStack(here) + here[0] : 0;
}

void overflowStack() {
    volatile char start = 1;
    fillStack(&start);
}

constexpr DWORD microsoftsException = 0xE06D7363;
constexpr DWORD delphisException = 0x0EEDFADE;

struct Case {
    const char* name;
    DWORD code;
    std::function<void()> crash;
    friend void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }
};

class CrashTest : public testing::TestWithParam<Case> {};

TEST_P(CrashTest, ComesBackAsManyTimesAsItHappens) {
    // Wine commits a stack whole, so that the only page to guard it is the last, with no room for a handler below. This
    // makes a guard page that moves down before the stack, as it does on Windows.
    _resetstkoflw();
    // What the compiler keeps in registers must be there after each.
    unsigned sum = 0;
    for (unsigned i = 1; i <= 10; ++i) {
        bool wentOn = false;
        const std::optional<Crash> crash = callGuarded([&] {
            sum += i;
            GetParam().crash();
            wentOn = true;
        });
        ASSERT_TRUE(crash);
        ASSERT_EQ(crash->code, GetParam().code);
        ASSERT_FALSE(wentOn);
    }
    EXPECT_EQ(sum, 55u);
}

INSTANTIATE_TEST_SUITE_P(
    GuardedCallTest, CrashTest,
    testing::Values(Case{"AccessViolation", EXCEPTION_ACCESS_VIOLATION, readNowhere},
                    Case{"IllegalInstruction", EXCEPTION_ILLEGAL_INSTRUCTION, runDataAsCode},
                    Case{"DivisionByZero", EXCEPTION_INT_DIVIDE_BY_ZERO, divideByZero},
                    Case{"StackOverflow", EXCEPTION_STACK_OVERFLOW, overflowStack},
                    Case{"MicrosoftsCppException", microsoftsException,
                         [] { RaiseException(microsoftsException, EXCEPTION_NONCONTINUABLE, 0, nullptr); }},
                    Case{"DelphisException", delphisException,
                         [] { RaiseException(delphisException, EXCEPTION_NONCONTINUABLE, 0, nullptr); }}),
    [](const auto& info) { return info.param.name; });

TEST(GuardedCallTest, ReturnsNothingAfterACallThatHasReturned) {
    bool called = false;
    EXPECT_FALSE(callGuarded([&] { called = true; }));
    EXPECT_TRUE(called);
}

TEST(GuardedCallTest, LetsCppExceptionsPassAndUnwindsTheirFrames) {
    const auto held = std::make_shared<int>();
    EXPECT_THROW(
        callGuarded([&, copy = held] { throw std::runtime_error(std::to_string(copy.use_count())); }),
        std::runtime_error);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(GuardedCallTest, LetsCppExceptionsBeCaughtInside) {
    bool caught = false;
    EXPECT_FALSE(callGuarded([&] {
        try {
            throw std::runtime_error("");
        } catch (const std::runtime_error&) {
            caught = true;
        }
    }));
    EXPECT_TRUE(caught);
}

TEST(GuardedCallTest, LeavesACrashToTheCodeThatHandlesIt) {
    std::optional<Crash> inner;
    bool wentOn = false;
    EXPECT_FALSE(callGuarded([&] {
        inner = callGuarded(readNowhere);
        wentOn = true;
    }));
    EXPECT_TRUE(inner);
    EXPECT_TRUE(wentOn);
}

int unhandled = 0;

LONG WINAPI goOn(EXCEPTION_POINTERS*) {
    ++unhandled;
    return EXCEPTION_CONTINUE_EXECUTION;
}

TEST(GuardedCallTest, LetsBreakpointsPass) {
    const LPTOP_LEVEL_EXCEPTION_FILTER before = SetUnhandledExceptionFilter(goOn);
    bool wentOn = false;
    EXPECT_FALSE(callGuarded([&] {
        RaiseException(EXCEPTION_BREAKPOINT, 0, 0, nullptr);
        wentOn = true;
    }));
    SetUnhandledExceptionFilter(before);
    EXPECT_TRUE(wentOn);
    EXPECT_EQ(unhandled, 1);
}

TEST(CrashDescriptionTest, NamesExceptionModuleAndOffset) {
    const std::optional<Crash> crash = callGuarded(readNowhere);
    ASSERT_TRUE(crash);
    EXPECT_THAT(host::describe(*crash).data(), MatchesRegex("exception 0xc0000005 at host_tests.exe.0x\\w+"));
}

TEST(CrashDescriptionTest, SaysSoWhenNoModuleIsThere) {
    EXPECT_STREQ(host::describe({EXCEPTION_ACCESS_VIOLATION, reinterpret_cast<const void*>(0x10)}).data(),
                 "exception 0xc0000005 at an unknown module+0x10");
}

} // namespace
