// The console program on a system without MAPI32.DLL, or with one that cannot send mail.
#include "host/ScanExportFixture.h"
#include "support/mail/PlantedMailLibrary.h"

namespace {

constexpr char notHandedOver[] =
    "scanexport: The message cannot be handed over: this system has no library MAPI32.DLL that takes it.\n";

class MailTargetWithoutLibraryTest : public ScanExportFixture {};

TEST_F(MailTargetWithoutLibraryTest, ThatIsMissingIsToldAbout) {
    test::expectNoMailLibrary();
    addPage(L"a.tif");

    EXPECT_EQ(run({L"--to-mail", pages}), 1);

    EXPECT_EQ(console.errors, notHandedOver);
}

TEST_F(MailTargetWithoutLibraryTest, ThatCannotSendIsToldAboutByTheToolkitToo) {
    const test::PlantedMailLibrary library;
    addPage(L"a.tif");

    EXPECT_EQ(run({L"--to-mail", pages}), 1);

    EXPECT_EQ(console.errors,
              "scanexport: The system’s mail library MAPI32.DLL is not valid, so no e-mail can be sent.\n" +
                  std::string(notHandedOver));
}

} // namespace
