// Are the tools that the tests rely on able to fail? Crashes, and in checked builds wrong uses of the heap, must
// end a program and name their place.
#include "support/ChildProcess.h"
#include "support/CrashReport.h"

#include <gmock/gmock.h>

#include <ostream>
#include <string>

#ifdef CHECKED_BUILD
#include "support/guardheap/GuardHeap.h"
#endif

namespace {

using testing::AllOf;
using testing::HasSubstr;

struct Fault {
    const char* name;
    unsigned exitCode;
    const char* message;
    const char* place;
};

std::ostream& operator<<(std::ostream& stream, const Fault& fault) {
    return stream << fault.name;
}

class FaultsTest : public testing::TestWithParam<Fault> {};

TEST_P(FaultsTest, EndTheProgramAndNameTheirPlace) {
    const Fault& fault = GetParam();
    const std::string name = fault.name;

    const ChildResult result = runProgram(L"faults.exe", {std::wstring(name.begin(), name.end())});

    EXPECT_EQ(result.exitCode, fault.exitCode);
    EXPECT_THAT(result.errors, AllOf(HasSubstr(fault.message), HasSubstr(fault.place)));
}

std::string nameOfFault(const testing::TestParamInfo<Fault>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Crashes, FaultsTest,
                         testing::Values(Fault{"badAccess", crashExitCode, "CRASH: access violation",
                                               "faults.exe+0x"},
                                         Fault{"divisionByZero", crashExitCode, "CRASH: ", "faults.exe+0x"},
                                         Fault{"terminate", crashExitCode, "CRASH: abort", "faults.exe+0x"},
                                         Fault{"crashInWindowProcedure", crashExitCode,
                                               "CRASH: access violation", "faults.exe+0x"}),
                         nameOfFault);

#ifdef CHECKED_BUILD
INSTANTIATE_TEST_SUITE_P(
    Checks, FaultsTest,
    testing::Values(Fault{"signedOverflow", crashExitCode, "CRASH: illegal instruction", "faults.exe+0x"},
                    Fault{"indexOutOfRange", crashExitCode, "CRASH: abort", "faults.exe+0x"}),
    nameOfFault);

INSTANTIATE_TEST_SUITE_P(
    Heap, FaultsTest,
    testing::Values(
        Fault{"overrunByWriting", guardHeapExitCode, "heap overrun, writing", "+32 from a block of 32 bytes"},
        Fault{"overrunByReading", guardHeapExitCode, "heap overrun, reading", "+32 from a block of 32 bytes"},
        Fault{"overrunWithinTheAlignment", guardHeapExitCode, "heap overrun found at free", "of 24 bytes"},
        Fault{"underrun", guardHeapExitCode, "heap underrun found at free", "of 32 bytes"},
        Fault{"unterminatedText", guardHeapExitCode, "heap overrun, reading", "from a block of 24 bytes"},
        Fault{"useAfterFree", guardHeapExitCode, "use after free, writing", "freed by\n    faults.exe+0x"},
        Fault{"useOfDeadText", guardHeapExitCode, "use after free, reading", "from a block of 101 bytes"},
        Fault{"doubleFree", guardHeapExitCode, "double free", "freed by\n    faults.exe+0x"},
        Fault{"freeInsideBlock", guardHeapExitCode, "free of what is no block", "by\n    faults.exe+0x"},
        Fault{"mallocThenDelete", guardHeapExitCode, "allocated with malloc/free, freed with new/delete",
              "allocated by\n    faults.exe+0x"},
        Fault{"newArrayThenDelete", guardHeapExitCode, "allocated with new[]/delete[], freed with new/delete",
              "allocated by\n    faults.exe+0x"},
        Fault{"deleteAsSmaller", guardHeapExitCode, "delete as an object of another size", "of 44 bytes"},
        Fault{"faultInLateLibrary", guardHeapExitCode, "heap overrun, writing", "by\n    late_fault.dll+0x"},
        Fault{"manyBlocks", 0, "", ""}),
    nameOfFault);
#endif

TEST(NoFaultTest, EndsWithoutAMessage) {
    const ChildResult result = runProgram(L"faults.exe", {L"nothing"});

    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.errors, "");
}

} // namespace
