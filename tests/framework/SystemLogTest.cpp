// The host's system log.
#include "SorvaneBase/bxutils/SystemLog.h"

#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <array>
#include <map>
#include <regex>
#include <sstream>
#include <thread>
#include <vector>

namespace {

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

class SystemLogTest : public testing::Test {
protected:
    ~SystemLogTest() override { bxutils::setSystemLogFile(L""); }

    void log(const char* message) { bxutils::getSystemLogFormater()->log(2, message, "tests/Source", 7); }
    std::vector<std::string> written() { return lines(test::readFile(file)); }

    test::TempFolder folder;
    std::wstring file = folder / L"log.txt";
};

TEST_F(SystemLogTest, DropsRecordsUntilItHasAFile) {
    ASSERT_NE(bxutils::getSystemLogFormater(), nullptr);
    EXPECT_FALSE(bxutils::getSystemLogFormater()->isEnabled(0));
    log("lost");
    bxutils::getSystemLogFormater()->flush();
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    EXPECT_TRUE(bxutils::getSystemLogFormater()->isEnabled(0));
    EXPECT_TRUE(bxutils::getSystemLogFormater()->isEnabled(2));
    EXPECT_THAT(written(), testing::IsEmpty());
}

struct CountingListener : bxutils::LogListener {
    void logged(std::int32_t level, const char* message, const char* sourceFile,
                std::int32_t line) noexcept override {
        ++count;
        last = std::to_string(level) + " " + sourceFile + ":" + std::to_string(line) + " " + message;
    }
    int count = 0;
    std::string last;
};

TEST_F(SystemLogTest, TellsItsListenerEachRecordWithAndWithoutAFile) {
    CountingListener listener;
    bxutils::setSystemLogListener(&listener);
    EXPECT_TRUE(bxutils::getSystemLogFormater()->isEnabled(0));
    log("first");
    EXPECT_EQ(listener.last, "2 tests/Source:7 first");
    EXPECT_TRUE(bxutils::setSystemLogFile(file));
    log("second");
    bxutils::setSystemLogListener(nullptr);
    log("third");

    EXPECT_EQ(listener.count, 2);
    EXPECT_EQ(listener.last, "2 tests/Source:7 second");
    EXPECT_EQ(written().size(), 2u);
}

TEST_F(SystemLogTest, WritesTimeLevelPlaceAndMessage) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    bxutils::getSystemLogFormater()->log(0, "Failed to load \xC5\xBE", "Components/BasicExport/SorvaneMail",
                                         193);
    bxutils::getSystemLogFormater()->log(2, "done", "x", -1);

    ASSERT_EQ(written().size(), 2u);
    const std::string time = R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z )";
    EXPECT_TRUE(std::regex_match(
        written()[0], std::regex(time + "0 Components/BasicExport/SorvaneMail:193 Failed to load \xC5\xBE")))
        << written()[0];
    EXPECT_TRUE(std::regex_match(written()[1], std::regex(time + "2 x:-1 done"))) << written()[1];
}

// A crash in the middle of a record leaves the log locked.
TEST_F(SystemLogTest, WritesOfACrashWhileItIsLocked) {
    struct : bxutils::LogListener {
        void logged(std::int32_t, const char* message, const char*, std::int32_t) noexcept override {
            bxutils::logCrash((std::string("crashed at ") + message).c_str(), "tests/Crash", 9);
        }
    } crashing;
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    bxutils::setSystemLogListener(&crashing);
    log("first");
    bxutils::setSystemLogListener(nullptr);

    EXPECT_THAT(written(), testing::ElementsAre(testing::EndsWith("Z 0 tests/Crash:9 crashed at first"),
                                                testing::EndsWith("Z 2 tests/Source:7 first")));
}

TEST_F(SystemLogTest, CutsWhatIsTooLongToSayOfACrash) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    bxutils::logCrash(std::string(5000, 'x').c_str(), "tests/Crash", 9);
    log("next");
    EXPECT_THAT(written(), testing::ElementsAre(testing::EndsWith("xxx"), testing::EndsWith(" next")));
}

TEST_F(SystemLogTest, WritesTheTimeInUtc) {
    SYSTEMTIME before;
    SYSTEMTIME after;
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    GetSystemTime(&before);
    log("now");
    GetSystemTime(&after);

    const auto stamp = [](const SYSTEMTIME& time) {
        std::array<char, 40> text{};
        std::snprintf(text.data(), text.size(), "%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", time.wYear,
                      time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
        return std::string(text.data());
    };
    const std::string time = written().at(0).substr(0, 24);
    EXPECT_GE(time, stamp(before));
    EXPECT_LE(time, stamp(after));
}

TEST_F(SystemLogTest, KeepsARecordOnOneLine) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    log("one\ntwo\rthree\n");
    ASSERT_EQ(written().size(), 1u);
    EXPECT_THAT(written()[0], testing::EndsWith("tests/Source:7 one two three "));
}

TEST_F(SystemLogTest, TakesMissingTextsAsEmpty) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    bxutils::getSystemLogFormater()->log(0, nullptr, nullptr, 3);
    ASSERT_EQ(written().size(), 1u);
    EXPECT_THAT(written()[0], testing::EndsWith("Z 0 :3 "));
}

TEST_F(SystemLogTest, AppendsToWhatTheFileHolds) {
    folder.write(L"log.txt", "old\n");
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    log("new");
    EXPECT_THAT(written(), testing::ElementsAre("old", testing::EndsWith("new")));
}

TEST_F(SystemLogTest, MakesMissingParentsUnderALongPath) {
    for (int level = 0; level < 8; ++level)
        file.insert(file.rfind(L'\\'), L"\\" + std::wstring(40, L'ř'));
    ASSERT_GT(file.size(), 300u);
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    log("deep");
    EXPECT_THAT(written(), testing::ElementsAre(testing::EndsWith("deep")));
    bxutils::setSystemLogFile(L"");
}

TEST_F(SystemLogTest, AnEmptyPathEndsIt) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    log("kept");
    EXPECT_TRUE(bxutils::setSystemLogFile(L""));
    EXPECT_FALSE(bxutils::getSystemLogFormater()->isEnabled(0));
    log("lost");
    EXPECT_EQ(written().size(), 1u);
}

TEST_F(SystemLogTest, DropsRecordsWhenTheFileCannotBeOpened) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    EXPECT_FALSE(bxutils::setSystemLogFile(folder.path()));
    EXPECT_FALSE(bxutils::getSystemLogFormater()->isEnabled(0));
    log("lost");
    EXPECT_THAT(written(), testing::IsEmpty());
}

TEST_F(SystemLogTest, MayBeRenamedWhileItIsWritten) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    log("before");
    ASSERT_TRUE(MoveFileW(file.c_str(), (folder / L"old.txt").c_str()));
    log("after");
    bxutils::getSystemLogFormater()->flush();
    EXPECT_EQ(lines(test::readFile(folder / L"old.txt")).size(), 2u);
}

TEST_F(SystemLogTest, KeepsTheRecordsOfSeveralThreadsWhole) {
    ASSERT_TRUE(bxutils::setSystemLogFile(file));
    {
        std::vector<std::jthread> threads;
        for (char name = 'a'; name < 'e'; ++name)
            threads.emplace_back([this, name] {
                for (int i = 0; i < 100; ++i)
                    log(std::string(50, name).c_str());
            });
    }
    std::map<std::string, int> count;
    for (const std::string& line : written())
        ++count[line.substr(line.rfind(' ') + 1)];
    const std::map<std::string, int> expected = {{std::string(50, 'a'), 100},
                                                 {std::string(50, 'b'), 100},
                                                 {std::string(50, 'c'), 100},
                                                 {std::string(50, 'd'), 100}};
    EXPECT_EQ(count, expected);
}

TEST_F(SystemLogTest, KeepsTheRecordsOfSeveralProcessesWhole) {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
    program = program.substr(0, program.rfind(L'\\')) + L"\\log_writer.exe";

    std::vector<HANDLE> processes;
    for (const wchar_t* name : {L"ann", L"bob", L"eve"}) {
        std::wstring command = L"\"" + program + L"\" \"" + file + L"\" " + name + L" 3000";
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        ASSERT_TRUE(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &startup, &process));
        CloseHandle(process.hThread);
        processes.push_back(process.hProcess);
    }
    for (HANDLE process : processes) {
        DWORD exitCode = 1;
        EXPECT_EQ(WaitForSingleObject(process, 60000), WAIT_OBJECT_0);
        EXPECT_TRUE(GetExitCodeProcess(process, &exitCode));
        EXPECT_EQ(exitCode, 0u);
        CloseHandle(process);
    }

    std::map<std::string, int> count;
    for (const std::string& line : written())
        ++count[line.substr(line.rfind(' ') + 1)];
    EXPECT_EQ(count, (std::map<std::string, int>{{"ann", 3000}, {"bob", 3000}, {"eve", 3000}}));
}

} // namespace
