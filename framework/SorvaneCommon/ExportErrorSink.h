// Where engines report why an export failed.
#pragma once

#include "SorvaneBase/SorvaneException.h"

/// The host's exception object, used as a record: engines call its reportError() (slot 3) and throw nothing.
using ExportErrorSink = SorvaneException;
