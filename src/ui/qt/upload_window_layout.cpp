// The upload window's controls and their layout. Sizes that depend on the font are set in
// applyFont.
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/appearance.h"
#include "ui/qt/upload_window.h"
#include "ui/upload_texts.h"

namespace ui::qt {

UploadWindow::UploadWindow(Application& application)
    : application_(application),
      sspPanel6_(makeHeading(this, "SSPanel6", text::kHeading)),
      lbDelegate_(new ElidedLabel(this, "lbDelegate")),
      lbNow_(makeLabel(this, "lbNow", "")),
      sspPanel5_(makeLabel(this, "SSPanel5", text::kDayLabel)),
      sspFrom_(makePanel(this, "sspFrom", text::kDesignDay)),
      sspTo_(makePanel(this, "sspTo", text::kDesignDay)),
      cmdCalendar_(new Button(this, "cmdCalendar", text::kCalendar)),
      fCalendar_(new QFrame(this)),
      monthView1_(new MonthCalendar(fCalendar_, "MonthView1")),
      sspFromB_(new Button(fCalendar_, "sspFromB", text::kSetFrom)),
      sspToB_(new Button(fCalendar_, "sspToB", text::kSetTo)),
      sspCurrent_(new Button(fCalendar_, "sspCurrent", text::kSetToday)),
      sspPanel9_(new Button(fCalendar_, "SSPanel9", text::kHideCalendar)),
      boxes_(new QGroupBox(this)),
      ssCommand1_(new Button(boxes_, "SSCommand1", text::kTickAll)),
      ssCommand3_(new Button(boxes_, "SSCommand3", text::kUntickAll)),
      sspRem_(makePanel(this, "sspRem", "")),
      bar_(new QProgressBar(this)),
      lbVerdict_(makeLabel(this, "lbVerdict", "")),
      lbWaiting_(makeLabel(this, "lbWaiting", "")),
      cmdStart_(new Button(this, "cmdStart", text::kStart)),
      cmdSend_(new Button(this, "cmdSend", text::kSend)),
      cmdEnd_(new Button(this, "cmdEnd", text::kEnd)) {
  setObjectName("FrmQuenbrook");
  setWindowTitle(text::kTitle);
  timer1_.setObjectName("Timer1");
  cmdCalendar_->setToolTip(text::kCalendarHint);
  makeCalendar();
  makeBoxes();
  makeProgress();
  nameControls();
  layOut();
}

void UploadWindow::makeCalendar() {
  fCalendar_->setObjectName("fCalendar");
  fCalendar_->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
  auto* buttons = new QHBoxLayout;
  for (auto* button : {sspFromB_, sspToB_, sspCurrent_, sspPanel9_}) buttons->addWidget(button);
  auto* layout = new QVBoxLayout(fCalendar_);
  layout->addWidget(monthView1_);
  layout->addLayout(buttons);
  fCalendar_->hide();
}

void UploadWindow::makeBoxes() {
  auto* layout = new QVBoxLayout(boxes_);
  for (int index = 0; index < kBoxCount; ++index) {
    auto* box = new QCheckBox(text::kBoxes.at(static_cast<std::size_t>(index)), boxes_);
    box->setObjectName("chk1_" + QString::number(index));
    chk1_.at(static_cast<std::size_t>(index)) = box;
    layout->addWidget(box);
  }
  layout->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(ssCommand1_);
  buttons->addWidget(ssCommand3_);
  buttons->addStretch();
  layout->addLayout(buttons);
}

void UploadWindow::makeProgress() {
  sspRem_->setWordWrap(true);
  lbVerdict_->setTextFormat(Qt::PlainText);
  lbVerdict_->setWordWrap(true);
  lbVerdict_->setAlignment(Qt::AlignTop);
  lbVerdict_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  bar_->setObjectName("bar");
  bar_->setTextVisible(false);
  auto policy = bar_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  bar_->setSizePolicy(policy);
  bar_->hide();
}

// Captions and values are read out by themselves; these have none, or one that says too little.
void UploadWindow::nameControls() {
  bar_->setAccessibleName(text::kProgressName);
  boxes_->setAccessibleName(text::kBoxesName);
}

QLayout* UploadWindow::layOutDates() {
  auto* dates = new QHBoxLayout;
  dates->addWidget(sspPanel5_);
  dates->addWidget(sspFrom_);
  dates->addWidget(makeLabel(this, "", "~"));
  dates->addWidget(sspTo_);
  dates->addWidget(cmdCalendar_);
  dates->addWidget(lbDelegate_, 1);
  dates->addWidget(lbNow_);
  return dates;
}

QLayout* UploadWindow::layOutEnds() {
  auto* ends = new QHBoxLayout;
  ends->addWidget(lbWaiting_);
  ends->addWidget(cmdSend_);
  ends->addStretch();
  ends->addWidget(cmdStart_, 2);
  ends->addWidget(cmdEnd_, 1);
  return ends;
}

void UploadWindow::layOut() {
  auto* middle = new QHBoxLayout;
  middle->addWidget(boxes_, 1);
  middle->addWidget(fCalendar_);

  auto* content = new QVBoxLayout;
  content->setObjectName("content");
  content->addLayout(layOutDates());
  content->addLayout(middle, 1);
  content->addWidget(sspRem_);
  content->addWidget(bar_);
  content->addWidget(lbVerdict_);
  content->addLayout(layOutEnds());

  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->setSpacing(0);
  whole->addWidget(sspPanel6_);
  whole->addLayout(content, 1);

  std::vector<QWidget*> tabs = {cmdCalendar_, monthView1_->days(), sspFromB_,
                                sspToB_,      sspCurrent_,         sspPanel9_};
  tabs.insert(tabs.end(), chk1_.begin(), chk1_.end());
  tabs.insert(tabs.end(), {ssCommand1_, ssCommand3_, cmdSend_, cmdStart_, cmdEnd_});
  setTabs(tabs);
  cmdStart_->setFocus();
}

void UploadWindow::applyFont() {
  enlarge(sspPanel6_, kHeadingFont);
  enlarge(cmdStart_, kStartFont);
  enlarge(sspFrom_, kDayFont);
  enlarge(sspTo_, kDayFont);
  enlarge(lbDelegate_, kBoldFont);
  enlarge(lbVerdict_, kBoldFont);
  const auto metrics = fontMetrics();
  const int letter = metrics.height();
  sspPanel6_->setMargin(letter / 2);
  for (auto* panel : {sspFrom_, sspTo_, sspRem_}) panel->setMargin(letter / 4);
  const int margin = 2 * (sspRem_->margin() + sspRem_->frameWidth());
  // The window keeps its size when the calendar is shown and hidden, whatever the texts are.
  const auto calendar = fCalendar_->sizeHint();
  boxes_->setMinimumHeight(calendar.height());
  sspRem_->setMinimumSize(
      std::max(metrics.horizontalAdvance(QString(kLongestProgress, '-')) + margin + letter,
               boxes_->minimumSizeHint().width() + letter + calendar.width()),
      metrics.lineSpacing() * kProgressLines + margin);
  bar_->setFixedHeight(letter / 3);
  // Fixed, so that no verdict makes the window higher than the screen.
  lbVerdict_->setFixedHeight(lbVerdict_->fontMetrics().lineSpacing() * kVerdictLines + letter / 6);
  for (auto* button : {cmdStart_, cmdSend_, cmdEnd_}) {
    button->setMinimumHeight(cmdStart_->sizeHint().height() * 5 / 4);
  }
  for (const auto* frame : std::initializer_list<QWidget*>{boxes_, fCalendar_}) {
    frame->layout()->setContentsMargins(letter / 2, letter / 2, letter / 2, letter / 2);
    frame->layout()->setSpacing(letter / 3);
  }
  auto* content = layout()->itemAt(1)->layout();
  content->setContentsMargins(letter, letter * 3 / 4, letter, letter * 3 / 4);
  content->setSpacing(letter / 2);
}

}  // namespace ui::qt
