// The example of the README, as the test calls it.
#pragma once

#include <string>

class CWnd;

int exportScans(const std::wstring& programs, const std::wstring& scans, CWnd* window);
