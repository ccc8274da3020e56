// Follows an export and can end it.
#pragma once

#include "host/FilePage.h"
#include "host/PagePosition.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>

namespace host {

/// Knows which page an engine is at. Once the export is to stop no page gives its data, which ends the export: the
/// contract of engines has no other way.
///
/// The pages hold it as their watcher, so it outlives them. Thread: the user-interface thread, but for stop().
class ExportWatch : public PageWatcher {
public:
    void pageAsked(const FilePage& page) override;
    bool mayGiveData() override;

    /// An export of these pages begins.
    /// @param pages       not owned; must live until end()
    /// @param whenAtPage  is given the index of each page that the engine comes to
    void begin(const FilePages& pages, std::function<void(std::size_t index)> whenAtPage);
    void end();

    /// Whether an engine is exporting. Windows of the program handle messages meanwhile only when the engine lets them,
    /// as a mail client may.
    bool isRunning() const { return position.has_value(); }

    /// Ends the export at the next page. Nothing happens when none is running. Thread: any.
    void stop() { stopped = true; }

    /// Whether stop() has kept data back from the engine of this export.
    bool hasRefused() const { return refused; }

    /// The index of the page that the engine is at. None before the first one.
    std::optional<std::size_t> current() const;

private:
    std::optional<PagePosition> position; ///< during an export
    std::atomic<bool> stopped = false;
    bool refused = false;
};

} // namespace host
