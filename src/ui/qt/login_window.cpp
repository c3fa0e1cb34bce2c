#include "ui/qt/login_window.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/appearance.h"
#include "ui/login_texts.h"
#include "ui/upload_texts.h"

namespace ui::qt {
namespace {

constexpr int kPictureSize = 64;    // pixels; shown smaller
constexpr QChar kSyllable(0xD55C);  // as wide as any

// The picture of a button: a white sign on a transparent ground.
QIcon drawSign(QChar sign, int size) {
  QPixmap picture(size, size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  QFont font = painter.font();
  font.setPixelSize(size * 3 / 4);
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(toQt(kSignText));
  painter.drawText(picture.rect(), Qt::AlignCenter, sign);
  return QIcon(picture);
}

}  // namespace

LoginWindow::LoginWindow(Application& application)
    : application_(application),
      label4_(makeHeading(this, "Label4", text::kTitle)),
      cmdChange_(new Button(this, "cmdChange", text::kChangePassword)),
      cmdCancel_(new Button(this, "cmdCancel", text::kCancel)),
      cmdLogin_(new Button(this, "cmdLogin", text::kLogin)) {
  setObjectName("로그인");
  setWindowTitle(text::kLogin);
  pictures_ = {makePicture("SSPanel1", "Image1", QChar(0x2713), text::kLogin),
               makePicture("SSPanel2", "Image3", QChar(0x00D7), text::kCancel)};
  fields_ = {makeField("txtSangho"), makeField("txtLogin"), makeField("txtPW")};
  field(LoginField::kTxtPW).setEchoMode(QLineEdit::Password);
  layOut();
  for (const auto each : {LoginPicture::kImage1, LoginPicture::kImage3}) {
    setPanelColour(each, PanelColour::kReleased);
  }
}

QLineEdit* LoginWindow::makeField(const char* name) {
  auto* edit = new QLineEdit(this);
  edit->setObjectName(name);
  return edit;
}

LoginWindow::Picture LoginWindow::makePicture(const char* panelName, const char* imageName,
                                              QChar sign, const char* action) {
  auto* panel = new QFrame(this);
  panel->setObjectName(panelName);
  panel->setFrameStyle(QFrame::Panel | QFrame::Raised);
  panel->setAutoFillBackground(true);
  auto* image = new QToolButton(panel);
  image->setObjectName(imageName);
  image->setAccessibleName(action);
  image->setToolTip(action);
  image->setAutoRaise(true);
  image->setFocusPolicy(Qt::NoFocus);
  image->setIcon(drawSign(sign, kPictureSize));
  auto* layout = new QHBoxLayout(panel);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->addWidget(image);
  return {panel, image};
}

void LoginWindow::layOut() {
  auto* fields = new QFormLayout;
  const std::array captions = {text::kTradeName, text::kLoginId, text::kPassword};
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    auto* label = makeLabel(this, "", captions[i]);
    label->setBuddy(fields_[i]);
    fields->addRow(label, fields_[i]);
  }
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(pictures_[0].panel);
  buttons->addWidget(cmdLogin_, 1);
  buttons->addSpacing(12);
  buttons->addWidget(pictures_[1].panel);
  buttons->addWidget(cmdCancel_, 1);
  buttons->addSpacing(12);
  buttons->addWidget(cmdChange_);

  auto* content = new QVBoxLayout;
  content->addLayout(fields);
  content->addLayout(buttons);

  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->setSpacing(0);
  whole->setSizeConstraint(QLayout::SetFixedSize);
  whole->addWidget(label4_);
  whole->addLayout(content);

  setTabs({fields_[0], fields_[1], fields_[2], cmdLogin_, cmdCancel_, cmdChange_});
  fields_[0]->setFocus();
}

void LoginWindow::applyFont() {
  enlarge(label4_, kHeadingFont);
  const int letter = fontMetrics().height();
  label4_->setMargin(letter / 2);
  for (auto* edit : fields_) {
    QFont font = this->font();
    font.setFamilies({QString::fromUtf8("HY헤드라인M"), font.family()});
    edit->setFont(font);
    edit->setMinimumWidth(
        edit->fontMetrics().horizontalAdvance(QString(kLoginFieldSyllables, kSyllable)));
  }
  for (const auto& each : pictures_) each.image->setIconSize({letter, letter});
  auto* content = layout()->itemAt(1)->layout();
  content->setContentsMargins(letter * 3 / 2, letter, letter * 3 / 2, letter);
  content->setSpacing(letter);
}

void LoginWindow::bind(로그인& form) {
  form_ = &form;
  const auto on = [&](auto* sender, auto signal, void (로그인::*handler)()) {
    connect(sender, signal, this, application_.guarded([&form, handler] { (form.*handler)(); }));
  };
  on(&field(LoginField::kTxtSangho), &QLineEdit::returnPressed, &로그인::txtSangho_Enter);
  on(&field(LoginField::kTxtLogin), &QLineEdit::returnPressed, &로그인::txtLogin_Enter);
  on(&field(LoginField::kTxtPW), &QLineEdit::returnPressed, &로그인::txtPW_Enter);
  on(cmdLogin_, &QPushButton::clicked, &로그인::cmdLogin_Click);
  on(cmdCancel_, &QPushButton::clicked, &로그인::cmdCancel_Click);
  on(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, &로그인::cmdCancel_Click);
  bindPicture(LoginPicture::kImage1, form, &로그인::Image1_Click);
  bindPicture(LoginPicture::kImage3, form, &로그인::Image3_Click);
}

void LoginWindow::bindPicture(LoginPicture which, 로그인& form, void (로그인::*click)()) {
  auto* image = picture(which).image;
  connect(image, &QToolButton::pressed, this, [&form, which] { form.Image_MouseDown(which); });
  connect(image, &QToolButton::released, this, [&form, which] { form.Image_MouseUp(which); });
  connect(image, &QToolButton::clicked, this,
          application_.guarded([&form, click] { (form.*click)(); }));
}

QLineEdit& LoginWindow::field(LoginField field) const {
  return *fields_.at(static_cast<std::size_t>(field));
}

const LoginWindow::Picture& LoginWindow::picture(LoginPicture picture) const {
  return pictures_.at(static_cast<std::size_t>(picture));
}

std::string LoginWindow::text(LoginField which) const { return field(which).text().toStdString(); }

void LoginWindow::clear(LoginField which) { field(which).clear(); }

void LoginWindow::setFocus(LoginField which) { field(which).setFocus(); }

void LoginWindow::setPanelColour(LoginPicture which, PanelColour colour) {
  auto* panel = picture(which).panel;
  QPalette colours = palette();
  colours.setColor(QPalette::Window, colour == PanelColour::kReleased
                                         ? toQt(kReleasedPicture)
                                         : colours.color(QPalette::HighlightedText));
  panel->setPalette(colours);
}

void LoginWindow::activated() {
  if (form_ != nullptr) form_->Form_Activate();
}

void LoginWindow::closeEvent(QCloseEvent* event) {
  if (form_ != nullptr) form_->Form_Unload();
  application_.windowClosed();
  event->accept();
}

}  // namespace ui::qt
