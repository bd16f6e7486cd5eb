#pragma once

#include "platform/dao/Error.h"

/// Number and description of an engine error in the program's language, in the engine's own words where there are none
/// in it.
QString engineWords(const dao::Error& error);
