// What the codes of mail clients are said to mean.
#include "host/MailFailure.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>

namespace {

struct Code {
    int value;
    const char* meaning;

    friend void PrintTo(const Code& code, std::ostream* out) { *out << code.value; }
};

class MailFailureTest : public testing::Test {
protected:
    /// Logs a failure as the transport does.
    static void log(int code) {
        bxutils::getSystemLogFormater()->log(0, ("MAPI failure, error code=" + std::to_string(code)).c_str(),
                                             "", 0);
    }

    host::MailFailure failure;
};

class MeaningTest : public MailFailureTest, public testing::WithParamInterface<Code> {};

TEST_P(MeaningTest, SaysWhatTheCodeMeans) {
    log(GetParam().value);
    EXPECT_EQ(failure.reason(),
              GetParam().meaning + (" (Simple MAPI code " + std::to_string(GetParam().value) + ")"));
}

INSTANTIATE_TEST_SUITE_P(
    Codes, MeaningTest,
    testing::Values(Code{4, "the disk is full"}, Code{5, "there is not enough memory"},
                    Code{6, "the mail client was denied access"},
                    Code{8, "too many programs are using the mail client"},
                    Code{9, "the mail client does not take so many attachments"},
                    Code{11, "the mail client did not find an attachment"},
                    Code{12, "the mail client could not open an attachment"},
                    Code{13, "the mail client could not store an attachment"},
                    Code{18, "the subject is too long"}, Code{23, "the network failed"},
                    Code{26, "no mail client takes messages from programs here; --register-draft-mail "
                             "provides one"}));

TEST_F(MailFailureTest, NamesACodeWithoutAMeaningAlone) {
    for (const int code : {2, 3, 7, 10, 14, 15, 16, 17, 19, 20, 21, 22, 24, 25, 27, -1}) {
        log(code);
        EXPECT_EQ(failure.reason(),
                  "the mail client gave no reason but Simple MAPI code " + std::to_string(code));
    }
}

TEST_F(MailFailureTest, HasNoReasonBeforeACodeIsLogged) {
    EXPECT_EQ(failure.reason(), std::nullopt);
}

} // namespace
