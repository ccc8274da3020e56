// Turns a draft into the bytes of a mail message.
#include "draftmail/DraftWriter.h"

#include "SorvaneBase/bxdisk/LongPath.h"
#include "draftmail/MapiError.h"
#include "host/UniqueHandle.h"

#include <combaseapi.h>
#include <shlwapi.h>

#include <algorithm>
#include <array>

namespace draftmail {
namespace {

constexpr std::size_t bytesAtOnce = bytesPerBase64Line * 4096;

/// The note with CR LF after each line, whatever ended it before.
std::string noteText(std::wstring_view note) {
    std::string text;
    const std::string original = utf8(note);
    for (std::size_t at = 0; at < original.size(); ++at) {
        const char c = original[at];
        if (c == '\r' && at + 1 < original.size() && original[at + 1] == '\n')
            continue;
        if (c == '\r' || c == '\n')
            text += "\r\n";
        else
            text += c;
    }
    return text;
}

/// Whether the text can go through the mail as it is.
bool isSevenBit(std::string_view text) {
    std::size_t column = 0;
    for (const char c : text) {
        const bool plain = (c >= ' ' && c <= '~') || c == '\t' || c == '\r' || c == '\n';
        column = c == '\r' || c == '\n' ? 0 : column + 1;
        if (!plain || column > longestLine)
            return false;
    }
    return true;
}

std::string_view contentType(const std::wstring& name) {
    struct Type {
        const wchar_t* extension;
        std::string_view content;
    };
    static constexpr std::array types{
        Type{L".bmp", "image/bmp"},  Type{L".gif", "image/gif"},       Type{L".jpeg", "image/jpeg"},
        Type{L".jpg", "image/jpeg"}, Type{L".pdf", "application/pdf"}, Type{L".png", "image/png"},
        Type{L".tif", "image/tiff"}, Type{L".tiff", "image/tiff"},     Type{L".zip", "application/zip"},
    };
    const wchar_t* extension = PathFindExtensionW(name.c_str());
    const auto* found = std::find_if(types.begin(), types.end(), [extension](const Type& type) {
        return CompareStringOrdinal(extension, -1, type.extension, -1, TRUE) == CSTR_EQUAL;
    });
    return found == types.end() ? "application/octet-stream" : found->content;
}

std::string notePart(std::wstring_view note) {
    const std::string text = noteText(note);
    std::string part = "Content-Type: text/plain; charset=utf-8\r\n";
    if (isSevenBit(text))
        return part + "Content-Transfer-Encoding: 7bit\r\n\r\n" + text;
    std::string lines;
    encodeBase64(text, lines);
    return part + "Content-Transfer-Encoding: base64\r\n\r\n" + lines;
}

class AttachedFile {
public:
    explicit AttachedFile(const std::wstring& path)
        // A program that is still writing to it is no reason to refuse it.
        : file(CreateFileW(bxdisk::longPath(path).c_str(), GENERIC_READ,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                           FILE_FLAG_SEQUENTIAL_SCAN, nullptr)) {
        if (!file)
            throw attachmentError(GetLastError());
        // Reading a device may never end.
        if (GetFileType(file.get()) != FILE_TYPE_DISK)
            throw MapiError(MAPI_E_ATTACHMENT_OPEN_FAILURE);
    }

    /// Fills the buffer unless the file ends before. Returns how much there was.
    std::size_t read(std::string& buffer) {
        std::size_t size = 0;
        DWORD count = 0;
        do {
            if (!ReadFile(file.get(), buffer.data() + size, static_cast<DWORD>(buffer.size() - size), &count,
                          nullptr))
                throw attachmentError(GetLastError());
            size += count;
        } while (count != 0 && size < buffer.size());
        return size;
    }

private:
    host::UniqueHandle file;
};

} // namespace

Stamp Stamp::make() {
    GUID guid{};
    if (FAILED(CoCreateGuid(&guid)))
        throw MapiError(MAPI_E_FAILURE);
    constexpr std::string_view hexDigits = "0123456789abcdef";
    Stamp stamp{Moment::now(), {}};
    const auto* bytes = reinterpret_cast<const unsigned char*>(&guid);
    std::for_each(bytes, bytes + sizeof guid, [&](unsigned char byte) {
        stamp.id.append(1, hexDigits[byte >> 4]).append(1, hexDigits[byte & 15]);
    });
    return stamp;
}

void writeDraft(const Draft& draft, const Stamp& stamp, const Sink& sink) {
    std::string text = "X-Unsent: 1\r\nDate: " + dateText(stamp.moment) + "\r\n";
    // The name of the computer is nobody's business.
    text += "Message-ID: <" + stamp.id + "@draftmail.invalid>\r\n";
    if (!draft.to.empty())
        text += addressField("To", draft.to);
    if (!draft.cc.empty())
        text += addressField("Cc", draft.cc);
    if (!draft.bcc.empty())
        text += addressField("Bcc", draft.bcc);
    if (!draft.subject.empty())
        text += textField("Subject", utf8(draft.subject));
    text += "MIME-Version: 1.0\r\n";
    if (draft.attachments.empty()) {
        sink(text + notePart(draft.note) + "\r\n");
        return;
    }

    // Base64 has no "_", and nobody guesses the id: the boundary occurs in no part.
    const std::string boundary = "=_" + stamp.id;
    text += "Content-Type: multipart/mixed;\r\n boundary=\"" + boundary + "\"\r\n\r\n";
    sink(text + "--" + boundary + "\r\n" + notePart(draft.note));
    std::string bytes(bytesAtOnce, '\0');
    std::string lines;
    for (const Attachment& attachment : draft.attachments) {
        AttachedFile file(attachment.path);
        const std::string name = utf8(attachment.name);
        text = "\r\n--" + boundary + "\r\nContent-Type: ";
        text += contentType(attachment.name);
        text += encodedParameter("name", name);
        text += "\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: attachment";
        text += parameter("filename", name) + "\r\n\r\n";
        sink(text);
        std::size_t size = 0;
        do {
            size = file.read(bytes);
            encodeBase64(std::string_view(bytes).substr(0, size), lines);
            sink(lines);
        } while (size == bytes.size());
    }
    sink("\r\n--" + boundary + "--\r\n");
}

} // namespace draftmail
