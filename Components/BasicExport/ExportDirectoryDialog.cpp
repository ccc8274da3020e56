// The dialog in which the user sets up an export to a directory.
#include "ExportDirectoryDialog.h"

#include "LocalizedText.h"
#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/StringBuilders.h"
#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneBase/bxparse/splitString.h"
#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/ExportDataItem.h"
#include "SorvaneCommon/ExportFolder.h"
#include "bxbase/RegistryKey.h"

#include <windows.h>

#include <shlobj.h>

#include <cstdlib>
#include <cwchar>
#include <list>

namespace {

constexpr wchar_t exportPathValue[] = L"ExportPath";
constexpr wchar_t prefixValue[] = L"Prefix";
constexpr wchar_t firstNumberValue[] = L"FirstNumber";
constexpr wchar_t digitsValue[] = L"Digits";
constexpr wchar_t appendIndexValue[] = L"AppendIndex";

constexpr REGSAM registryAccess = KEY_READ | KEY_WRITE;
constexpr DWORD exportPathBytes = 8192;
constexpr DWORD prefixBytes = 1024;
constexpr int rememberedDirectories = 10;

/// Reads a value of at most `bytes` bytes as text; empty when it is missing or longer.
template <DWORD bytes> std::wstring readText(HKEY key, const wchar_t* name) {
    // The registry is never told of the last character: a value that fills what it is offered may come without
    // a terminating NUL.
    wchar_t text[bytes / sizeof(wchar_t) + 1] = {};
    DWORD size = bytes;
    if (RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS)
        return {}; // a value that is too long leaves something undefined in the buffer
    return text;
}

void readNumber(HKEY key, const wchar_t* name, int& number) {
    // Values shorter than a number replace only its low bytes.
    int value = number;
    DWORD size = sizeof value;
    if (RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size) ==
        ERROR_SUCCESS)
        number = value;
}

void writeText(HKEY key, const wchar_t* name, const wchar_t* text) {
    const auto size = static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t));
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size);
}

void writeNumber(HKEY key, const wchar_t* name, int number) {
    RegSetValueExW(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
}

void setNumber(CWnd& edit, int number) {
    edit.SetWindowText(std::to_wstring(static_cast<unsigned>(number)).c_str());
}

int getNumber(const CWnd& edit) {
    wchar_t text[512] = {};
    edit.GetWindowText(text, 512);
    return _wtoi(text);
}

} // namespace

ExportDirectoryDialog::ExportDirectoryDialog(CWnd* parent, const ExportUtils::ExportEngineBase::Pages* pages)
    : CBCGPDialog(IDD, parent), pages(pages) {
    EnableLayout(TRUE, nullptr, TRUE);
    EnableVisualManagerStyle(TRUE, FALSE, nullptr);
}

void ExportDirectoryDialog::DoDataExchange(CDataExchange* pDX) {
    CBCGPDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_PATH, pathEdit);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_LAST_EXPORTS, lastExportsList);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_PREFIX, prefixEdit);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_APPEND_INDEX, appendIndexCheck);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_FIRST_NUMBER, firstNumberEdit);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_DIGITS, digitsEdit);
    DDX_Control(pDX, IDOK, okButton);
    DDX_Control(pDX, IDCANCEL, cancelButton);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_PATH_TEXT, pathLabel);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_PREFIX_TEXT, prefixLabel);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_FIRST_NUMBER_TEXT, firstNumberLabel);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_DIGITS_TEXT, digitsLabel);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_APPEND_INDEX_TEXT, appendIndexLabel);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_LAST_EXPORTS_TEXT, lastExportsLabel);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_USE_FOLDER_NAME, useParentFolderNameCheck);
    DDX_Control(pDX, IDC_EXPORT_DIRECTORY_USE_FOLDER_NAME_TEXT, useParentFolderNameLabel);
}

BEGIN_MESSAGE_MAP(ExportDirectoryDialog, CBCGPDialog)
    ON_BN_CLICKED(IDOK, &ExportDirectoryDialog::OnBnClickedOk)
    ON_BN_CLICKED(IDC_EXPORT_DIRECTORY_APPEND_INDEX, &ExportDirectoryDialog::OnBnClickedAppendIndex)
    ON_LBN_SELCHANGE(IDC_EXPORT_DIRECTORY_LAST_EXPORTS, &ExportDirectoryDialog::OnLbnSelchangeLastExports)
END_MESSAGE_MAP()

BOOL ExportDirectoryDialog::OnInitDialog() {
    CBCGPDialog::OnInitDialog();
    addAnchors();
    pathEdit.EnableFolderBrowseButton(localizedText("Scan", "ScanExport.Directory.FolderForFiles").c_str(),
                                      BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT | BIF_EDITBOX |
                                          BIF_NEWDIALOGSTYLE);
    initTexts();

    loadFromRegistry();
    if (!pages->empty()) {
        if (const ExportFolder* folder = pages->front()->getParentFolder()) {
            Sorvane::astring name;
            folder->getFolderName(name);
            if (!name.empty())
                prefix = name.c_str();
        }
    }

    pathEdit.SetWindowText(exportPath.c_str());
    for (const Sorvane::astring& path : lastExportPaths)
        lastExportsList.AddString(path.c_str());
    prefixEdit.SetWindowText(prefix);
    setNumber(firstNumberEdit, firstNumber);
    setNumber(digitsEdit, digits);
    if (pages->size() > 1) {
        appendIndex = 1;
        appendIndexCheck.EnableWindow(FALSE);
    }
    // The number controls stay enabled even if the check box comes up unticked; they follow its clicks only.
    appendIndexCheck.SetCheck(appendIndex);
    useParentFolderNameCheck.SetCheck(useParentFolderName);
    return TRUE;
}

void ExportDirectoryDialog::addAnchors() {
    auto* layout = DYNAMIC_DOWNCAST(CBCGPStaticLayout, GetLayout());
    if (!layout)
        return;

    using Layout = CBCGPStaticLayout;
    const CPoint all(100, 100);
    const CPoint halfAcross(50, 100);
    const CPoint halfWider(50, 0);
    const struct {
        const CWnd& control;
        Layout::XMoveType move;
        Layout::XSizeType size;
        CPoint percMove;
        CPoint percSize;
    } anchors[] = {
        {pathLabel, Layout::e_MoveTypeNone, Layout::e_SizeTypeNone, all, all},
        {pathEdit, Layout::e_MoveTypeNone, Layout::e_SizeTypeHorz, all, all},
        {lastExportsLabel, Layout::e_MoveTypeNone, Layout::e_SizeTypeNone, all, all},
        {lastExportsList, Layout::e_MoveTypeNone, Layout::e_SizeTypeBoth, all, all},
        {prefixLabel, Layout::e_MoveTypeVert, Layout::e_SizeTypeNone, all, all},
        {prefixEdit, Layout::e_MoveTypeVert, Layout::e_SizeTypeHorz, all, all},
        {firstNumberLabel, Layout::e_MoveTypeVert, Layout::e_SizeTypeNone, all, all},
        {appendIndexLabel, Layout::e_MoveTypeVert, Layout::e_SizeTypeNone, all, all},
        {useParentFolderNameLabel, Layout::e_MoveTypeVert, Layout::e_SizeTypeNone, all, all},
        {appendIndexCheck, Layout::e_MoveTypeVert, Layout::e_SizeTypeNone, all, all},
        {useParentFolderNameCheck, Layout::e_MoveTypeVert, Layout::e_SizeTypeNone, all, all},
        {firstNumberEdit, Layout::e_MoveTypeVert, Layout::e_SizeTypeHorz, all, halfWider},
        {digitsLabel, Layout::e_MoveTypeBoth, Layout::e_SizeTypeNone, halfAcross, all},
        {digitsEdit, Layout::e_MoveTypeBoth, Layout::e_SizeTypeHorz, halfAcross, halfWider},
        {okButton, Layout::e_MoveTypeBoth, Layout::e_SizeTypeNone, all, all},
        {cancelButton, Layout::e_MoveTypeBoth, Layout::e_SizeTypeNone, all, all},
    };
    for (const auto& anchor : anchors)
        layout->AddAnchor(anchor.control.GetSafeHwnd(), anchor.move, anchor.size, anchor.percMove,
                          anchor.percSize);
}

void ExportDirectoryDialog::initTexts() {
    SetWindowText(localizedText("Scan", "ScanExport.DirectoryDialog.Title").c_str());
    lastExportsLabel.SetWindowText(localizedText("Scan", "ScanExport.Directory.LastExports").c_str());
    pathLabel.SetWindowText(localizedText("Scan", "ScanExport.Directory.Path").c_str());
    prefixLabel.SetWindowText(localizedText("Scan", "ScanExport.Directory.Prefix").c_str());
    appendIndexLabel.SetWindowText(localizedText("Scan", "ScanExport.Directory.AppendIndex").c_str());
    useParentFolderNameLabel.SetWindowText(
        localizedText("Scan", "ScanExport.Directory.UseFolderName").c_str());
    firstNumberLabel.SetWindowText(localizedText("Scan", "ScanExport.Directory.FirstNumber").c_str());
    digitsLabel.SetWindowText(localizedText("Scan", "ScanExport.Directory.Digits").c_str());
    okButton.SetWindowText(localizedText("Common", "Button.OK").c_str());
    cancelButton.SetWindowText(localizedText("Common", "Button.Cancel").c_str());
}

void ExportDirectoryDialog::OnBnClickedOk() {
    CString path;
    pathEdit.GetWindowText(path);
    exportPath = path;

    const bxdisk::File directory(exportPath);
    if (!directory.isDirectory() && !bxdisk::createDirectories(directory.getPath())) {
        MessageBox(localizedText("Scan", "ScanExport.Error.PathNotExists").c_str(),
                   localizedText("Common", "Error").c_str(), MB_OK | MB_ICONERROR);
        return;
    }

    prefixEdit.GetWindowText(prefix);
    firstNumber = getNumber(firstNumberEdit);
    digits = getNumber(digitsEdit);
    appendIndex = appendIndexCheck.GetCheck();
    useParentFolderName = useParentFolderNameCheck.GetCheck();
    saveToRegistry();
    CBCGPDialog::OnOK();
}

void ExportDirectoryDialog::OnBnClickedAppendIndex() {
    const BOOL enabled = appendIndexCheck.GetCheck() == BST_CHECKED;
    firstNumberLabel.EnableWindow(enabled);
    firstNumberEdit.EnableWindow(enabled);
    digitsLabel.EnableWindow(enabled);
    digitsEdit.EnableWindow(enabled);
}

void ExportDirectoryDialog::OnLbnSelchangeLastExports() {
    const int selected = lastExportsList.GetCurSel();
    if (selected < 0)
        return;
    CString path;
    lastExportsList.GetText(selected, path);
    pathEdit.SetWindowText(path);
}

std::wstring getRegistryKeyPath() {
    return Sorvane::AStringBuilder()
        .append(L"SOFTWARE")
        .append(L"\\")
        .append(SorvaneCommon::GetApplication()->getBaseRegistryPath())
        .append(L"\\")
        .append(SorvaneCommon::getRegistryVersion())
        .append(L"\\Components\\BasicExport")
        .c_str();
}

void ExportDirectoryDialog::loadFromRegistry() {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, getRegistryKeyPath().c_str(), 0, registryAccess, &opened) !=
        ERROR_SUCCESS)
        return;
    const bxbase::RegistryKey key(opened);

    Sorvane::U8StringBuilder paths;
    paths.appendInAcp(readText<exportPathBytes>(key.get(), exportPathValue).c_str());
    std::list<Sorvane::u8string> pieces;
    bxparse::splitString(paths, pieces, ';');
    lastExportPaths.reserve(pieces.size());
    for (const Sorvane::u8string& piece : pieces) {
        if (piece.empty())
            continue;
        Sorvane::astring path;
        Sorvane::c_u8u16(path, piece);
        lastExportPaths.push_back(path);
    }
    // It stays in the history too; saving drops the repetition.
    if (!lastExportPaths.empty())
        exportPath = lastExportPaths.front();

    prefix = readText<prefixBytes>(key.get(), prefixValue).c_str();
    readNumber(key.get(), firstNumberValue, firstNumber);
    readNumber(key.get(), digitsValue, digits);
    readNumber(key.get(), appendIndexValue, appendIndex);
}

void ExportDirectoryDialog::saveToRegistry() const {
    HKEY opened = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, getRegistryKeyPath().c_str(), 0, nullptr, 0, registryAccess,
                        nullptr, &opened, nullptr) != ERROR_SUCCESS)
        return;
    const bxbase::RegistryKey key(opened);

    Sorvane::AStringBuilder paths;
    paths.append(exportPath);
    int count = 1;
    for (const Sorvane::astring& path : lastExportPaths) {
        if (count >= rememberedDirectories)
            break;
        if (path.empty() || path == exportPath)
            continue;
        paths.append(L";").append(path);
        ++count;
    }

    writeText(key.get(), exportPathValue, paths.c_str());
    writeText(key.get(), prefixValue, prefix);
    writeNumber(key.get(), firstNumberValue, firstNumber);
    writeNumber(key.get(), digitsValue, digits);
    writeNumber(key.get(), appendIndexValue, appendIndex);
}
