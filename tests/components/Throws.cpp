// A component that throws an exception of its own half-way through its start.
#include "afxwin.h"
#include "components/TestFactory.h"

#include <stdexcept>

namespace {

class OwnError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    // Runs code of this component, which must still be there when the exception ends.
    ~OwnError() override { ended = true; }

private:
    volatile bool ended = false;
};

class ThrowingApp : public CWinApp {
public:
    BOOL InitInstance() override {
        registerTestFactory("half");
        throw OwnError("there is no scanner");
    }
};

ThrowingApp app;

} // namespace
