// Identifiers of the mail client's resources.
#pragma once

#define IDS_DRAFT_TITLE 100
#define IDS_DRAFT_NOT_OPENED 101
