#pragma once

#include "store/dialecttokens.h"

namespace tarvel::dialect {

// Rewrites the arithmetic and concatenation operators (& Mod / \) into the
// engine's and adds the parentheses that make the engine evaluate them in the
// program's order (^, unary -, * /, \, Mod, + -, & from tightest to loosest),
// where the engine's own order differs (|| above *, % beside *). The order
// and number of tokens stay as they were; only their text changes.
void translateOperators(Tokens& tokens);

}  // namespace tarvel::dialect
