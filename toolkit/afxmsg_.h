// Message maps: which member function of a class handles which message.
#pragma once

#include "ToolkitApi.h"

#include <windows.h>

class CCmdTarget;

/// One line of a message map. The handler is reached through a function that knows its class and signature, so no
/// member pointer is ever called as something else than it is.
struct AFX_MSGMAP_ENTRY {
    UINT nMessage; ///< 0 ends the map
    UINT nCode;    ///< notification code of WM_COMMAND and WM_NOTIFY, otherwise 0
    UINT nID;      ///< first control or command id, otherwise 0
    UINT nLastID;  ///< last one of a range
    LRESULT (*pfn)(CCmdTarget* target, WPARAM wParam, LPARAM lParam);
};

/// A class's map. What it does not hold is looked for in the base class's.
struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)();
    const AFX_MSGMAP_ENTRY* lpEntries;
};

#define DECLARE_MESSAGE_MAP()                                                                                \
protected:                                                                                                   \
    static const AFX_MSGMAP* GetThisMessageMap();                                                            \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                               \
    const AFX_MSGMAP* theClass::GetMessageMap() const {                                                      \
        return GetThisMessageMap();                                                                          \
    }                                                                                                        \
    const AFX_MSGMAP* theClass::GetThisMessageMap() {                                                        \
        using ThisClass [[maybe_unused]] = theClass;                                                         \
        using TheBaseClass = baseClass;                                                                      \
        static const AFX_MSGMAP_ENTRY messageEntries[] = {

#define END_MESSAGE_MAP()                                                                                    \
    { 0, 0, 0, 0, nullptr }                                                                                  \
    }                                                                                                        \
    ;                                                                                                        \
    static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, messageEntries};                 \
    return &messageMap;                                                                                      \
    }

// One entry; `...` is the handler's body, in which `self` is the object.
#define AFX_MSGMAP_CALL(message, code, firstId, lastId, ...)                                                 \
    {message, code, firstId, lastId,                                                                         \
     [](CCmdTarget* target, [[maybe_unused]] WPARAM wParam, [[maybe_unused]] LPARAM lParam) -> LRESULT {     \
         auto* self = static_cast<ThisClass*>(target);                                                       \
         __VA_ARGS__                                                                                         \
     }},

// void handler()
#define ON_CONTROL(wNotifyCode, id, memberFxn)                                                               \
    AFX_MSGMAP_CALL(WM_COMMAND, wNotifyCode, id, id, (self->*(memberFxn))(); return 0;)
#define ON_COMMAND(id, memberFxn) ON_CONTROL(0, id, memberFxn)
#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_LBN_SELCHANGE(id, memberFxn) ON_CONTROL(LBN_SELCHANGE, id, memberFxn)

// void handler(UINT id)
#define ON_CONTROL_RANGE(wNotifyCode, id, idLast, memberFxn)                                                 \
    AFX_MSGMAP_CALL(WM_COMMAND, wNotifyCode, id, idLast, (self->*(memberFxn))(LOWORD(wParam)); return 0;)
#define ON_COMMAND_RANGE(id, idLast, memberFxn) ON_CONTROL_RANGE(0, id, idLast, memberFxn)

// void handler(NMHDR*, LRESULT*)
#define ON_NOTIFY(wNotifyCode, id, memberFxn)                                                                \
    AFX_MSGMAP_CALL(WM_NOTIFY, wNotifyCode, id, id, LRESULT result = 0;                                      \
                    (self->*(memberFxn))(reinterpret_cast<NMHDR*>(lParam), &result); return result;)

// LRESULT handler(WPARAM, LPARAM)
#define ON_MESSAGE(message, memberFxn)                                                                       \
    AFX_MSGMAP_CALL(message, 0, 0, 0, return (self->*(memberFxn))(wParam, lParam);)

#define ON_WM_CAPTURECHANGED()                                                                               \
    AFX_MSGMAP_CALL(WM_CAPTURECHANGED, 0, 0, 0,                                                              \
                    self->OnCaptureChanged(CWnd::FromHandle(reinterpret_cast<HWND>(lParam)));                \
                    return 0;)
#define ON_WM_ENABLE()                                                                                       \
    AFX_MSGMAP_CALL(WM_ENABLE, 0, 0, 0, self->OnEnable(static_cast<BOOL>(wParam)); return 0;)
#define ON_WM_GETMINMAXINFO()                                                                                \
    AFX_MSGMAP_CALL(WM_GETMINMAXINFO, 0, 0, 0, self->OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam)); \
                    return 0;)
#define ON_WM_LBUTTONUP()                                                                                    \
    AFX_MSGMAP_CALL(WM_LBUTTONUP, 0, 0, 0, self->OnLButtonUp(static_cast<UINT>(wParam), CPoint(lParam));     \
                    return 0;)
#define ON_WM_MOUSEMOVE()                                                                                    \
    AFX_MSGMAP_CALL(WM_MOUSEMOVE, 0, 0, 0, self->OnMouseMove(static_cast<UINT>(wParam), CPoint(lParam));     \
                    return 0;)
#define ON_WM_NCCALCSIZE()                                                                                   \
    AFX_MSGMAP_CALL(                                                                                         \
        WM_NCCALCSIZE, 0, 0, 0,                                                                              \
        self->OnNcCalcSize(static_cast<BOOL>(wParam), reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam));         \
        return 0;)
#define ON_WM_NCDESTROY() AFX_MSGMAP_CALL(WM_NCDESTROY, 0, 0, 0, self->OnNcDestroy(); return 0;)
#define ON_WM_NCHITTEST() AFX_MSGMAP_CALL(WM_NCHITTEST, 0, 0, 0, return self->OnNcHitTest(CPoint(lParam));)
#define ON_WM_NCLBUTTONDOWN()                                                                                \
    AFX_MSGMAP_CALL(WM_NCLBUTTONDOWN, 0, 0, 0,                                                               \
                    self->OnNcLButtonDown(static_cast<UINT>(wParam), CPoint(lParam));                        \
                    return 0;)
#define ON_WM_NCLBUTTONDBLCLK()                                                                              \
    AFX_MSGMAP_CALL(WM_NCLBUTTONDBLCLK, 0, 0, 0,                                                             \
                    self->OnNcLButtonDblClk(static_cast<UINT>(wParam), CPoint(lParam));                      \
                    return 0;)
#define ON_WM_NCMOUSEMOVE()                                                                                  \
    AFX_MSGMAP_CALL(WM_NCMOUSEMOVE, 0, 0, 0, self->OnNcMouseMove(static_cast<UINT>(wParam), CPoint(lParam)); \
                    return 0;)
#define ON_WM_NCPAINT() AFX_MSGMAP_CALL(WM_NCPAINT, 0, 0, 0, self->OnNcPaint(); return 0;)
#define ON_WM_SIZE()                                                                                         \
    AFX_MSGMAP_CALL(WM_SIZE, 0, 0, 0,                                                                        \
                    self->OnSize(static_cast<UINT>(wParam), LOWORD(lParam), HIWORD(lParam));                 \
                    return 0;)
