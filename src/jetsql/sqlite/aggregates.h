// Jet's aggregate functions where SQLite's own would not do: jet_sum, jet_avg, jet_first, jet_last,
// jet_stdev, jet_stdevp, jet_var, jet_varp, each with the signature first, as in
// jet_avg('dc', price). Min, Max and Count are SQLite's own. Null values are left out, except by
// First and Last; over no value at all the result is Null, and StDev and Var are over fewer than
// two.
#pragma once

struct sqlite3;

namespace jetsql {

struct CallbackContext;

// `callbacks` outlives the connection.
void registerAggregates(sqlite3* database, CallbackContext& callbacks);

}  // namespace jetsql
