// A folder that keeps other users out, in a place that all users can write to.
#pragma once

#include <string>

namespace host {

/// Where the user's own folder is below `common`: named after the user's identifier, in plain ASCII, so that users do
/// not meet. Empty when there is no common folder or the system does not tell who the user is.
std::wstring privateFolderBelow(const std::wstring& common);

/// Whether the folder is there, is a folder rather than a link to one, and belongs to the user.
bool isUsersOwn(const std::wstring& folder);

/// Makes the folder, whose parent must exist, for the user, the system and administrators alone; one that is there and
/// the user's own is made so again. False when it cannot be made or is not the user's own: somebody else may have
/// planted it to see what comes in.
bool makePrivateFolder(const std::wstring& folder);

} // namespace host
