// CBCGPButton: a push button, check box or radio button in the look of the system's visual style.
#pragma once

#include "afxwin.h"

class TOOLKIT_API CBCGPButton : public CButton {
    DECLARE_DYNAMIC(CBCGPButton)
};
