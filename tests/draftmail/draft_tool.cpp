// Makes drafts as programs do, for the tests that look at them from outside.
//
//   draft_tool write FOLDER SUBJECT NOTE [NAME PATH]...      through the library, into FOLDER
//   draft_tool send|sendw SUBJECT NOTE [NAME PATH]...        through the system's MAPI32.DLL, in the code page or UTF-16
//   draft_tool documents [NAME PATH]...                      the same, as documents
//   draft_tool register DLL | unregister                     where the system's MAPI32.DLL looks
//   draft_tool opened RECORD PATH                            stands for a mail program: notes what it was to open
//
// Prints the code that the call returned, and ends with 0 when there was one.
#include "draftmail/Registration.h"
#include "draftmail/SendMail.h"

#include <windows.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

class FolderDesktop : public draftmail::Desktop {
public:
    explicit FolderDesktop(const wchar_t* folder) : folder(folder) {}
    std::wstring draftsFolder() override { return folder; }
    DWORD open(const std::wstring&, HWND) noexcept override { return ERROR_SUCCESS; }

private:
    std::wstring folder;
};

using Words = std::vector<std::wstring>;

/// The message that the words SUBJECT NOTE [NAME PATH]... describe.
class WideMessage {
public:
    explicit WideMessage(Words& words) {
        for (std::size_t i = 2; i + 1 < words.size(); i += 2)
            files.push_back({0, 0, 0, words[i + 1].data(), words[i].data(), nullptr});
        message.lpszSubject = words.at(0).data();
        message.lpszNoteText = words.at(1).data();
        message.nFileCount = static_cast<ULONG>(files.size());
        message.lpFiles = files.data();
    }

    std::vector<draftmail::FileDescW> files;
    draftmail::MessageW message{};
};

std::string ansi(const std::wstring& text) {
    std::string result(text.size() * 3, '\0');
    WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, result.data(), static_cast<int>(result.size() + 1),
                        nullptr, nullptr);
    return result.c_str();
}

class AnsiMessage {
public:
    explicit AnsiMessage(const Words& words) {
        for (const std::wstring& word : words)
            texts.push_back(ansi(word));
        for (std::size_t i = 2; i + 1 < texts.size(); i += 2)
            files.push_back({0, 0, 0, texts[i + 1].data(), texts[i].data(), nullptr});
        message.lpszSubject = texts.at(0).data();
        message.lpszNoteText = texts.at(1).data();
        message.nFileCount = static_cast<ULONG>(files.size());
        message.lpFiles = files.data();
    }

    std::vector<std::string> texts;
    std::vector<MapiFileDesc> files;
    MapiMessage message{};
};

constexpr FLAGS flags = MAPI_LOGON_UI | MAPI_DIALOG;

template <typename Function, typename... Arguments>
ULONG callSystem(const char* name, Arguments... arguments) {
    HMODULE mapi = LoadLibraryW(L"MAPI32.DLL");
    const auto function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(mapi, name)));
    const ULONG code = function ? function(arguments...) : ~0UL;
    FreeLibrary(mapi);
    return code;
}

template <typename Message> ULONG sendThroughSystem(const char* function, Message message) {
    return callSystem<ULONG WINAPI(LHANDLE, ULONG_PTR, Message*, FLAGS, ULONG)>(function, 0, 0, &message,
                                                                                flags, 0);
}

ULONG sendDocumentsThroughSystem(const Words& words) {
    std::string delimiter = "|";
    std::string paths;
    std::string names;
    for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
        names += (i == 0 ? "" : delimiter) + ansi(words[i]);
        paths += (i == 0 ? "" : delimiter) + ansi(words[i + 1]);
    }
    return callSystem<MAPISENDDOCUMENTS>("MAPISendDocuments", 0, delimiter.data(), paths.data(), names.data(),
                                         0);
}

ULONG run(const std::wstring& action, Words words) {
    if (action == L"write") {
        FolderDesktop desktop(words.at(0).c_str());
        words.erase(words.begin());
        const WideMessage described(words);
        return draftmail::sendMail(&described.message, flags, 0, desktop);
    }
    if (action == L"send")
        return sendThroughSystem("MAPISendMail", AnsiMessage(words).message);
    if (action == L"documents")
        return sendDocumentsThroughSystem(words);
    if (action == L"sendw")
        return sendThroughSystem("MAPISendMailW", WideMessage(words).message);
    const draftmail::ClientsKey clients = draftmail::ClientsKey::ofThisSystem();
    if (action == L"register")
        return static_cast<ULONG>(draftmail::registerDraftMail(clients, words.at(0)));
    if (action == L"unregister")
        return static_cast<ULONG>(draftmail::unregisterDraftMail(clients));
    return ~0UL;
}

void noteOpened(const std::wstring& record, const std::wstring& path) {
    FILE* file = _wfopen(record.c_str(), L"ab");
    std::fprintf(file, "%s\n", draftmail::utf8(path).c_str());
    std::fclose(file);
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    const std::wstring action = argc > 1 ? argv[1] : L"";
    const Words words(argv + std::min(argc, 2), argv + argc);
    if (action == L"opened") {
        noteOpened(words.at(0), words.at(1));
        return 0;
    }
    std::printf("%lu\n", run(action, words));
    return 0;
}
