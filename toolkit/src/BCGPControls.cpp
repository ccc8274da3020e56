// Controls in the look of the system's visual style, which they have from common controls 6 as they are.
#include "BCGPButton.h"
#include "BCGPListBox.h"
#include "BCGPStatic.h"

IMPLEMENT_DYNAMIC(CBCGPButton, CButton)
IMPLEMENT_DYNAMIC(CBCGPListBox, CListBox)
IMPLEMENT_DYNAMIC(CBCGPStatic, CStatic)
