// What the mail engine keeps in the host's settings store.
#pragma once

#include "SorvaneBase/StringTypes.h"

#include <cstdint>

/// The subject is remembered from one export to the next; the size limit is the host's and only read.
class ExportToMailData {
public:
    ExportToMailData() = default;
    virtual ~ExportToMailData();

    /// False, with nothing changed, when the host keeps no settings. A subject that is not stored leaves `subject`
    /// as it is; a limit that is not stored, or is no number, is none.
    bool load();

    /// Stores the subject. False when it could not be stored.
    bool save() const;

    Sorvane::u8string subject;
    std::int32_t maxTotalSizeInKb = 0; ///< of all attachments together; 0 or less for no limit
};
