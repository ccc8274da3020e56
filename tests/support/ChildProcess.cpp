// Running another program and seeing what becomes of it.
#include "support/ChildProcess.h"

#include <gtest/gtest.h>

namespace {

constexpr DWORD deadlineInMs = 60'000;

std::wstring folderOfTests() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring file = path;
    return file.substr(0, file.rfind(L'\\') + 1);
}

/// Quotes an argument the way the C library of the started program takes it apart.
std::wstring quoted(const std::wstring& argument) {
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"')
            result.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        result += character;
    }
    result.append(backslashes, L'\\');
    return result + L'"';
}

/// A file that a child writes its output to. A pipe would not do: the end of one comes only when everything that
/// the child has started in the background, such as Wine's desktop, has ended as well.
class OutputFile {
public:
    OutputFile() {
        wchar_t folder[MAX_PATH] = L"";
        wchar_t path[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, folder);
        GetTempFileNameW(folder, L"out", 0, path);
        SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
        file = CreateFileW(path, GENERIC_READ | GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inheritable,
                           TRUNCATE_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    }
    ~OutputFile() { CloseHandle(file); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    HANDLE handle() const { return file; }

    std::string text() const {
        std::string result;
        SetFilePointer(file, 0, nullptr, FILE_BEGIN);
        char buffer[4096];
        DWORD count = 0;
        while (ReadFile(file, buffer, sizeof buffer, &count, nullptr) && count > 0)
            result.append(buffer, count);
        return result;
    }

private:
    HANDLE file = INVALID_HANDLE_VALUE;
};

} // namespace

ChildResult runProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                       const std::function<void(DWORD processId)>& meanwhile) {
    const std::wstring file = program.find(L':') == std::wstring::npos ? folderOfTests() + program : program;
    std::wstring commandLine = quoted(file);
    for (const std::wstring& argument : arguments)
        commandLine += L' ' + quoted(argument);

    OutputFile output;
    OutputFile errors;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.handle();
    startup.hStdError = errors.handle();
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessW(file.c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                                        CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process);

    ChildResult result;
    if (started) {
        if (meanwhile)
            meanwhile(process.dwProcessId);
        if (WaitForSingleObject(process.hProcess, deadlineInMs) != WAIT_OBJECT_0) {
            ADD_FAILURE() << "the program did not end";
            TerminateProcess(process.hProcess, 1);
            WaitForSingleObject(process.hProcess, INFINITE);
        }
        DWORD exitCode = 0;
        GetExitCodeProcess(process.hProcess, &exitCode);
        result.exitCode = exitCode;
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    } else {
        ADD_FAILURE() << "the program could not be started, error " << GetLastError();
    }
    result.output = output.text();
    result.errors = errors.text();
    return result;
}
