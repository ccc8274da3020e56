// A DLL that is no component: nothing in it is an application object.
extern "C" __declspec(dllexport) int answer() {
    return 42;
}
