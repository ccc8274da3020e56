// CBCGPStatic: a label in the look of the system's visual style.
#pragma once

#include "afxwin.h"

class TOOLKIT_API CBCGPStatic : public CStatic {
    DECLARE_DYNAMIC(CBCGPStatic)
};
