// The upload window's fixed texts. Leading blanks are part of them.
#pragma once

#include <array>
#include <string>

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
constexpr const char* kSend = "지금 전송(&S)";     // cmdSend

// How a job or a transfer ended. A job only makes a file; sending it is the transfer's.
constexpr const char* kNotSentYet = "본사에는 아직 보내지 않았습니다.";
constexpr const char* kRecords = "건";
constexpr const char* kDays = "일";
constexpr const char* kFailures = "실패 ";
constexpr const char* kJobLog = " - 작업 기록 ";
constexpr const char* kReasons = ", 까닭 ";
constexpr const char* kSending = "본사로 보내는 중입니다.";
constexpr const char* kTransferPassed = "모두 본사로 보냈습니다.";
constexpr const char* kTransferFailed = "보내지 못한 자료가 있습니다. ";
constexpr const char* kWaiting = "전송 대기 ";
constexpr const char* kPieces = "개";
constexpr const char* kCloseAfterJob = "작업이 진행 중입니다. 작업이 끝나면 프로그램을 종료할까요?";
constexpr const char* kCloseAfterTransfer =
    "전송이 진행 중입니다. 전송이 끝나면 프로그램을 종료할까요?";
constexpr const char* kYes = "예(&Y)";
constexpr const char* kNo = "아니요(&N)";

// Names for screen readers, and hints, of controls without a caption.
constexpr const char* kCalendarName = "달력";
constexpr const char* kMonthFormat = "yyyy년 M월";  // in Qt's letters
constexpr const char* kMonthBefore = "이전 달";
constexpr const char* kMonthAfter = "다음 달";
constexpr const char* kGroupName = "그룹 코드";   // lbDelegate
constexpr const char* kNowName = "현재 시각";     // lbNow
constexpr const char* kFromName = "시작일자";     // sspFrom
constexpr const char* kToName = "종료일자";       // sspTo
constexpr const char* kBoxesName = "보낼 자료";   // the frame of chk1
constexpr const char* kProgressName = "진행률";   // the bar
constexpr const char* kStatusName = "진행 내용";  // sspRem

constexpr std::array<const char*, kBoxCount> kBoxes = {
    " 일자별 매출 자료",   " 일자별 카드매출 자료",  " 일자별 지급관련 자료",
    " 고객관련 전체 자료", " 일자별 고객 매출 자료", " 일자별 결산 자료",
    " 직원 출퇴근 자료",
};

}  // namespace ui::text
