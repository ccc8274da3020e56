// What is around a program of the host.
#pragma once

#include "draftmail/Registration.h"
#include "host/HostApplication.h"
#include "host/TemporaryRoot.h"
#include "host/VisibleDesktop.h"

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>

namespace host {

struct Surroundings {
    /// Holds the component, DraftMail.dll and, in "lang", the language files.
    std::wstring programFolder;
    std::wstring baseRegistryPath = HostApplication::defaultBasePath;
    std::wstring temporaryFolder = TemporaryRoot::defaultParent();
    draftmail::ClientsKey mailClients = draftmail::ClientsKey::ofThisSystem();
    /// What Windows speaks with the user.
    LANGID uiLanguage = GetUserDefaultUILanguage();
    /// Whether somebody can see a dialog that is left to a person.
    std::function<bool()> isDesktopVisible = host::isDesktopVisible;
    /// How long a dialog that nobody is there to answer may hold up the program.
    std::chrono::milliseconds unattendedLimit = std::chrono::seconds(60);
};

} // namespace host
