// Identifiers in the resources of the toolkit's tests.
#pragma once

#define IDD_SAMPLE 100
#define IDC_PATH 1001
#define IDC_LIST 1002
#define IDC_NAME 1003
#define IDC_CHECK 1004
#define IDC_FIRST 1005
#define IDC_SECOND 1006
#define IDC_LABEL 1007

#define IDS_GREETING 200
