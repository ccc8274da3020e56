// Writes a draft with all files of a folder as its attachments and prints how many seconds the mail client took.
//   DraftBenchmark PAGES DRAFTS
#include "draftmail/SendMail.h"

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace {

/// Leaves the draft in a folder of the benchmark's.
class BenchmarkDesktop : public draftmail::Desktop {
public:
    explicit BenchmarkDesktop(std::wstring folder) : folder(std::move(folder)) {}
    std::wstring draftsFolder() override { return folder; }
    DWORD open(const std::wstring&, HWND) noexcept override { return ERROR_SUCCESS; }

private:
    std::wstring folder;
};

std::vector<std::wstring> filesIn(const std::wstring& folder) {
    std::vector<std::wstring> files;
    WIN32_FIND_DATAW found{};
    HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return files;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            files.push_back(folder + L"\\" + found.cFileName);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return files;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 3) {
        std::fputs("DraftBenchmark PAGES DRAFTS\n", stderr);
        return 1;
    }
    std::vector<std::wstring> pages = filesIn(argv[1]);
    std::vector<draftmail::FileDescW> files;
    files.reserve(pages.size());
    for (std::wstring& page : pages)
        files.push_back({0, 0, 0, page.data(), nullptr, nullptr});
    std::wstring subject = L"Pages";
    std::wstring note = L" ";
    draftmail::MessageW message{};
    message.lpszSubject = subject.data();
    message.lpszNoteText = note.data();
    message.nFileCount = static_cast<ULONG>(files.size());
    message.lpFiles = files.data();
    BenchmarkDesktop desktop(argv[2]);

    const auto start = std::chrono::steady_clock::now();
    const ULONG code = draftmail::sendMail(&message, MAPI_DIALOG, 0, desktop);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    if (code != SUCCESS_SUCCESS) {
        std::fprintf(stderr, "the mail client returned %lu\n", code);
        return 1;
    }
    std::printf("%.6f\n", seconds.count());
    return 0;
}
