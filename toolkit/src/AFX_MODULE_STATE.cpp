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

std::vector<CWinApp*> applications() {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    std::vector<CWinApp*> found;
    for (const AFX_MODULE_STATE* state : all.states)
        if (state->m_pCurrentWinApp)
            found.push_back(state->m_pCurrentWinApp);
    return found;
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

AfxThreadSnapshot::AfxThreadSnapshot()
    : moduleState(threadState().moduleState), currentMessage(threadState().currentMessage),
      windowBeingCreated(threadState().windowBeingCreated), innermostCall(threadState().innermostCall) {
    for (CWinApp* application : applications())
        modelessDepths.emplace_back(application, application->modelessDepth);
}

void AfxThreadSnapshot::restore() const {
    ThreadState& state = threadState();
    state.moduleState = moduleState;
    state.currentMessage = currentMessage;
    state.windowBeingCreated = windowBeingCreated;
    state.innermostCall = innermostCall;
    for (CWinApp* application : applications()) {
        const auto then = std::find_if(modelessDepths.begin(), modelessDepths.end(),
                                       [&](const auto& known) { return known.first == application; });
        const int depth = then == modelessDepths.end() ? 0 : then->second;
        for (int leftOver = application->modelessDepth - depth; leftOver > 0; --leftOver)
            application->EnableModeless(TRUE);
    }
}
