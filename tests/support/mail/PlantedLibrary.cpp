// A library that a test plants as MAPI32.DLL and that tells by a variable of its process that its code has run.
#include <windows.h>

#include <mapi.h>

extern "C" __declspec(dllexport) ULONG WINAPI MAPISendMail(LHANDLE, ULONG_PTR, lpMapiMessage, FLAGS, ULONG) {
    return SUCCESS_SUCCESS;
}

BOOL WINAPI DllMain(HINSTANCE, DWORD, void*) {
    SetEnvironmentVariableW(L"PLANTED_LIBRARY", L"has run");
    return TRUE;
}
