// Follows which page an engine is at.
#pragma once

#include "host/FilePage.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>

namespace host {

/// Knows which page the engine is at, and tells of each. Pages that are not of this export do not matter.
class PagePosition : public PageWatcher {
public:
    /// @param pages       not owned; may still be empty, as long as no page is asked for
    /// @param whenAtPage  is given the index of each page that the engine comes to
    PagePosition(const FilePages& pages, std::function<void(std::size_t index)> whenAtPage)
        : pages(pages), whenAtPage(std::move(whenAtPage)) {}

    void pageAsked(const FilePage& page) override;

    /// The index of the page. None before the first one.
    std::optional<std::size_t> current() const { return started ? std::optional(index) : std::nullopt; }

private:
    const FilePages& pages;
    std::function<void(std::size_t)> whenAtPage;
    std::size_t index = 0;
    bool started = false;
};

} // namespace host
