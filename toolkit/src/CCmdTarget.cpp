// Search in message maps.
#include "afxwin.h"

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

CCmdTarget::CCmdTarget() : m_pModuleState(AfxGetModuleState()) {}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    return GetThisMessageMap();
}

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY messageEntries[] = {{0, 0, 0, 0, nullptr}};
    static const AFX_MSGMAP messageMap = {nullptr, messageEntries};
    return &messageMap;
}

const AFX_MSGMAP_ENTRY* CCmdTarget::FindEntry(UINT nMessage, UINT nCode, UINT nID) const {
    for (const AFX_MSGMAP* map = GetMessageMap(); map;
         map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr)
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage; ++entry)
            if (entry->nMessage == nMessage && entry->nCode == nCode && entry->nID <= nID &&
                nID <= entry->nLastID)
                return entry;
    return nullptr;
}
