// Follows which page an engine is at.
#pragma once

#include "host/FilePage.h"

#include <cstddef>
#include <optional>

namespace host {

class ProgressConsole;

/// Knows which page the engine is at, and shows it.
class PagePosition : public PageWatcher {
public:
    /// @param pages    not owned; may still be empty, as long as no page is asked for
    /// @param console  not owned
    PagePosition(const FilePages& pages, ProgressConsole& console) : pages(pages), console(console) {}

    void pageAsked(const FilePage& page) override;

    /// The index of the page. None before the first one.
    std::optional<std::size_t> current() const { return started ? std::optional(index) : std::nullopt; }

private:
    const FilePages& pages;
    ProgressConsole& console;
    std::size_t index = 0;
    bool started = false;
};

} // namespace host
