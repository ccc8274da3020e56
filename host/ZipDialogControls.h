// The controls by which a host fills in the dialog of the export to a ZIP archive.
#pragma once

/// Identifiers in the component's dialog; they are part of its contract.
namespace host::zipDialog {

constexpr int pathEdit = 4035;
constexpr int prefixEdit = 4037;

} // namespace host::zipDialog
