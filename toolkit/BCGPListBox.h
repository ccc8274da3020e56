// CBCGPListBox: a list box in the look of the system's visual style.
#pragma once

#include "afxwin.h"

class TOOLKIT_API CBCGPListBox : public CListBox {
    DECLARE_DYNAMIC(CBCGPListBox)
};
