#pragma once

struct sqlite3;

namespace dao {

/// Name of the collation that orders text as compareTexts() does; created tables declare their text columns with it
/// so that their indexes serve the engine's comparisons.
inline constexpr char textCollation[] = "VXTEXT";

/// Registers on a connection the text collation and the functions that written statements call. The binder writes
/// native SQLite operators where both sides are known to be numbers, or known to be texts (with the collation),
/// and these functions where SQLite's own rules differ from the engine's:
///   vx_eq, vx_ne, vx_lt, vx_le, vx_gt, vx_ge (a, b)   compareValues(), Null in, Null out
///   vx_like(text, pattern)                            matchesPattern()
///   vx_concat(a, b)                                   & : Null counts as empty text
///   vx_val, vx_cdbl, vx_nz, vx_trim, vx_ucase, vx_lcase, vx_left, vx_mid, vx_right, vx_len, vx_instr, vx_text ...
///   vx_add, vx_sub, vx_mul, vx_div, vx_neg ...        operands that may be texts; division by zero is error 11
///   vx_key(v)                                         what values that compare equal share, for grouping mixed columns
/// An error inside a function is kept and raised as the dao::Error it is, not as SQLite's.
void registerFunctions(sqlite3* connection);

}
