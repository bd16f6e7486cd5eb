#pragma once

#include "platform/dao/Recordset.h"

#include <optional>

/// The label of a value among the rows of tkey_Value (fields dt_Value, dt_Label), found by number whatever
/// the spelling of the code; Null, a text that is no number and the lowest double look for an empty code.
/// Nothing where no row fits.
/// @param further a condition added behind, such as " AND fi_Varname = 'V5'"
std::optional<QString> labelOf(dao::Recordset& labels, const dao::Value& value, const QString& further = QString());
