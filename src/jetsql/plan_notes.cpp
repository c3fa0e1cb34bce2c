#include "jetsql/plan_notes.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace jetsql {

std::vector<std::string> planNotes(const std::vector<std::string>& plan) {
  constexpr std::pair<std::string_view, std::string_view> kNotes[] = {
      {"FOR GROUP BY", "sorts rows for GROUP BY"},
      {"FOR ORDER BY", "sorts rows for ORDER BY"},
      {"FOR DISTINCT", "compares rows for DISTINCT"},
      {"TEMP B-TREE", "compares rows for UNION"},
      {"USING AUTOMATIC", "indexes a subquery's rows for this query"},
      {"MATERIALIZE", "keeps a subquery's rows for this query"},
      {"CORRELATED", "computes a subquery again for every row around it"},
  };
  std::vector<std::string> notes;
  for (std::size_t i = 0; i < plan.size(); ++i) {
    const std::string& line = plan[i];
    // A row of an index over computed values: how a table is read, not what the query asks.
    if (i + 1 < plan.size() && plan[i + 1].starts_with("SEARCH keys")) continue;
    const auto* note = std::ranges::find_if(
        kNotes, [&line](const auto& known) { return line.find(known.first) != line.npos; });
    if (note == std::end(kNotes)) continue;
    const std::string text(note->second);
    if (std::ranges::find(notes, text) == notes.end()) notes.push_back(text);
  }
  return notes;
}

}  // namespace jetsql
