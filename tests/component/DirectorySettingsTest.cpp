// What the directory dialog remembers in the registry, byte for byte.
#include "DirectoryDialogFixture.h"
#include "resource.h"
#include "support/DialogInspection.h"

using host::click;
using host::enterText;
using host::inOrder;
using test::bytesOf;
using test::bytesOfTerminated;
using test::controlText;
using test::now;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DirectorySettingsTest : public DirectoryDialogFixture {
protected:
    /// The bytes that a text setting may hold to be read.
    static constexpr std::size_t historyBytes = 8192;
    static constexpr std::size_t prefixBytes = 1024;

    void storeHistory(const std::wstring& text) { store(L"ExportPath", REG_SZ, bytesOfTerminated(text)); }

    /// Confirms a dialog in which nothing but the path is entered.
    void confirmPath(const std::wstring& path) { confirm({enterText(IDC_EXPORT_DIRECTORY_PATH, path)}); }

    /// A dialog that has loaded the settings without a window.
    const ExportDirectoryDialog& load() {
        dialog = std::make_unique<ExportDirectoryDialog>(nullptr, &pages);
        dialog->loadFromRegistry();
        return *dialog;
    }

    static std::wstring join(const std::vector<std::wstring>& paths) {
        std::wstring text;
        for (const std::wstring& path : paths)
            text += (text.empty() ? L"" : L";") + path;
        return text;
    }

    static std::vector<std::wstring> manyPaths(int count) {
        std::vector<std::wstring> paths;
        for (int i = 1; i <= count; ++i)
            paths.push_back(L"C:\\Old " + std::to_wstring(i));
        return paths;
    }
};

// The key.

TEST_F(DirectorySettingsTest, LiveBelowTheHostsPathAndVersion) {
    EXPECT_EQ(getRegistryKeyPath(), key);
}

TEST_F(DirectorySettingsTest, TakeTheHostsPathAndVersionAsTheyAreAtEachCall) {
    class OtherHost : public test::TestHost {
    public:
        std::wstring getBaseRegistryPath() const override {
            return L"Maker\\Größe " + std::to_wstring(++asked);
        }
        std::wstring getRegistryVersion() const override { return L""; }
        mutable int asked = 0;
    };
    OtherHost other;
    EXPECT_EQ(getRegistryKeyPath(), L"SOFTWARE\\Maker\\Größe 1\\\\Components\\BasicExport");
    EXPECT_EQ(getRegistryKeyPath(), L"SOFTWARE\\Maker\\Größe 2\\\\Components\\BasicExport");
}

// Loading.

TEST_F(DirectorySettingsTest, WithoutKeyAreTheDefaults) {
    load();
    EXPECT_EQ(dialog->exportPath, L"");
    EXPECT_THAT(dialog->lastExportPaths, IsEmpty());
    EXPECT_STREQ(dialog->prefix, L"");
    EXPECT_EQ(dialog->firstNumber, 1);
    EXPECT_EQ(dialog->digits, 4);
    EXPECT_EQ(dialog->appendIndex, 1);
    EXPECT_EQ(dialog->useParentFolderName, 0);
}

TEST_F(DirectorySettingsTest, LoadingMakesNoKey) {
    load();
    EXPECT_FALSE(test::keyExists(key));
}

TEST_F(DirectorySettingsTest, WithEmptyKeyAreTheDefaults) {
    store(L"Unrelated", REG_DWORD, bytesOf(5));
    load();
    EXPECT_EQ(dialog->exportPath, L"");
    EXPECT_STREQ(dialog->prefix, L"");
    EXPECT_EQ(dialog->firstNumber, 1);
    EXPECT_EQ(dialog->digits, 4);
    EXPECT_EQ(dialog->appendIndex, 1);
}

TEST_F(DirectorySettingsTest, HistoryKeepsOrderAndDuplicatesAndDropsEmptyPieces) {
    storeHistory(L"D:\\Scans;C:\\Out;;D:\\Scans");
    load();
    EXPECT_THAT(dialog->lastExportPaths, ElementsAre(L"D:\\Scans", L"C:\\Out", L"D:\\Scans"));
    EXPECT_EQ(dialog->exportPath, L"D:\\Scans");
}

TEST_F(DirectorySettingsTest, FirstRealDirectoryFollowsAnEmptyFirstPiece) {
    storeHistory(L";C:\\Out;D:\\Scans");
    load();
    EXPECT_EQ(dialog->exportPath, L"C:\\Out");
    EXPECT_THAT(dialog->lastExportPaths, ElementsAre(L"C:\\Out", L"D:\\Scans"));
}

TEST_F(DirectorySettingsTest, HistoryOfSeparatorsOnlyIsEmpty) {
    storeHistory(L";;;");
    load();
    EXPECT_THAT(dialog->lastExportPaths, IsEmpty());
    EXPECT_EQ(dialog->exportPath, L"");
}

TEST_F(DirectorySettingsTest, HistoryIsNotCutToTenWhenLoaded) {
    const std::vector<std::wstring> paths = manyPaths(50);
    storeHistory(join(paths));
    load();
    EXPECT_EQ(dialog->lastExportPaths, paths);
}

TEST_F(DirectorySettingsTest, HistoryKeepsEveryCharacter) {
    const std::vector<std::wstring> paths = {L"C:\\Příliš žluťoučký", L"C:\\資料 \U0001F4C4", L"C:\\\xD800",
                                             L"\\\\server\\share"};
    storeHistory(join(paths));
    load();
    EXPECT_EQ(dialog->lastExportPaths, paths);
}

/// A value as it may stand in the registry, and the text that it is read as.
struct TextCase {
    const char* name;
    DWORD type;
    std::string bytes;
    std::wstring text;
};

std::vector<TextCase> textCases(std::size_t limit) {
    const std::size_t characters = limit / sizeof(wchar_t);
    const auto filled = [](std::size_t bytes) { return std::string(bytes, 'x'); };
    const auto text = [](std::size_t count) { return std::wstring(count, L'\x7878'); };
    const std::string nul(2, '\0');
    return {
        {"Empty", REG_SZ, "", L""},
        {"NulOnly", REG_SZ, nul, L""},
        {"SingleByte", REG_SZ, "A", L"A"},
        {"Terminated", REG_SZ, bytesOfTerminated(L"C:\\Out"), L"C:\\Out"},
        {"Unterminated", REG_SZ, bytesOf(L"C:\\Out"), L"C:\\Out"},
        {"OddSize", REG_SZ, bytesOf(L"AB") + "C", L"ABC"},
        {"EmbeddedNul", REG_SZ, bytesOf(std::wstring(L"A\0B", 3)), L"A"},
        {"TerminatedToTheLimit", REG_SZ, filled(limit - 2) + nul, text(characters - 1)},
        {"UnterminatedBelowTheLimit", REG_SZ, filled(limit - 2), text(characters - 1)},
        {"OddSizeBelowTheLimit", REG_SZ, filled(limit - 1), text(characters - 1) + L'x'},
        {"UnterminatedToTheLimit", REG_SZ, filled(limit), text(characters)},
        {"OneByteTooLong", REG_SZ, filled(limit + 1), L""},
        {"OneCharacterTooLong", REG_SZ, filled(limit) + nul, L""},
        {"SixtyFourKilobytes", REG_SZ, filled(65536), L""},
        {"Number", REG_DWORD, bytesOf(0x00420041), L"AB"},
        {"Binary", REG_BINARY, bytesOf(L"C:\\Out"), L"C:\\Out"},
        {"SeveralTexts", REG_MULTI_SZ, bytesOfTerminated(std::wstring(L"A\0B\0", 4)), L"A"},
        {"ExpandableText", REG_EXPAND_SZ, bytesOfTerminated(L"%TEMP%"), L"%TEMP%"},
    };
}

std::string caseName(const testing::TestParamInfo<TextCase>& info) {
    return info.param.name;
}

class HistoryBytesTest : public DirectorySettingsTest, public testing::WithParamInterface<TextCase> {};

TEST_P(HistoryBytesTest, AreReadAsText) {
    store(L"ExportPath", GetParam().type, GetParam().bytes);
    load();
    EXPECT_EQ(dialog->exportPath, GetParam().text);
    EXPECT_EQ(dialog->lastExportPaths.size(), GetParam().text.empty() ? 0u : 1u);
}

INSTANTIATE_TEST_SUITE_P(Values, HistoryBytesTest, testing::ValuesIn(textCases(8192)), caseName);

class PrefixBytesTest : public DirectorySettingsTest, public testing::WithParamInterface<TextCase> {};

TEST_P(PrefixBytesTest, AreReadAsText) {
    store(L"Prefix", GetParam().type, GetParam().bytes);
    load();
    EXPECT_EQ(std::wstring(dialog->prefix), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Values, PrefixBytesTest, testing::ValuesIn(textCases(1024)), caseName);

/// A value as it may stand in the registry, and the number it gives; none leaves the default.
struct NumberCase {
    const char* name;
    DWORD type;
    std::string bytes;
    std::optional<int> number;
};

class NumberBytesTest : public DirectorySettingsTest, public testing::WithParamInterface<NumberCase> {};

TEST_P(NumberBytesTest, AreTakenAsTheyAreIfTheyFit) {
    for (const wchar_t* name : {L"FirstNumber", L"Digits", L"AppendIndex"})
        store(name, GetParam().type, GetParam().bytes);
    load();
    EXPECT_EQ(dialog->firstNumber, GetParam().number.value_or(1));
    EXPECT_EQ(dialog->digits, GetParam().number.value_or(4));
    EXPECT_EQ(dialog->appendIndex, GetParam().number.value_or(1));
}

INSTANTIATE_TEST_SUITE_P(
    Values, NumberBytesTest,
    testing::Values(NumberCase{"Number", REG_DWORD, bytesOf(7), 7},
                    NumberCase{"Zero", REG_DWORD, bytesOf(0), 0},
                    NumberCase{"AllBits", REG_DWORD, bytesOf(0xFFFFFFFF), -1},
                    NumberCase{"Empty", REG_DWORD, "", std::nullopt},
                    NumberCase{"OneByte", REG_BINARY, "\x09", 9},
                    NumberCase{"TextOfTwoBytes", REG_SZ, bytesOf(L"7"), L'7'},
                    NumberCase{"TextOfFourBytes", REG_SZ, bytesOf(L"12"), L'1' + (L'2' << 16)},
                    NumberCase{"TerminatedTextOfFourBytes", REG_SZ, bytesOfTerminated(L"7"), L'7'},
                    NumberCase{"ThreeBytes", REG_BINARY, "\x01\x02\x03", 0x030201},
                    NumberCase{"FiveBytes", REG_BINARY, "\x01\x02\x03\x04\x05", std::nullopt},
                    NumberCase{"TextOfSixBytes", REG_SZ, bytesOfTerminated(L"12"), std::nullopt},
                    NumberCase{"LongNumber", REG_QWORD, std::string(8, '\x01'), std::nullopt},
                    NumberCase{"SixtyFourKilobytes", REG_BINARY, std::string(65536, '\x01'), std::nullopt}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(DirectorySettingsTest, EachNumberIsReadFromItsOwnValue) {
    store(L"FirstNumber", REG_DWORD, bytesOf(17));
    store(L"Digits", REG_DWORD, bytesOf(6));
    store(L"AppendIndex", REG_DWORD, bytesOf(0));
    load();
    EXPECT_EQ(dialog->firstNumber, 17);
    EXPECT_EQ(dialog->digits, 6);
    EXPECT_EQ(dialog->appendIndex, 0);
}

TEST_F(DirectorySettingsTest, LoadingOverwritesNothing) {
    const std::vector<std::pair<const wchar_t*, test::RawValue>> values = {
        {L"ExportPath", {REG_SZ, std::string(8192, 'x')}},
        {L"Prefix", {REG_SZ, bytesOf(L"AB") + "C"}},
        {L"FirstNumber", {REG_SZ, bytesOf(L"7")}},
        {L"Digits", {REG_BINARY, std::string(65536, 'x')}},
        {L"AppendIndex", {REG_QWORD, ""}},
    };
    for (const auto& [name, value] : values)
        store(name, value.type, value.bytes);
    inspect({});
    for (const auto& [name, value] : values)
        EXPECT_EQ(stored(name), value);
}

TEST_F(DirectorySettingsTest, ThatNobodyMayReadAreTheDefaults) {
    storeHistory(L"C:\\Out");
    store(L"FirstNumber", REG_DWORD, bytesOf(17));
    const test::RestrictedRegistryKey restricted(key, 0);
    load();
    EXPECT_EQ(dialog->exportPath, L"");
    EXPECT_EQ(dialog->firstNumber, 1);
}

TEST_F(DirectorySettingsTest, ThatMayOnlyBeReadAreTheDefaultsToo) {
    storeHistory(L"C:\\Out");
    const test::RestrictedRegistryKey restricted(key, KEY_READ);
    load();
    EXPECT_EQ(dialog->exportPath, L"");
}

TEST_F(DirectorySettingsTest, NeedNoMoreThanReadingAndWriting) {
    storeHistory(L"C:\\Out");
    const test::RestrictedRegistryKey restricted(key, KEY_READ | KEY_WRITE);
    load();
    EXPECT_EQ(dialog->exportPath, L"C:\\Out");
}

// Saving.

TEST_F(DirectorySettingsTest, ConfirmedAreStoredByteForByte) {
    const std::wstring path = folder / L"Výstup";
    confirm({inOrder({enterText(IDC_EXPORT_DIRECTORY_PATH, path),
                      enterText(IDC_EXPORT_DIRECTORY_PREFIX, L"Účet "),
                      enterText(IDC_EXPORT_DIRECTORY_FIRST_NUMBER, L"998"),
                      enterText(IDC_EXPORT_DIRECTORY_DIGITS, L"3")})});
    EXPECT_EQ(stored(L"ExportPath"), (test::RawValue{REG_SZ, bytesOfTerminated(path)}));
    EXPECT_EQ(stored(L"Prefix"), (test::RawValue{REG_SZ, bytesOfTerminated(L"Účet ")}));
    EXPECT_EQ(stored(L"FirstNumber"), (test::RawValue{REG_DWORD, bytesOf(998)}));
    EXPECT_EQ(stored(L"Digits"), (test::RawValue{REG_DWORD, bytesOf(3)}));
    EXPECT_EQ(stored(L"AppendIndex"), (test::RawValue{REG_DWORD, bytesOf(1)}));
}

TEST_F(DirectorySettingsTest, EmptyPrefixIsStoredAsItsTerminatorOnly) {
    confirmPath(folder.path());
    EXPECT_EQ(stored(L"Prefix"), (test::RawValue{REG_SZ, std::string(2, '\0')}));
}

TEST_F(DirectorySettingsTest, UntickedAppendIndexIsStoredAsZero) {
    confirm({enterText(IDC_EXPORT_DIRECTORY_PATH, folder.path()), click(IDC_EXPORT_DIRECTORY_APPEND_INDEX)});
    EXPECT_EQ(stored(L"AppendIndex"), (test::RawValue{REG_DWORD, bytesOf(0)}));
}

TEST_F(DirectorySettingsTest, ParentFolderOptionIsNotStored) {
    confirm(
        {enterText(IDC_EXPORT_DIRECTORY_PATH, folder.path()), click(IDC_EXPORT_DIRECTORY_USE_FOLDER_NAME)});
    EXPECT_EQ(dialog->useParentFolderName, 1);
    HKEY opened = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_READ, &opened), ERROR_SUCCESS);
    DWORD values = 0;
    RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr, nullptr,
                     nullptr, nullptr);
    RegCloseKey(opened);
    EXPECT_EQ(values, 5u);

    inspect({now([](HWND window) {
        EXPECT_EQ(IsDlgButtonChecked(window, IDC_EXPORT_DIRECTORY_USE_FOLDER_NAME), BST_UNCHECKED);
    })});
}

TEST_F(DirectorySettingsTest, NextDialogOpensWithTheConfirmed) {
    confirm({inOrder({enterText(IDC_EXPORT_DIRECTORY_PATH, folder.path()),
                      enterText(IDC_EXPORT_DIRECTORY_PREFIX, L"Scan"),
                      enterText(IDC_EXPORT_DIRECTORY_FIRST_NUMBER, L"12"),
                      enterText(IDC_EXPORT_DIRECTORY_DIGITS, L"5")}),
             click(IDC_EXPORT_DIRECTORY_APPEND_INDEX)});
    inspect({now([this](HWND window) {
        EXPECT_EQ(controlText(window, IDC_EXPORT_DIRECTORY_PATH), folder.path());
        EXPECT_EQ(controlText(window, IDC_EXPORT_DIRECTORY_PREFIX), L"Scan");
        EXPECT_EQ(controlText(window, IDC_EXPORT_DIRECTORY_FIRST_NUMBER), L"12");
        EXPECT_EQ(controlText(window, IDC_EXPORT_DIRECTORY_DIGITS), L"5");
        EXPECT_EQ(IsDlgButtonChecked(window, IDC_EXPORT_DIRECTORY_APPEND_INDEX), BST_UNCHECKED);
    })});
}

TEST_F(DirectorySettingsTest, LongestPrefixThatComesBackHas511Characters) {
    const std::wstring longest(511, L'p');
    confirm({inOrder({enterText(IDC_EXPORT_DIRECTORY_PATH, folder.path()),
                      enterText(IDC_EXPORT_DIRECTORY_PREFIX, longest)})});
    EXPECT_EQ(std::wstring(load().prefix), longest);

    const std::wstring tooLong(512, L'p');
    confirm({enterText(IDC_EXPORT_DIRECTORY_PREFIX, tooLong)});
    EXPECT_EQ(stored(L"Prefix"), (test::RawValue{REG_SZ, bytesOfTerminated(tooLong)}));
    EXPECT_STREQ(load().prefix, L"");
}

TEST_F(DirectorySettingsTest, ConfirmedDirectoryMovesToTheFrontOfTheHistory) {
    const std::wstring out = folder / L"Out";
    storeHistory(L"D:\\Scans;" + out + L";;D:\\Scans");
    confirmPath(out);
    EXPECT_EQ(storedHistory(), out + L";D:\\Scans;D:\\Scans");
}

TEST_F(DirectorySettingsTest, DirectoriesThatDifferInLetterCaseAreTwoEntries) {
    storeHistory(folder / L"Out");
    confirmPath(folder / L"out");
    EXPECT_EQ(storedHistory(), (folder / L"out") + L";" + (folder / L"Out"));
}

TEST_F(DirectorySettingsTest, HistoryIsCutToTenWithTheConfirmedDirectory) {
    const std::vector<std::wstring> old = manyPaths(15);
    storeHistory(join(old));
    confirmPath(folder.path());
    EXPECT_EQ(storedHistory(), folder.path() + L";" + join({old.begin(), old.begin() + 9}));
}

TEST_F(DirectorySettingsTest, DirectoryFromTheEndOfALongHistoryCostsNoOtherEntry) {
    std::vector<std::wstring> old = manyPaths(10);
    old[9] = folder.path();
    storeHistory(join(old));
    confirmPath(folder.path());
    EXPECT_EQ(storedHistory(), folder.path() + L";" + join({old.begin(), old.begin() + 9}));
}

TEST_F(DirectorySettingsTest, EmptyDirectoryIsStoredAsAnEmptyFirstPiece) {
    storeHistory(L"C:\\Out;;D:\\Scans");
    load();
    dialog->exportPath.clear();
    dialog->saveToRegistry();
    EXPECT_EQ(storedHistory(), L";C:\\Out;D:\\Scans");
    EXPECT_EQ(load().exportPath, L"C:\\Out");
}

TEST_F(DirectorySettingsTest, EmptyEntriesAreNotStored) {
    load();
    dialog->exportPath = L"C:\\Out";
    dialog->lastExportPaths = {L"", L"D:\\Scans", L""};
    dialog->saveToRegistry();
    EXPECT_EQ(storedHistory(), L"C:\\Out;D:\\Scans");
}

TEST_F(DirectorySettingsTest, ValuesOfAnyKindAreReplaced) {
    store(L"FirstNumber", REG_SZ, bytesOfTerminated(L"a long text"));
    store(L"ExportPath", REG_DWORD, bytesOf(5));
    confirmPath(folder.path());
    EXPECT_EQ(stored(L"FirstNumber"), (test::RawValue{REG_DWORD, bytesOf(1)}));
    EXPECT_EQ(storedHistory().substr(0, folder.path().size()), folder.path());
}

TEST_F(DirectorySettingsTest, ThatMayOnlyBeWrittenStayAsTheyAre) {
    storeHistory(L"C:\\Out");
    load();
    {
        const test::RestrictedRegistryKey restricted(key, KEY_WRITE);
        dialog->exportPath = L"D:\\Scans";
        dialog->saveToRegistry();
    }
    EXPECT_EQ(storedHistory(), L"C:\\Out");
    EXPECT_FALSE(stored(L"Prefix"));
    EXPECT_FALSE(stored(L"FirstNumber"));
}

TEST_F(DirectorySettingsTest, ThatNobodyMayWriteAreForgottenAndTheDialogCloses) {
    storeHistory(L"C:\\Out");
    {
        const test::RestrictedRegistryKey restricted(key, 0);
        confirmPath(folder.path());
    }
    EXPECT_EQ(storedHistory(), L"C:\\Out");
    EXPECT_EQ(dialog->exportPath, folder.path());
}

} // namespace
