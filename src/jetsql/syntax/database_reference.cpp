#include "jetsql/syntax/database_reference.h"

#include "jetsql/functions/text_compare.h"

namespace jetsql {

DatabaseReference databaseReference(const std::string& text, const std::string& connect) {
  const bool isConnect = connect.empty() && text.find(';') != std::string::npos;
  DatabaseReference reference{isConnect ? "" : text, isConnect ? text : connect};
  if (reference.path.empty()) reference.path = connectValue(reference.connect, "DATABASE");
  return reference;
}

std::string connectValue(std::string_view connect, std::string_view key) {
  while (!connect.empty()) {
    const std::size_t end = connect.find(';');
    const std::string_view part = connect.substr(0, end);
    const std::size_t equals = part.find('=');
    if (equals != std::string_view::npos && equalText(part.substr(0, equals), key)) {
      return std::string(part.substr(equals + 1));
    }
    if (end == std::string_view::npos) break;
    connect.remove_prefix(end + 1);
  }
  return {};
}

std::string_view connectKind(std::string_view connect) {
  return connect.substr(0, connect.find(';'));
}

}  // namespace jetsql
