#include "statement_check.h"

#include <gtest/gtest.h>

namespace {

// A statement with the text of its second value between the quotes.
std::string insert(const std::string& inside) {
  return "Insert Into CustomerSellingTB (CS_GROUP, CS_SANGHO, CS_PRICE ) Values ('A01', '" +
         inside + "', -1200);";
}

TEST(StatementCheckTest, JudgesStatementsAsTheServerDoes) {
  const struct {
    const char* name;
    std::string statement;
    const char* reason;  // nullptr: taken
  } rows[] = {
      {"plain", insert("it"), nullptr},
      {"escaped apostrophe", insert("it\\'s"), nullptr},
      {"second apostrophe", insert("it\\'s Kim's"),
       "a value ends early in CS_SANGHO, before s', -1200);"},
      {"apostrophe at the end", insert("it\\'s'"),
       "a quote is left open in CS_SANGHO, from 'it\\'s'', -1200);"},
      {"unescaped apostrophe", insert("10'%"),
       "a quote is left open in CS_SANGHO, from ', -1200);"},
      {"doubled apostrophe", insert("10''%"), nullptr},
      {"backslash within", insert("C:\\x"), nullptr},
      {"backslash at the end", insert("C:\\"),
       "a quote is left open in CS_SANGHO, from 'C:\\', -1200);"},
      {"two backslashes at the end", insert("C:\\\\"), nullptr},
      {"double quotes within", insert("B\"7"), nullptr},
      {"a value of its own", insert("a', 'b"), "4 values for 3 columns"},
      {"a sum of texts", insert("a'-'b"), nullptr},
      {"texts side by side", insert("a' 'b"), nullptr},
      {"a number behind", insert("4'5"), "a value ends early in CS_SANGHO, before 5', -1200);"},
      {"a comment", insert("a'#"), "the statement ends early in CS_SANGHO"},
      {"an early end", insert("a');"), "2 values for 3 columns"},
      {"comparison words", insert("a' NOT LIKE 'b' is not null or CS_PRICE div 'c"), nullptr},
      {"an unknown name", insert("a'-b-'"), "unexpected in CS_SANGHO: b-'', -1200);"},
      {"too deep", insert("a'-" + std::string(100000, '(') + "'"),
       "nested too deep at ((((((((((((((((((((((((…"},
      {"Hangul cut",
       insert("a\\'\xB0\xA1'\xB0\xA1\xB0\xA1\xB0\xA1\xB0\xA1\xB0\xA1\xB0\xA1\xB0\xA1\xB0\xA1"),
       "a value ends early in CS_SANGHO, before 가가가가가가가가…"},
      {"delete", "Delete FROM OutGoItemTB WHERE OI_IDSERIAL = 'a'   And OI_GROUP ='b';", nullptr},
      {"delete broken", "Delete From CustomerTB  Where CT_GROUP = 'a\\'b'c'   And CT_SANGHO = '';",
       "a value ends early, before c'   And CT_SANGHO = '';"},
      {"no semicolon", "Delete From CustomerTB  Where CT_GROUP = 'a'", nullptr},
      {"two statements", "Delete From CustomerTB Where CT_GROUP = 'a'; Delete",
       "unexpected: Delete"},
      {"another table", "Delete From Users Where U = 1;",
       "the server has no table Users Where U = 1;"},
      {"another column", "Insert Into CardItemTB (CI_S_ID, SL_ID) Values (1, 2);",
       "no column of CardItemTB: SL_ID) Values (1, 2);"},
      {"another shape", "Update CardItemTB set CI_S_ID = 1",
       "neither DELETE nor INSERT, but Update CardItemTB set CI…"},
      {"missing value", "Insert Into CardItemTB (CI_S_ID, CI_DAY) Values (1, );",
       "unexpected in CI_DAY: );"},
      {"cut off", "Insert Into CardItemTB (CI_S_ID, CI_DAY) Values (1, 'x'",
       "the statement ends early in CI_DAY"},
      {"empty line", "", "neither DELETE nor INSERT, but "},
  };
  for (const auto& row : rows) {
    const auto reason = checkStatement(row.statement);
    EXPECT_EQ(reason.value_or("taken"), row.reason == nullptr ? "taken" : row.reason) << row.name;
  }
}

}  // namespace
