// CString: UTF-16 text.
#pragma once

#include "ToolkitApi.h"

#include <windows.h>

#include <string>

/// Text of UTF-16 units that converts to LPCTSTR wherever the system wants one. A null pointer given to it is an
/// empty text.
class TOOLKIT_API CString {
public:
    CString() = default;
    CString(LPCWSTR psz) : text(psz ? psz : L"") {}
    CString(LPCWSTR pch, int nLength) : text(pch, static_cast<size_t>(nLength)) {}
    explicit CString(wchar_t ch, int nRepeat = 1) : text(static_cast<size_t>(nRepeat), ch) {}

    int GetLength() const { return static_cast<int>(text.size()); }
    BOOL IsEmpty() const { return text.empty(); }
    void Empty() { text.clear(); }
    wchar_t GetAt(int iChar) const { return text.at(static_cast<size_t>(iChar)); }
    wchar_t operator[](int iChar) const { return GetAt(iChar); }
    LPCWSTR GetString() const { return text.c_str(); }
    operator LPCWSTR() const { return text.c_str(); }

    CString& operator+=(const CString& str) {
        text += str.text;
        return *this;
    }
    CString& operator+=(LPCWSTR psz) { return *this += CString(psz); }
    CString& operator+=(wchar_t ch) {
        text += ch;
        return *this;
    }

    /// Below, at or above 0 as this text sorts before, with or after the other, by the value of its units.
    int Compare(LPCWSTR psz) const { return text.compare(psz); }
    /// The same without regard to case.
    int CompareNoCase(LPCWSTR psz) const { return _wcsicmp(GetString(), psz); }

    /// Replaces the text by what the arguments give in the format, which is read as the system reads it: "%s" takes
    /// wide text.
    void Format(LPCWSTR pszFormat, ...);
    /// Takes the text from the current module's string table, or else the toolkit's. False, and an empty text, when it
    /// is in neither.
    BOOL LoadString(UINT nID);

    /// A buffer of nMinBufferLength characters and a terminating NUL that holds the text and can be written to.
    /// Nothing else may be done with the text until ReleaseBuffer() is called.
    LPWSTR GetBuffer(int nMinBufferLength = 0);
    /// Ends what GetBuffer() began: the text is the buffer's first nNewLength characters, or all up to the NUL.
    void ReleaseBuffer(int nNewLength = -1);

private:
    std::wstring text;
};

inline CString operator+(CString left, const CString& right) {
    return left += right;
}
inline CString operator+(CString left, LPCWSTR right) {
    return left += right;
}
inline CString operator+(LPCWSTR left, const CString& right) {
    return CString(left) += right;
}

inline bool operator==(const CString& left, const CString& right) {
    return left.Compare(right) == 0;
}
inline bool operator==(const CString& left, LPCWSTR right) {
    return left == CString(right);
}
inline bool operator<(const CString& left, const CString& right) {
    return left.Compare(right) < 0;
}
