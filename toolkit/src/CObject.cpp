// CObject and its run-time class information.
#include "afx.h"

CRuntimeClass* CObject::GetThisClass() {
    static CRuntimeClass thisClass = {"CObject", sizeof(CObject), nullptr, nullptr};
    return &thisClass;
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const {
    for (const CRuntimeClass* current = this; current;
         current = current->m_pfnGetBaseClass ? current->m_pfnGetBaseClass() : nullptr)
        if (current == pBaseClass)
            return TRUE;
    return FALSE;
}

CObject* AfxDynamicDownCast(CRuntimeClass* pClass, CObject* pObject) {
    return pObject && pObject->IsKindOf(pClass) ? pObject : nullptr;
}
