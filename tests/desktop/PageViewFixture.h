// A page view on the screen, with pages of files that are there.
#pragma once

#include "host/desktop/PageCollection.h"
#include "host/desktop/PageView.h"
#include "support/HostTexts.h"
#include "support/TempFolder.h"
#include "support/UserInput.h"

#include <gtest/gtest.h>

#include <afxwin.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

/// Makes thumbnails when it is told to.
class ScriptedThumbnails : public host::ThumbnailSource {
public:
    void setSize(int) override {}
    std::shared_ptr<const host::Thumbnail> find(const host::PageVersion& page) override {
        const std::wstring& path = page.path;
        if (const auto found = made.find(path); found != made.end())
            return found->second;
        std::erase(waiting, path);
        waiting.push_back(path);
        return nullptr;
    }
    void forgetRequests() override { waiting.clear(); }

    std::map<std::wstring, std::shared_ptr<const host::Thumbnail>> made;
    std::vector<std::wstring> waiting; ///< the newest last
};

class PageViewFixture : public testing::Test {
protected:
    using Indices = std::vector<std::size_t>;
    using Names = std::vector<std::wstring>;

    PageViewFixture() {
        test::loadLanguage(L"en.ini");
        EXPECT_TRUE(frame.CreateEx(WS_EX_TOPMOST, nullptr, L"Pages", WS_POPUP | WS_VISIBLE, 100, 60, 800, 560,
                                   nullptr, nullptr));
        EXPECT_TRUE(view.create(frame, 1));
        view.MoveWindow(CRect(0, 0, 800, 560));
        SetForegroundWindow(frame);
        list = FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr);
        SetFocus(list);
        view.whenReordered = [this] { ++reordered; };
        view.whenSelectionChanges = [this] { ++selectionChanges; };
        view.whenDropped = [this](const std::vector<std::wstring>& paths, std::size_t position) {
            dropped = paths;
            dropPosition = position;
        };
    }

    /// Adds a page for each name to the end, of a file of its own.
    void addPages(const Names& names, const std::wstring& folderName = L"scans") {
        CreateDirectoryW((folder / folderName).c_str(), nullptr);
        const std::wstring prefix = folderName + L'\\';
        std::vector<std::wstring> files;
        for (const std::wstring& name : names)
            files.push_back(folder.write(prefix + name, "%PDF-1.4"));
        std::vector<host::LeftOut> leftOut;
        pages.insert(pages.size(), pages.make(files, leftOut));
        EXPECT_TRUE(leftOut.empty());
        view.pagesChanged();
    }

    Names names() const {
        Names result;
        for (std::size_t i = 0; i < pages.size(); ++i)
            result.push_back(pages[i]->fileName());
        return result;
    }

    /// Where the list view has the page, on the screen.
    CRect onScreen(std::size_t index) const {
        CRect rect;
        rect.left = LVIR_ICON;
        ::SendMessageW(list, LVM_GETITEMRECT, index, reinterpret_cast<LPARAM>(&rect));
        ::MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    POINT middleOf(std::size_t index) const { return onScreen(index).CenterPoint(); }
    POINT leftPartOf(std::size_t index) const {
        const CRect rect = onScreen(index);
        return CPoint(rect.left + rect.Width() / 4, rect.CenterPoint().y);
    }
    POINT rightPartOf(std::size_t index) const {
        const CRect rect = onScreen(index);
        return CPoint(rect.right - rect.Width() / 4, rect.CenterPoint().y);
    }
    auto at(POINT (PageViewFixture::*place)(std::size_t) const, std::size_t index) const {
        return [this, place, index] { return (this->*place)(index); };
    }

    std::wstring itemText(std::size_t index) const {
        wchar_t text[512] = L"";
        LVITEMW item{};
        item.pszText = text;
        item.cchTextMax = 512;
        ::SendMessageW(list, LVM_GETITEMTEXTW, index, reinterpret_cast<LPARAM>(&item));
        return text;
    }

    test::TempFolder folder;
    host::PageCollection pages{nullptr};
    ScriptedThumbnails thumbnails;
    CWnd frame;
    host::PageView view{pages, thumbnails};
    HWND list = nullptr;
    test::UserInput user;

    int reordered = 0;
    int selectionChanges = 0;
    std::vector<std::wstring> dropped;
    std::size_t dropPosition = 0;
};
