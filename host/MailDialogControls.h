// The control by which a host fills in the dialog of the export to e-mail.
#pragma once

/// Identifier in the component's dialog; it is part of its contract.
namespace host::mailDialog {

constexpr int subjectEdit = 4042;

} // namespace host::mailDialog
