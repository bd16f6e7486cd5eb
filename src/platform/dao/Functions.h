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
///   vx_bool(v)                                        a value as a condition: 1, 0 or Null
///   vx_key(v)                                         what values that compare equal share, for grouping mixed columns
///   vx_text(v)                                        a number as the engine's text, Null stays Null
///   vx_concat(a, b, ...)                              & : Null counts as empty text, all Null is Null
///   vx_calc(signs, a, b, ...)                         a + b - c * ... from the left on, a sign between two values each
///                                                     (two texts are joined by +)
///   vx_div, vx_idiv, vx_mod, vx_pow (a, b), vx_neg(a) like vx_calc: operands that may be texts; division by zero is
///                                                     error 11, what is beyond all doubles error 6
///   vx_val, vx_cdbl, vx_clng, vx_cint, vx_cbool, vx_int, vx_fix, vx_abs, vx_sgn, vx_sqr, vx_exp, vx_log (v),
///   vx_round(v [, decimals]), vx_isnumeric(v)         numbers; Null in, Null out (vx_isnumeric: 0)
///   vx_nz(v [, instead]), vx_cstr, vx_str, vx_trim, vx_ltrim, vx_rtrim, vx_ucase, vx_lcase, vx_len, vx_chr, vx_asc,
///   vx_space (v), vx_left, vx_right (text, count), vx_mid(text, start [, count]),
///   vx_instr([start,] text, part), vx_replace(text, part, by)
///                                                     texts, counted in code points; Null in, Null out
///   vx_sum, vx_avg (v)                                aggregates of numbers without the Nulls; a text or bytes among
///                                                     them is error 3464, a result beyond all doubles error 6
///   vx_var, vx_stdev, vx_varp, vx_stdevp (v)          the same way: variance and standard deviation of a sample (Null
///                                                     for fewer than two numbers), and of all there is
///   vx_first, vx_last (v)                             the value of the first or last row, Null or not
/// An error inside a function ends the statement and is kept until raiseFunctionError().
void registerFunctions(sqlite3* connection);

/// Throws the error that a function kept since the last call, as the dao::Error it is; returns if there is none.
void raiseFunctionError();

} // namespace dao
