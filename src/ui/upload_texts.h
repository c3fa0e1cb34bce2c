// The upload window's fixed texts. Leading blanks are part of them.
#pragma once

#include <array>

#include "ui/upload_view.h"

namespace ui::text {

constexpr const char* kTitle = " 일일 결산 자료 업로드";
constexpr const char* kHeading = " ◎  일자별 자료 업로드  ◎";  // SSPanel6
constexpr const char* kDayLabel = "결산 일자";                 // SSPanel5
constexpr const char* kDesignDay = "2007/06/06";               // sspFrom and sspTo before the load
constexpr const char* kCalendarHint = "클릭을 하시면 달력이 나타납니다.";  // cmdCalendar
constexpr const char* kUntickAll = "전체해제";                             // SSCommand3
constexpr const char* kStart = "업로드 Start";                             // cmdStart

// Captions of our own choice; only these may have a shortcut.
constexpr const char* kTickAll = "전체선택(&A)";   // SSCommand1
constexpr const char* kCalendar = "달력(&C)";      // cmdCalendar
constexpr const char* kSetFrom = "시작일자(&F)";   // sspFromB
constexpr const char* kSetTo = "종료일자(&T)";     // sspToB
constexpr const char* kSetToday = "오늘(&N)";      // sspCurrent
constexpr const char* kHideCalendar = "닫기(&H)";  // SSPanel9
constexpr const char* kEnd = "종료(&X)";           // cmdEnd

constexpr std::array<const char*, kBoxCount> kBoxes = {
    " 일자별 매출 자료",   " 일자별 카드매출 자료",  " 일자별 지급관련 자료",
    " 고객관련 전체 자료", " 일자별 고객 매출 자료", " 일자별 결산 자료",
    " 직원 출퇴근 자료",
};

}  // namespace ui::text
