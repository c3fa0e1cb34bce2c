#include <cstddef>
#include <string>

#include "job/orphan.h"
#include "scratch.h"
#include "statement_check.h"
#include "targets.h"
#include "values/runtime_error.h"

namespace fuzz {
namespace {

constexpr const char* kWorking = "20130821_153045_1.tx";
constexpr const char* kFinal = "20130821_153045_1.txt";

// The file as the transfer finds it: whole statements from the beginning, nothing else changed.
void finish(const Scratch& scratch, std::string_view input) {
  scratch.write(kWorking, input);
  const job::FinishedOrphan finished = job::finishOrphan(scratch.path(""), kWorking);
  require(finished.cutOff <= input.size(), "more is cut off than there is");
  if (finished.path.empty()) return;
  const std::string sent = scratch.read(kFinal);
  require(sent == input.substr(0, input.size() - finished.cutOff), "finish changed a statement");
  require(job::wholeStatements(sent) == sent.size(), "a finished file is not whole");
  std::filesystem::remove(finished.path);
}

}  // namespace

bool judgeStatements(std::string_view input) {
  static const Scratch scratch;
  std::size_t refused = 0;
  const CheckedStatements checked =
      checkStatements(input, [&](std::size_t line, const std::string& reason) {
        require(line > 0 && !reason.empty(), "a refusal says nothing");
        ++refused;
      });
  require(checked.refused == refused, "the count of refusals is wrong");
  (void)job::describeOrphan(kWorking, input);
  finish(scratch, input);
  return refused == 0;
}

Seeds statementSeeds() {
  const std::string remove =
      "Delete FROM SellingTB  Where SL_GROUP = 'A01'   And SL_DATE >= '2013-08-01' And SL_DATE <= "
      "'2013-08-21';\r\n";
  const std::string insert =
      "Insert Into CustomerSellingTB (CS_SANGHO, CS_IDSERIAL, CS_PRICE) Values ('it\\'s', "
      "'line\r\nbreak \"x\"', -1200.50);\r\n";
  const std::string attendance =
      "Insert Into EmployeeItemTB (E_SANGHO, E_DAY) Values ('\xB0\xA1', NULL);\r\n";
  return {remove, remove + insert + attendance,
          "Delete From CustomerTB Where CT_GROUP Is Not Null And (CT_PRICE + 0x1F) * 2 <=> 1e3 Or "
          "Not CT_SANGHO Like 'a''b' /* c */; # d\r\n"};
}

}  // namespace fuzz
