// An application base class whose start and end a test decides, in the place of the toolkit's.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

class CWinApp {
public:
    explicit CWinApp(LPCTSTR name) : hadName(name != nullptr) {}
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    virtual ~CWinApp() = default;

    virtual BOOL InitInstance() { return startResult; }
    virtual int ExitInstance() {
        ++exits;
        return exitCode;
    }

    HINSTANCE m_hInstance = nullptr;

    bool hadName;
    BOOL startResult = TRUE;
    int exitCode = 0;
    int exits = 0;
};
