#include "server/odbc_handle.h"

#include <array>

#include "server/wide_text.h"

namespace server::odbc {

Handle::Handle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(type, parent, &handle_))) {
    throw Fault("The ODBC driver manager gives no handle.");
  }
}

Handle::~Handle() { SQLFreeHandle(type_, handle_); }

std::vector<std::string> Handle::diagnostics() const {
  std::vector<std::string> texts;
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 1024> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  for (SQLSMALLINT record = 1;
       SQL_SUCCEEDED(SQLGetDiagRecW(type_, handle_, record, state.data(), &native, text.data(),
                                    static_cast<SQLSMALLINT>(text.size()), &length));
       ++record) {
    texts.push_back(fromWide(text.data()));
  }
  return texts;
}

std::vector<std::string> Handle::warningsOf(SQLRETURN result) const {
  if (result == SQL_SUCCESS || result == SQL_NO_DATA) return {};
  auto texts = diagnostics();
  if (result == SQL_SUCCESS_WITH_INFO) return texts;
  std::string all;
  for (const auto& text : texts) all += (all.empty() ? "" : " ") + text;
  throw Fault(all.empty() ? "The ODBC driver gave no reason." : all);
}

}  // namespace server::odbc
