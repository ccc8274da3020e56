// Root of the class tree: CObject and its run-time class information.
#pragma once

#include "ToolkitApi.h"
#include "atlstr.h"

#include <windows.h>

class CObject;

#define afx_msg

/// What is known of a class at run time. One exists for every class declared with DECLARE_DYNAMIC or
/// DECLARE_DYNCREATE; RUNTIME_CLASS(name) gives it.
struct TOOLKIT_API CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    /// Null for a class that cannot be created by name.
    CObject* (*m_pfnCreateObject)();
    /// Null for CObject only. A function, since the address of another DLL's data is no constant.
    CRuntimeClass* (*m_pfnGetBaseClass)();

    /// A new object of this class, which the caller deletes, or null where the class does not allow it.
    CObject* CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }
    /// Whether this is the given class or derives from it.
    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;
};

/// Base of everything that knows its class at run time. Objects are not copied.
class TOOLKIT_API CObject {
public:
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject() = default;

    virtual CRuntimeClass* GetRuntimeClass() const { return GetThisClass(); }
    BOOL IsKindOf(const CRuntimeClass* pClass) const { return GetRuntimeClass()->IsDerivedFrom(pClass); }

    static CRuntimeClass* GetThisClass();

protected:
    CObject() = default;
};

/// The object itself when it is of the class or derives from it, otherwise (also for no object) null.
TOOLKIT_API CObject* AfxDynamicDownCast(CRuntimeClass* pClass, CObject* pObject);

#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())
#define DYNAMIC_DOWNCAST(class_name, object)                                                                 \
    (static_cast<class_name*>(AfxDynamicDownCast(RUNTIME_CLASS(class_name), object)))

#define DECLARE_DYNAMIC(class_name)                                                                          \
public:                                                                                                      \
    static CRuntimeClass* GetThisClass();                                                                    \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name)                                                                        \
    DECLARE_DYNAMIC(class_name)                                                                              \
    static CObject* CreateObject();

#define IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, pfnNew)                                          \
    CRuntimeClass* class_name::GetThisClass() {                                                              \
        static CRuntimeClass thisClass = {#class_name, sizeof(class_name), pfnNew,                           \
                                          &base_class_name::GetThisClass};                                   \
        return &thisClass;                                                                                   \
    }                                                                                                        \
    CRuntimeClass* class_name::GetRuntimeClass() const {                                                     \
        return GetThisClass();                                                                               \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                                       \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                                     \
    CObject* class_name::CreateObject() {                                                                    \
        return new class_name;                                                                               \
    }                                                                                                        \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, &class_name::CreateObject)
