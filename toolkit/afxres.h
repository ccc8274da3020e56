// Numbers of the texts in the toolkit's own resources.
#pragma once

#define AFX_IDP_INVALID_MAPI_DLL 0xF191
#define AFX_IDP_FAILED_MAPI_SEND 0xF192
