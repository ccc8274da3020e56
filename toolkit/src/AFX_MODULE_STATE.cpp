// Module state: the states of all modules and the current one of each thread.
#include "AfxModule.h"
#include "ThreadState.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace {

struct Registry {
    std::mutex mutex;
    std::vector<AFX_MODULE_STATE*> states;
};

// Destroyed after the states of all modules: their constructors are what creates it.
Registry& registry() {
    static Registry registry;
    return registry;
}

// For a program that links no state of its own.
AFX_MODULE_STATE* programState() {
    const HMODULE program = GetModuleHandle(nullptr);
    if (AFX_MODULE_STATE* state = AfxFindModuleState(program))
        return state;
    static AFX_MODULE_STATE state(program);
    return &state;
}

} // namespace

AFX_MODULE_STATE::AFX_MODULE_STATE(HINSTANCE instance)
    : m_hCurrentInstanceHandle(instance), m_hCurrentResourceHandle(instance) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    all.states.push_back(this);
}

AFX_MODULE_STATE::~AFX_MODULE_STATE() {
    if (threadState().moduleState == this)
        threadState().moduleState = nullptr;
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    std::erase(all.states, this);
}

AFX_MODULE_STATE* AfxFindModuleState(HMODULE module) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    const auto found =
        std::find_if(all.states.begin(), all.states.end(), [module](const AFX_MODULE_STATE* state) {
            return state->m_hCurrentInstanceHandle == module;
        });
    return found == all.states.end() ? nullptr : *found;
}

CWinApp* AfxFindModuleApp(HMODULE module) {
    const AFX_MODULE_STATE* state = AfxFindModuleState(module);
    return state ? state->m_pCurrentWinApp : nullptr;
}

AFX_MODULE_STATE* AfxGetModuleState() {
    AFX_MODULE_STATE* state = threadState().moduleState;
    return state ? state : programState();
}

AFX_MODULE_STATE* AfxSetModuleState(AFX_MODULE_STATE* pNewState) {
    return std::exchange(threadState().moduleState, pNewState);
}

HINSTANCE AfxGetInstanceHandle() {
    return AfxGetModuleState()->m_hCurrentInstanceHandle;
}
HINSTANCE AfxGetResourceHandle() {
    return AfxGetModuleState()->m_hCurrentResourceHandle;
}
CWinApp* AfxGetApp() {
    return AfxGetModuleState()->m_pCurrentWinApp;
}
