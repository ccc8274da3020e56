// Builders that put texts together piece by piece.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

namespace Sorvane {

// Appending a null pointer appends nothing. Thread: the one that owns the builder.

/// Builds UTF-8 text.
class SORVANEBASE_API U8StringBuilder {
public:
    U8StringBuilder& append(const char* utf8);
    U8StringBuilder& append(const u8string& utf8);
    /// Appends the number as a signed decimal.
    U8StringBuilder& append(int number);

    /// Appends wide text. The name is older than the behaviour: nothing is lost to a code page, the text is
    /// converted to UTF-8 and c_u8u16 gives the same wide text back.
    U8StringBuilder& appendInAcp(const wchar_t* utf16);

    /// The text so far; valid until the next append or the end of the builder.
    const char* c_str() const noexcept { return text.c_str(); }
    operator const u8string&() const noexcept { return text; }

private:
    u8string text;
};

/// Builds wide text.
class SORVANEBASE_API AStringBuilder {
public:
    AStringBuilder& append(const wchar_t* utf16);
    AStringBuilder& append(const astring& utf16);

    /// The text so far; valid until the next append or the end of the builder.
    const wchar_t* c_str() const noexcept { return text.c_str(); }
    operator const astring&() const noexcept { return text; }

private:
    astring text;
};

} // namespace Sorvane
