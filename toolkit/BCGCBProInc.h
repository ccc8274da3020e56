// All classes of the control library.
#pragma once

#include "BCGPButton.h"
#include "BCGPDialog.h"
#include "BCGPEdit.h"
#include "BCGPLayout.h"
#include "BCGPListBox.h"
#include "BCGPStatic.h"
