// The upload window's controls and their layout.
#include <algorithm>
#include <utility>

#include "ui/upload_texts.h"
#include "ui/win32/upload_controls.h"
#include "ui/win32/upload_window.h"

namespace ui::win32 {
namespace {

constexpr const char* kLongestMoment = "2007/06/06 00:00:00";

}  // namespace

UploadWindow::UploadWindow(Application& application)
    : Window(application, text::kTitle, Border::kSizable),
      ssPanel6_(makeLabel(text::kHeading, kSSPanel6)),
      ssPanel5_(makeLabel(text::kDayLabel, kSSPanel5)),
      sspFrom_(makePanel(text::kDesignDay, kSspFrom)),
      tilde_(makeLabel("~")),
      sspTo_(makePanel(text::kDesignDay, kSspTo)),
      cmdCalendar_(makeButton(text::kCalendar, kCmdCalendar)),
      lbDelegate_(makeLabel("", kLbDelegate, SS_NOPREFIX | SS_ENDELLIPSIS | SS_NOTIFY)),
      lbNow_(makeLabel(kLongestMoment, kLbNow, SS_RIGHT)),
      fCalendar_(makeControl(WC_BUTTONW, "", BS_GROUPBOX, kFCalendar)),
      monthView1_(
          makeControl(MONTHCAL_CLASSW, text::kCalendarName, MonthCalendar::kStyle, kMonthView1)),
      sspFromB_(makeButton(text::kSetFrom, kSspFromB)),
      sspToB_(makeButton(text::kSetTo, kSspToB, Group::kSame)),
      sspCurrent_(makeButton(text::kSetToday, kSspCurrent, Group::kSame)),
      sspPanel9_(makeButton(text::kHideCalendar, kSSPanel9, Group::kSame)),
      boxes_(makeControl(WC_BUTTONW, text::kBoxesName, BS_GROUPBOX, kBoxes)),
      question_(application, handle(), text::kTitle) {
  for (int index = 0; index < kBoxCount; ++index) {
    const auto at = static_cast<std::size_t>(index);
    const DWORD first = index == 0 ? WS_GROUP : 0;
    chk1_.at(at) = makeControl(WC_BUTTONW, text::kBoxes.at(at),
                               BS_AUTOCHECKBOX | WS_TABSTOP | first, kChk1 + index);
  }
  ssCommand1_ = makeButton(text::kTickAll, kSSCommand1);
  ssCommand3_ = makeButton(text::kUntickAll, kSSCommand3, Group::kSame);
  sspRem_ = makePanel("", kSspRem);
  bar_ = makeControl(PROGRESS_CLASSW, text::kProgressName, 0, kBar);
  lbVerdict_ = makeControl(WC_STATICW, "", SS_NOPREFIX | SS_NOTIFY, kLbVerdict);
  lbWaiting_ = makeLabel("", kLbWaiting);
  cmdSend_ = makeButton(text::kSend, kCmdSend);
  cmdStart_ = makeButton(text::kStart, kCmdStart);
  cmdEnd_ = makeButton(text::kEnd, kCmdEnd);
  SendMessageW(bar_, PBM_SETRANGE32, 0, kBarSteps);
  ShowWindow(bar_, SW_HIDE);
  EnableWindow(cmdSend_, FALSE);
  setHint(cmdCalendar_, text::kCalendarHint);
  setCalendarVisible(false);
}

void UploadWindow::applyFonts() {
  give(fonts().plain(), {ssPanel5_, tilde_, cmdCalendar_, lbNow_, monthView1_.control(), sspFromB_,
                         sspToB_, sspCurrent_, sspPanel9_, fCalendar_, boxes_, ssCommand1_,
                         ssCommand3_, sspRem_, lbWaiting_, cmdSend_, cmdEnd_});
  give(fonts().plain(), chk1_);
  give(fonts().bold(kHeadingFont), {ssPanel6_});
  give(fonts().bold(kStartFont), {cmdStart_});
  give(fonts().bold(kDayFont), {sspFrom_, sspTo_});
  give(fonts().bold(kBoldFont), {lbDelegate_, lbVerdict_});
}

Layout UploadWindow::datesLayout() {
  Layout dates = Layout::row(letter() / 2);
  dates.add(ssPanel5_, sizeOf(ssPanel5_, 0, 0.5));
  dates.add(sspFrom_, sizeOf(sspFrom_, 1, 0.5));
  dates.add(tilde_, sizeOf(tilde_, 0, 0.5));
  dates.add(sspTo_, sizeOf(sspTo_, 1, 0.5));
  dates.add(cmdCalendar_, sizeOf(cmdCalendar_, 2, 0.7));
  dates.add(lbDelegate_, {letter() * kGroupLetters, letter()}, 1);
  dates.add(lbNow_, {textSizeIn(lbNow_, wide(kLongestMoment)).cx + letter() / 4, letter()});
  return dates;
}

Layout UploadWindow::boxesLayout() {
  Layout boxes = Layout::column(letter() / 3);
  boxes.add(nullptr, {0, letter() / 2});  // the frame's caption
  for (HWND box : chk1_) boxes.add(box, sizeOf(box, 2, 0.3));
  boxes.addStretch();
  Layout buttons = Layout::row(letter() / 2);
  buttons.add(ssCommand1_, buttonSize(ssCommand1_)).add(ssCommand3_, buttonSize(ssCommand3_));
  boxes.add(std::move(buttons.addStretch())).withMargins(letter() / 2, letter() / 2, boxes_);
  return boxes;
}

Layout UploadWindow::calendarLayout() {
  Layout buttons = Layout::row(letter() / 3);
  for (HWND button : {sspFromB_, sspToB_, sspCurrent_, sspPanel9_}) {
    buttons.add(button, buttonSize(button), 1);
  }
  Layout calendar = Layout::column(letter() / 3);
  calendar.add(nullptr, {0, letter() / 4}).add(monthView1_.control(), monthView1_.size(), 1);
  calendar.add(std::move(buttons)).withMargins(letter() / 2, letter() / 2, fCalendar_);
  return calendar;
}

Layout UploadWindow::endsLayout() {
  Layout ends = Layout::row(letter() / 2);
  const LONG waiting = textSizeIn(lbWaiting_, wide(text::kWaiting) + L"9,999").cx;
  ends.add(lbWaiting_, {waiting + letter() * 2, letter()});
  ends.add(cmdSend_, buttonSize(cmdSend_)).addStretch();
  ends.add(cmdStart_, sizeOf(cmdStart_, 3, 1.25), 2).add(cmdEnd_, sizeOf(cmdEnd_, 3, 1.25), 1);
  return ends;
}

Layout UploadWindow::layout() {
  Layout middle = Layout::row(letter() / 2);
  middle.add(boxesLayout(), 1).add(calendarLayout());

  const SIZE line = textSizeIn(sspRem_, std::wstring(kLongestProgress, L'-'));
  const LONG verdictLine = textSizeIn(lbVerdict_, L"가").cy;
  Layout content = Layout::column(letter() / 2);
  content.add(datesLayout()).add(std::move(middle), 1);
  content.add(sspRem_, {line.cx + letter(), line.cy * kProgressLines + letter() / 2});
  content.add(bar_, {0, letter() / 2});
  // Fixed, so that no verdict makes the window higher than the screen.
  content.add(lbVerdict_, {0, verdictLine * kVerdictLines + letter() / 6});
  content.add(endsLayout()).withMargins(letter(), letter() * 3 / 4);

  Layout whole = Layout::column(0);
  whole.add(ssPanel6_, sizeOf(ssPanel6_, 1, 1)).add(std::move(content), 1);
  return whole;
}

}  // namespace ui::win32
