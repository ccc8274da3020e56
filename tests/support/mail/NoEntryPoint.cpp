// A library that a test plants as MAPI32.DLL and that knows nothing of mail.
extern "C" __declspec(dllexport) int notMail() {
    return 0;
}
