// The controls by which a host fills in the dialog of the export to a directory.
#pragma once

/// Identifiers in the component's dialog; they are part of its contract.
namespace host::directoryDialog {

constexpr int pathEdit = 4006;
constexpr int prefixEdit = 4008;
constexpr int firstNumberEdit = 4009;
constexpr int digitsEdit = 4010;
constexpr int appendNumberBox = 4027;
constexpr int parentFolderBox = 4030;

} // namespace host::directoryDialog
