// What the console program knows about one kind of export.
#pragma once

#include "host/DialogPilot.h"
#include "host/FilePage.h"
#include "host/Options.h"
#include "host/SettingsOverlay.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace host {

/// Connects the options of the command line with one kind of export: which factory makes it, what is entered
/// in its dialog, and what can go wrong with it.
///
/// Adding a kind of export to the program means one class of these and a line in makeExportTarget().
class ExportTarget {
public:
    virtual ~ExportTarget() = default;

    /// The identifier of the factory.
    virtual const char* factoryId() const = 0;

    /// Settings of the host's that the options replace for this run.
    virtual SettingValues settings() const { return {}; }

    /// Refuses, by throwing HostError, what could not work or would harm a page, before anything is done.
    virtual void checkBefore(const FilePages& pages) const = 0;

    /// A dialog that has this control is the settings dialog.
    virtual int tellingControl() const = 0;

    /// Enters the options in the settings dialog. Sends, posts nothing.
    virtual void fillIn(HWND dialog) const = 0;

    /// Takes note of what the settings dialog holds now.
    virtual void observe(HWND dialog) = 0;

    /// Refuses, by throwing HostError, what was last observed.
    virtual void checkObserved(const FilePages& pages) const = 0;

    /// What is done about existing files as long as the person does not say.
    virtual Overwrite defaultOverwrite() const = 0;

    /// The existing file that the engine would replace without a question, by what was last observed.
    virtual std::optional<std::wstring> fileReplacedUnasked() const { return std::nullopt; }

    /// Called right before the export, to take note of what is there and of what the export will report.
    virtual void beforeExport() {}

    /// Refuses, by throwing HostError, to believe an engine that called the export done.
    virtual void checkDone() const {}

    /// Where the export goes to, for messages: what was last observed, or else what the options say.
    virtual std::string destination() const = 0;

    /// What has become of pages when the export is done, as in "exported to" the destination.
    virtual const char* outcome() const { return "exported to"; }

    /// Whether what the engine reports is about the page that it is at.
    virtual bool concernsPage(const std::string& /*report*/) const { return true; }

    /// The sentence for a report that is not about a page.
    virtual std::string sentenceFor(const std::string& report) const;

    /// Why a page that can be read did not get to its destination, and what is left there of it, as the second
    /// half of a sentence.
    virtual std::string reasonForFailure(const FilePage& page, std::size_t index,
                                         std::size_t pageCount) const = 0;

    /// Whether a message box of the component only announces the failure that reasonForFailure() explains.
    virtual bool isToldByReason(const std::string& /*message*/) const { return false; }

    /// Answers a question of the component's to which a person may say yes. False when the message box asks
    /// nothing of the kind.
    /// @param ask  gets the person's answer to a question; no where there is nobody to ask
    virtual bool answer(HWND /*box*/, const std::function<bool(const std::string&)>& /*ask*/) {
        return false;
    }

    /// Whether a window that comes up during the export is that of a program which the engine calls.
    virtual bool isForeign(HWND /*window*/) const { return false; }
};

/// The kind of export that the options ask for.
std::unique_ptr<ExportTarget> makeExportTarget(const Options& options);

} // namespace host
