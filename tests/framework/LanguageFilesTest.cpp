// Checks over the language files that are shipped.
#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/Text.h"
#include "host/desktop/Texts.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <algorithm>
#include <cwchar>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using Key = std::pair<std::string, std::string>;

const std::wstring FOLDER = [] {
    std::wstring folder = LANGUAGE_FOLDER;
    std::replace(folder.begin(), folder.end(), L'/', L'\\');
    return folder;
}();

/// Every text that the component and the library of the hosts look up.
const std::set<Key> USED_KEYS = {
    {"Language", "Name"},
    {"Language", "Code"},
    {"Scan", "BasicExport.ExportToDirectory"},
    {"Scan", "BasicExport.SendAsEmail"},
    {"Scan", "BasicExport.ExportToZIP"},
    {"Scan", "BasicExport.Page"},
    {"Scan", "ScanExport.DirectoryDialog.Title"},
    {"Scan", "ScanExport.Directory.Path"},
    {"Scan", "ScanExport.Directory.Prefix"},
    {"Scan", "ScanExport.Directory.FirstNumber"},
    {"Scan", "ScanExport.Directory.Digits"},
    {"Scan", "ScanExport.Directory.AppendIndex"},
    {"Scan", "ScanExport.Directory.LastExports"},
    {"Scan", "ScanExport.Directory.UseFolderName"},
    {"Scan", "ScanExport.Directory.FolderForFiles"},
    {"Scan", "ScanExport.Error.PathNotExists"},
    {"Scan", "ScanExport.Error.CannotCopy"},
    {"Common", "Button.OK"},
    {"Common", "Button.Cancel"},
    {"Common", "Error"},
    {"Common", "Question.OverwriteFile"},
    {"Common", "ExportToZipDlg.ExportToZipFile"},
    {"Common", "ExportToZipDlg.Desc"},
    {"Common", "ExportToZipDlg.Path"},
    {"Common", "ExportToZipDlg.PagesPrefix"},
    {"Common", "ExportToZipDlg.Browse"},
    {"Common", "ExportToMailDlg.ExportToMail"},
    {"Common", "ExportToMailDlg.Desc"},
    {"Common", "ExportToMailDlg.Subject"},
    {"Common", "ExportToMail.FileSizeLimit"},
    {"Common", "ExportToMail.FileSizeLimitTitle"},
};

const std::vector<Key> LABELS = {
    {"Scan", "ScanExport.Directory.Path"},          {"Scan", "ScanExport.Directory.Prefix"},
    {"Scan", "ScanExport.Directory.FirstNumber"},   {"Scan", "ScanExport.Directory.Digits"},
    {"Scan", "ScanExport.Directory.AppendIndex"},   {"Scan", "ScanExport.Directory.LastExports"},
    {"Scan", "ScanExport.Directory.UseFolderName"}, {"Common", "ExportToZipDlg.Path"},
    {"Common", "ExportToZipDlg.PagesPrefix"},       {"Common", "ExportToMailDlg.Subject"},
};

std::vector<std::wstring> languageCodes() {
    std::vector<std::wstring> codes;
    WIN32_FIND_DATAW data;
    HANDLE search = FindFirstFileW((FOLDER + L"\\*.ini").c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return codes;
    do {
        const std::wstring name = data.cFileName;
        codes.push_back(name.substr(0, name.find(L'.')));
    } while (FindNextFileW(search, &data));
    FindClose(search);
    return codes;
}

/// Whether a text is of the program with a window.
bool isOfProgram(const Key& key) {
    return key.first.starts_with("ScanHost.");
}

std::set<Key> keysOf(const bxutils::ResourceManager& language, bool ofProgram) {
    std::set<Key> keys;
    for (const auto& [key, text] : language.getTexts())
        if (isOfProgram(key) == ofProgram)
            keys.insert(key);
    return keys;
}

bxutils::ResourceManager english() {
    bxutils::ResourceManager texts;
    EXPECT_TRUE(texts.loadLanguageFile(FOLDER + L"\\en.ini"));
    return texts;
}

/// The names between "{" and "}", sorted.
std::vector<std::string> placeholdersOf(const std::string& text) {
    std::vector<std::string> names;
    for (std::size_t begin = text.find('{'); begin != std::string::npos; begin = text.find('{', begin + 1))
        names.push_back(text.substr(begin, text.find('}', begin) + 1 - begin));
    std::ranges::sort(names);
    return names;
}

std::vector<std::string> formsOf(const std::string& text) {
    std::vector<std::string> forms;
    std::size_t begin = 0;
    for (std::size_t end = text.find('|'); end != std::string::npos; end = text.find('|', begin)) {
        forms.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    forms.push_back(text.substr(begin));
    return forms;
}

std::string sourcesOfProgram() {
    const std::wstring host = FOLDER.substr(0, FOLDER.find_last_of(L'\\'));
    std::string sources;
    for (const std::wstring& folder : {host, host + L"\\desktop"})
        for (const std::wstring& name : test::namesIn(folder))
            if (name.ends_with(L".cpp") || name.ends_with(L".h"))
                sources += test::readFile(folder + L'\\' + name);
    return sources;
}

class LanguageFileTest : public testing::TestWithParam<std::wstring> {
protected:
    LanguageFileTest() : path(FOLDER + L"\\" + GetParam() + L".ini") {
        EXPECT_TRUE(language.loadLanguageFile(path));
    }

    std::wstring path;
    bxutils::ResourceManager language;
};

INSTANTIATE_TEST_SUITE_P(Languages, LanguageFileTest, testing::ValuesIn(languageCodes()),
                         [](const testing::TestParamInfo<std::wstring>& info) {
                             return host::utf8(info.param);
                         });

TEST(LanguageFilesTest, AreThereForEachLanguage) {
    EXPECT_THAT(languageCodes(),
                testing::UnorderedElementsAre(L"cs", L"de", L"en", L"es", L"fr", L"it", L"pl", L"sk"));
}

TEST_P(LanguageFileTest, HasExactlyTheKeysInUse) {
    EXPECT_THAT(keysOf(language, false), testing::ContainerEq(USED_KEYS));
}

TEST_P(LanguageFileTest, HasTheTextsOfTheProgramThatEnglishHas) {
    EXPECT_THAT(keysOf(language, true), testing::ContainerEq(keysOf(english(), true)));
}

TEST(LanguageFilesTest, NameNoTextOfTheProgramThatItDoesNotLookUp) {
    const std::string sources = sourcesOfProgram();
    for (const auto& [section, key] : keysOf(english(), true)) {
        EXPECT_THAT(sources, testing::HasSubstr('"' + section + '"'));
        // A report's key is chosen by the engine that makes the report.
        if (section != "ScanHost.Reports") {
            EXPECT_THAT(sources, testing::HasSubstr('"' + key + '"')) << section;
        }
    }
}

TEST(LanguageFilesTest, TellWhatEachEngineOfTheComponentReports) {
    const std::wstring project = FOLDER.substr(0, FOLDER.rfind(L"\\host\\"));
    const std::regex report(R"rx((?:SOURCE_FILE, LINE_\w+|failed\(LINE_\w+), "([^"]+)")rx");
    std::set<Key> reports;
    for (const wchar_t* engine : {L"Directory", L"Mail", L"Zip"}) {
        const std::string source =
            test::readFile(project + L"\\Components\\BasicExport\\ExportTo" + engine + L".cpp");
        for (std::sregex_iterator found(source.begin(), source.end(), report), end; found != end; ++found)
            reports.insert({"ScanHost.Reports", (*found)[1]});
    }
    std::set<Key> told = keysOf(english(), true);
    std::erase_if(told, [](const Key& key) { return key.first != "ScanHost.Reports"; });
    EXPECT_THAT(told, testing::ContainerEq(reports));
}

TEST_P(LanguageFileTest, HasTheFormsOfEachCountingText) {
    const bxutils::ResourceManager inEnglish = english();
    for (const auto& [key, text] : language.getTexts()) {
        const bool counts = inEnglish.getText(key.first, key.second).find('|') != std::string::npos;
        EXPECT_EQ(formsOf(text).size(), counts ? host::countForms(host::utf8(GetParam())) : 1) << key.second;
    }
}

TEST_P(LanguageFileTest, HasThePlaceholdersOfEnglishInEachForm) {
    const bxutils::ResourceManager inEnglish = english();
    for (const auto& [key, text] : language.getTexts()) {
        const auto expected = placeholdersOf(formsOf(inEnglish.getText(key.first, key.second)).back());
        const auto forms = formsOf(text);
        for (const std::string& form : forms) {
            auto names = placeholdersOf(form);
            // "One page" needs no number.
            if (&form == &forms.front() && forms.size() > 1 && !std::ranges::count(names, "{count}") &&
                std::ranges::count(expected, "{count}")) {
                names.emplace_back("{count}");
                std::ranges::sort(names);
            }
            EXPECT_EQ(names, expected) << key.second << ": " << form;
        }
    }
}

TEST_P(LanguageFileTest, DefinesEachKeyOnce) {
    std::size_t definitions = 0;
    const std::string bytes = '\n' + test::readFile(path);
    for (std::size_t end = bytes.find('\n'); end != std::string::npos; end = bytes.find('\n', end + 1)) {
        const std::string line = bytes.substr(end + 1, bytes.find('\n', end + 1) - end - 1);
        definitions += line.find('=') != std::string::npos && line[0] != ';';
    }
    EXPECT_EQ(definitions, language.getTexts().size());
}

TEST_P(LanguageFileTest, IsUtf8WithoutByteOrderMark) {
    const std::string bytes = test::readFile(path);
    std::wstring wide;
    EXPECT_TRUE(Sorvane::c_u8u16(wide, bytes));
    EXPECT_FALSE(bytes.starts_with("\xEF\xBB\xBF"));
}

TEST_P(LanguageFileTest, NamesItsLanguage) {
    EXPECT_EQ(language.getText("Language", "Code"), host::utf8(GetParam()));
}

TEST_P(LanguageFileTest, ExplainsEverySection) {
    const std::string bytes = test::readFile(path);
    std::size_t sections = 0;
    for (std::size_t begin = bytes.find("\n["); begin != std::string::npos;
         begin = bytes.find("\n[", begin + 1)) {
        ++sections;
        const std::size_t next = bytes.find('\n', begin + 1) + 1;
        EXPECT_EQ(bytes.substr(next, 2), "; ") << bytes.substr(begin + 1, next - begin - 2);
    }
    EXPECT_EQ(sections, 8);
}

TEST_P(LanguageFileTest, HasNoEmptyTextAndNoBlanksAroundOne) {
    for (const auto& [key, text] : language.getTexts()) {
        ASSERT_FALSE(text.empty()) << key.second;
        EXPECT_EQ(std::string(" \t\r\n").find(text.front()), std::string::npos) << key.second;
        EXPECT_EQ(std::string(" \t\r\n").find(text.back()), std::string::npos) << key.second;
    }
}

TEST_P(LanguageFileTest, HasAPercentSignOnlyInTheOverwriteQuestion) {
    for (const auto& [key, text] : language.getTexts()) {
        const auto signs = std::count(text.begin(), text.end(), '%');
        EXPECT_EQ(signs, key.second == "Question.OverwriteFile" ? 1 : 0) << key.second;
    }
}

TEST_P(LanguageFileTest, OverwriteQuestionTakesOneWideString) {
    const std::wstring format = host::wide(language.getText("Common", "Question.OverwriteFile"));
    const std::wstring path = L"C:\\Účetnictví\\Žluťoučký kůň 漢字.pdf";
    std::wstring expected = format;
    ASSERT_NE(expected.find(L"%ls"), std::wstring::npos);
    expected.replace(expected.find(L"%ls"), 3, path);

    wchar_t question[512] = {};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    swprintf(question, 512, format.c_str(), path.c_str());
#pragma GCC diagnostic pop

    EXPECT_EQ(question, expected);
}

TEST_P(LanguageFileTest, EndsEveryLabelWithAColon) {
    for (const auto& [section, key] : LABELS)
        EXPECT_THAT(language.getText(section, key), testing::EndsWith(":")) << key;
}

TEST_P(LanguageFileTest, BreaksLinesWhereEnglishDoes) {
    const bxutils::ResourceManager inEnglish = english();
    for (const auto& [key, text] : language.getTexts())
        EXPECT_EQ(std::ranges::count(formsOf(text).back(), '\n'),
                  std::ranges::count(formsOf(inEnglish.getText(key.first, key.second)).back(), '\n'))
            << key.second;
}

TEST_P(LanguageFileTest, HasTypographicSigns) {
    for (const auto& [key, text] : language.getTexts())
        for (const char* makeshift : {"\"", "'", "..."})
            EXPECT_THAT(text, testing::Not(testing::HasSubstr(makeshift))) << key.second;
}

TEST_P(LanguageFileTest, HasNoSignThatMayBeginALine) {
    for (const auto& [key, text] : language.getTexts())
        for (const char* sign : {" :", " ;", " ?", " !", " »"})
            EXPECT_THAT(text, testing::Not(testing::HasSubstr(sign))) << key.second;
}

TEST_P(LanguageFileTest, QuotesInOneWay) {
    std::string marks;
    for (const auto& [key, text] : language.getTexts())
        for (const char* mark : {"“", "”", "„", "«", "»"})
            if (text.find(mark) != std::string::npos && marks.find(mark) == std::string::npos)
                marks += mark;
    EXPECT_THAT(marks, testing::AnyOf("“”", "“„", "”„", "«»"));
}

TEST(LanguageFilesTest, HaveANoBreakSpaceBeforeFrenchSigns) {
    bxutils::ResourceManager french;
    ASSERT_TRUE(french.loadLanguageFile(FOLDER + L"\\fr.ini"));
    for (const auto& [key, text] : french.getTexts())
        for (std::size_t sign = text.find_first_of(":;?!"); sign != std::string::npos;
             sign = text.find_first_of(":;?!", sign + 1))
            EXPECT_THAT(text.substr(0, sign), testing::EndsWith("\u00A0")) << key.second;
}

TEST_P(LanguageFileTest, HasAPageNameThatFileNamesMayHold) {
    const std::string page = language.getText("Scan", "BasicExport.Page");
    EXPECT_EQ(bxdisk::normalizeFileName(page), page);
}

} // namespace
