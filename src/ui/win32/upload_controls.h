// The numbers by which the upload window's controls report.
#pragma once

namespace ui::win32 {

enum UploadControl : int {
  kSSPanel6 = 100,
  kSSPanel5,
  kSspFrom,
  kSspTo,
  kCmdCalendar,
  kLbDelegate,
  kLbNow,
  kFCalendar,
  kMonthView1,
  kSspFromB,
  kSspToB,
  kSspCurrent,
  kSSPanel9,
  kBoxes,
  kSSCommand1,
  kSSCommand3,
  kSspRem,
  kBar,
  kLbVerdict,
  kLbWaiting,
  kCmdSend,
  kCmdStart,
  kCmdEnd,
  kChk1 = 200,  // and six after it
};

}  // namespace ui::win32
