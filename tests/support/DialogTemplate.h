// Dialog templates as they stand in the resources of the test program.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace test {

constexpr WORD buttonClass = 0x80;
constexpr WORD editClass = 0x81;
constexpr WORD staticClass = 0x82;
constexpr WORD listBoxClass = 0x83;

struct TemplateItem {
    DWORD id;
    WORD type;
    DWORD style;
    std::vector<short> rect; ///< x, y, width, height
    std::wstring text;

    friend bool operator==(const TemplateItem&, const TemplateItem&) = default;
};

inline void PrintTo(const TemplateItem& item, std::ostream* out) {
    *out << item.id << " type " << std::hex << item.type << " style " << item.style << std::dec << " at "
         << testing::PrintToString(item.rect) << " " << testing::PrintToString(item.text);
}

/// Reads an extended dialog template, which is a sequence of unaligned fields.
class DialogTemplate {
public:
    explicit DialogTemplate(int id) {
        HRSRC resource = FindResourceW(nullptr, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(5 /* RT_DIALOG */));
        HGLOBAL loaded = resource ? LoadResource(nullptr, resource) : nullptr;
        if (!loaded)
            throw std::runtime_error("no such template");
        bytes.assign(static_cast<const char*>(LockResource(loaded)), SizeofResource(nullptr, resource));

        version = read<WORD>();
        signature = read<WORD>();
        read<DWORD>(); // help
        extendedStyle = read<DWORD>();
        style = read<DWORD>();
        const auto count = read<WORD>();
        rect = {read<short>(), read<short>(), read<short>(), read<short>()};
        menu = readText();
        windowClass = readText();
        title = readText();
        fontSize = read<WORD>();
        read<WORD>(); // weight
        read<WORD>(); // italic and character set
        font = readText();
        for (WORD i = 0; i < count; ++i) {
            position = (position + 3) / 4 * 4;
            items.push_back(readItem());
        }
    }

    WORD version;
    WORD signature;
    DWORD extendedStyle;
    DWORD style;
    std::vector<short> rect;
    std::wstring menu;
    std::wstring windowClass;
    std::wstring title;
    WORD fontSize;
    std::wstring font;
    std::vector<TemplateItem> items;

private:
    template <class T> T read() {
        T value;
        std::memcpy(&value, bytes.data() + position, sizeof value);
        position += sizeof value;
        return value;
    }

    std::wstring readText() {
        std::wstring text;
        while (const auto character = read<wchar_t>())
            text += character;
        return text;
    }

    TemplateItem readItem() {
        TemplateItem item;
        read<DWORD>(); // help
        EXPECT_EQ(read<DWORD>(), 0u) << "extended style";
        item.style = read<DWORD>();
        item.rect = {read<short>(), read<short>(), read<short>(), read<short>()};
        item.id = read<DWORD>();
        EXPECT_EQ(read<WORD>(), 0xFFFF) << "a class of the system's";
        item.type = read<WORD>();
        item.text = readText();
        read<WORD>(); // size of the extra data
        return item;
    }

    std::string bytes;
    std::size_t position = 0;
};

} // namespace test
