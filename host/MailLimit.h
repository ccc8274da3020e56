// The setting of the size from which a mail is asked about.
#pragma once

namespace host {

/// The mail engine's setting in the host's store: a size in KB, zero or less for none.
inline constexpr char mailLimitKey[] = "Export.ToMail.MaxTotalSizeInKb";

} // namespace host
