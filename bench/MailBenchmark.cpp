// Measures how the export to e-mail prepares its attachments, against a bare loop of CopyFileW.
#include "bench/BenchmarkHost.h"
#include "bench/CopyTurns.h"

#include "host/DialogPilot.h"
#include "host/HostError.h"
#include "host/MailDialogControls.h"
#include "host/Text.h"

#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxutils/SystemLog.h"

#include "support/mail/MailClient.h"

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace bench;
namespace fs = std::filesystem;

constexpr wchar_t registryBase[] = L"Sorvane\\MailBenchmark";
constexpr char mailFactoryId[] = "com.brellix.sorvane.exportdata-factory.mail.file";

/// The root of the directories that exports make, as the host gives them one.
class TempRoot {
public:
    explicit TempRoot(std::wstring path) : folder(std::move(path)) {
        fs::create_directory(folder);
        bxdisk::setTempRoot(folder);
    }
    ~TempRoot() {
        bxdisk::setTempRoot(L"");
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    TempRoot(const TempRoot&) = delete;
    TempRoot& operator=(const TempRoot&) = delete;

    /// The only directory in it.
    std::wstring exported() const { return fs::directory_iterator(folder)->path().wstring(); }

private:
    std::wstring folder;
};

/// Takes turns with the engine in the directory that it has just made.
class AttachmentTurns : public TurnTaker {
public:
    AttachmentTurns(const TempRoot& root, const Sources& sources, const Target& copies, Times& times)
        : TurnTaker(sources, copies, times), root(root) {}

    void pageAsked(const host::FilePage& page) override {
        if (!marked)
            markIndexed(root.exported());
        marked = true;
        TurnTaker::pageAsked(page);
    }

private:
    const TempRoot& root;
    bool marked = false;
};

/// The seconds that all pages took.
struct Totals {
    double ours = 0;
    double peer = 0;
};

void confirmDialog(SorvaneCommon::ExportEngine& engine) {
    host::DialogPilot pilot(std::chrono::seconds(30));
    pilot.then("settings", host::dialogWith(host::mailDialog::subjectEdit), host::click(IDOK));
    if (!engine.showDialog())
        throw host::HostError("The dialog was not confirmed: " + pilot.failure());
}

void measurePages(const Host& host, const Sources& sources, const std::wstring& folder, std::size_t count,
                  Times& times, Totals& totals) {
    const TempRoot root(folder + L"\\temp");
    const auto digits = static_cast<int>(std::to_string(count).size());
    const Target copies(folder + L"\\copies", numberedNames(L"Page-", digits, count), true);
    AttachmentTurns turns(root, sources, copies, times);
    const host::FilePages pages = makePages(sources, folder, count, &turns);
    const auto engine = host.createEngine(mailFactoryId);
    for (const auto& page : pages)
        engine->addData(page.get());
    confirmDialog(*engine);

    test::MailClient client;
    const auto start = Clock::now();
    double seconds = 0;
    client.behaviour = test::meanwhile([&] { seconds = secondsSince(start); });
    SorvaneException errors;
    if (engine->exportData(nullptr, errors) != 0)
        throw host::HostError(std::string("The export failed: ") + errors.what());
    if (client.calls.size() != 1 || client.calls[0].files.size() != count)
        throw host::HostError("The mail client has not got every page.");
    std::vector<std::wstring> attached;
    for (const test::MailCall::File& file : client.calls[0].files)
        attached.push_back(host::wide(file.path.value_or("")));
    verifyPages(attached);
    totals.ours += seconds - turns.copyingSeconds();
    totals.peer += turns.copyingSeconds();
}

struct Options {
    std::wstring folder;
    std::size_t pages = 10000;
    std::size_t rounds = 3;
};

Options parseOptions(int count, wchar_t** arguments) {
    Options options;
    if (count < 2 || count % 2 != 0)
        throw host::UsageError("usage: MailBenchmark FOLDER [--pages 10000] [--rounds 3]");
    options.folder = arguments[1];
    for (int index = 2; index < count; index += 2) {
        const std::wstring name = arguments[index];
        const std::size_t value = std::stoul(arguments[index + 1]);
        if (name == L"--pages")
            options.pages = value;
        else if (name == L"--rounds")
            options.rounds = value;
        else
            throw host::UsageError("There is no option " + host::utf8(name) + ".");
    }
    return options;
}

void measureMail(const Host& host, const Options& options) {
    const Sources sources(options.folder);
    Times firstSteps;
    Totals ofFirstSteps;
    measurePages(host, sources, options.folder, 100, firstSteps, ofFirstSteps);
    Times times;
    Totals totals;
    for (std::size_t round = 0; round < options.rounds; ++round) {
        std::fprintf(stderr, "round %zu of %zu\n", round + 1, options.rounds);
        measurePages(host, sources, options.folder, options.pages, times, totals);
    }
    std::puts("Attachments of 100 KiB against CopyFileW with the same names, in turns of 100 pages;");
    std::puts("milliseconds a page and their ratio, medians of the turns");
    std::puts("   pages   turns    attachment     CopyFileW     ratio");
    printTimes(options.pages, times);
    std::printf("all of the export until the mail client has the message, against all copies: %.3f\n",
                totals.ours / totals.peer);
}

} // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    try {
        const Options options = parseOptions(argumentCount, arguments);
        // Every attachment is told to the log, as in a host's daily life.
        const std::wstring log = options.folder + L"\\log.txt";
        bxutils::setSystemLogFile(log);
        Host host(registryBase);
        const auto component = host.loadComponent();
        measureMail(host, options);
        bxutils::setSystemLogFile(L"");
        DeleteFileW(log.c_str());
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
