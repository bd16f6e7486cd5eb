#pragma once

#include "platform/dao/Database.h"

/// Makes the tables and options of a new catalogue with one study view.
void makeCatalogue(dao::Database& catalogue);
