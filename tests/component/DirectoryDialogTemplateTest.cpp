// The directory dialog's template as it stands in the component's resources.
#include "resource.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace {

constexpr WORD buttonClass = 0x80;
constexpr WORD editClass = 0x81;
constexpr WORD staticClass = 0x82;
constexpr WORD listBoxClass = 0x83;

struct Item {
    DWORD id;
    WORD type;
    DWORD style;
    std::vector<short> rect; ///< x, y, width, height
    std::wstring text;

    friend bool operator==(const Item&, const Item&) = default;
};

void PrintTo(const Item& item, std::ostream* out) {
    *out << item.id << " type " << std::hex << item.type << " style " << item.style << std::dec << " at "
         << testing::PrintToString(item.rect) << " " << testing::PrintToString(item.text);
}

/// Reads an extended dialog template, which is a sequence of unaligned fields.
class Template {
public:
    explicit Template(int id) {
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
    std::vector<Item> items;

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

    Item readItem() {
        Item item;
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

TEST(DirectoryDialogTemplateTest, IsAPopupWithCaptionSystemMenuAndModalFrame) {
    const Template dialog(4002);
    EXPECT_EQ(dialog.style, DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU);
    EXPECT_EQ(dialog.extendedStyle, 0u);
    EXPECT_THAT(dialog.rect, ElementsAre(0, 0, 327, 183));
    EXPECT_EQ(dialog.title, L"");
}

TEST(DirectoryDialogTemplateTest, AsksForTheDialogFontOfTheSystem) {
    const Template dialog(4002);
    EXPECT_EQ(dialog.font, L"MS Shell Dlg");
    EXPECT_EQ(dialog.fontSize, 8);
}

TEST(DirectoryDialogTemplateTest, HoldsSixteenControlsInTabOrder) {
    constexpr DWORD visible = WS_CHILD | WS_VISIBLE;
    constexpr DWORD edit = visible | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
    constexpr DWORD list =
        visible | WS_BORDER | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_SORT | LBS_NOINTEGRALHEIGHT;
    constexpr DWORD check = visible | WS_TABSTOP | BS_AUTOCHECKBOX;
    constexpr DWORD label = visible | WS_GROUP | SS_RIGHT;
    EXPECT_THAT(
        Template(4002).items,
        ElementsAre(Item{4006, editClass, edit, {83, 7, 237, 14}, L""},
                    Item{4028, listBoxClass, list, {83, 30, 237, 42}, L""},
                    Item{4008, editClass, edit, {83, 102, 237, 14}, L""},
                    Item{4027, buttonClass, check, {83, 126, 10, 10}, L""},
                    Item{4009, editClass, edit | ES_NUMBER, {83, 140, 51, 14}, L""},
                    Item{4010, editClass, edit | ES_NUMBER, {202, 140, 50, 14}, L""},
                    Item{1, buttonClass, visible | WS_TABSTOP | BS_DEFPUSHBUTTON, {208, 164, 50, 14}, L"OK"},
                    Item{2, buttonClass, visible | WS_TABSTOP | BS_PUSHBUTTON, {270, 164, 50, 14}, L"Cancel"},
                    Item{4011, staticClass, label, {7, 9, 65, 8}, L"Path:"},
                    Item{4012, staticClass, label, {7, 104, 65, 8}, L"Name:"},
                    Item{4013, staticClass, label, {7, 143, 65, 8}, L"First Index:"},
                    Item{4014, staticClass, label, {135, 143, 59, 8}, L"Index Length:"},
                    Item{4015, staticClass, label, {7, 126, 65, 8}, L"Append Index:"},
                    Item{4029, staticClass, label, {7, 32, 65, 8}, L"Last Exports:"},
                    Item{4030, buttonClass, check, {83, 83, 10, 10}, L""},
                    Item{4016, staticClass, label, {7, 80, 65, 16}, L"Použít název nadřazené složky:"}));
}

} // namespace
