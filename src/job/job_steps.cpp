#include "job/job_steps.h"

#include "extract/extractors.h"
#include "settlement/get_daily.h"

namespace job {

std::vector<Step> jobSteps(const lib_결산::Dependencies& settlement) {
  const auto settle = [&settlement](extract::Workspace& work) {
    settlement::GetDaily(work, settlement, work.days.first, work.days.last);
  };
  // The spellings and blanks are those that the shops' logs have always had. Box 3, all customer
  // data, has no row.
  return {
      {0, "Selling Start ", "Selling End ", extract::자료수집, "매출"},
      {1, "CardItem Start ", "CardItem End ", extract::카드매출, "카드매출"},
      {2, "OurgoItem Start ", "OutGoItem End ", extract::아웃고수집, "지급"},
      {4, "Customer_Selling_Sum  Start ", "Customer_Selling_Sum End ", extract::고객매출자료수집,
       "고객매출"},
      {6, "Employee_item  Start ", "Employee_Item End ", extract::직원출퇴근자료수집, "출퇴근"},
      {5, "DailyData Start..From : ", "DailyData End ", settle, "결산", StepKind::kSettlement},
  };
}

}  // namespace job
