// CString: UTF-16 text.
#include "afxwin.h"

#include <cstdarg>
#include <cwchar>
#include <utility>

extern "C" IMAGE_DOS_HEADER __ImageBase;

void CString::Format(LPCWSTR pszFormat, ...) {
    va_list arguments;
    va_start(arguments, pszFormat);
    va_list counted;
    va_copy(counted, arguments);
    // The C library's own swprintf() takes "%s" for narrow text in this compiler; these two read it as wide.
    const int length = _vscwprintf(pszFormat, counted);
    va_end(counted);
    std::wstring result(static_cast<size_t>(length < 0 ? 0 : length), L'\0');
    if (length > 0)
        _vsnwprintf(result.data(), result.size(), pszFormat, arguments);
    va_end(arguments);
    text = std::move(result);
}

BOOL CString::LoadString(UINT nID) {
    text.clear();
    // A module may have a text of its own in the place of the toolkit's.
    for (HINSTANCE module : {AfxGetResourceHandle(), reinterpret_cast<HINSTANCE>(&__ImageBase)}) {
        LPCWSTR resource = nullptr;
        // With a size of 0 the system hands out a pointer to the text itself, which has no NUL at its end.
        const int length = ::LoadString(module, nID, reinterpret_cast<LPWSTR>(&resource), 0);
        if (length > 0) {
            text.assign(resource, static_cast<size_t>(length));
            return TRUE;
        }
    }
    return FALSE;
}

LPWSTR CString::GetBuffer(int nMinBufferLength) {
    if (nMinBufferLength > GetLength())
        text.resize(static_cast<size_t>(nMinBufferLength));
    return text.data();
}

void CString::ReleaseBuffer(int nNewLength) {
    text.resize(nNewLength < 0 ? std::wcslen(text.c_str()) : static_cast<size_t>(nNewLength));
}
