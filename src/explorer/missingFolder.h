#pragma once

#include "platform/dao/Error.h"

/// True for the engine's word that a file's folder is not there: a database that moved shows so.
bool isMissingFolder(const dao::Error& error);

/// Tells the user of such a failure, who can put it right in the options. @return false for any other, which is left
/// to the caller
bool reportMissingFolder(const dao::Error& error);
