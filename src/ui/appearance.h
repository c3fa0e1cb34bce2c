// How the windows look with every toolkit: colours, sizes in characters and in factors of the
// system's font, and places on the screen.
//
//   const auto size = ui::fitInLargestFont([&](double factor) { return sizeInFont(factor); },
//                                          [&](const QSize& size) { return fits(size, room); });
//   const ui::Area place = ui::placeBeside(window, box, screen);   // all in pixels
#pragma once

#include <chrono>

namespace ui {

struct Colour {
  int red;
  int green;
  int blue;
};
constexpr Colour kHeadingText{255, 255, 255};
constexpr Colour kHeadingGround{47, 72, 88};
constexpr Colour kPassedText{22, 120, 52};
constexpr Colour kFailedText{176, 32, 24};  // and the days of a reversed range
constexpr Colour kSignText{255, 255, 255};  // of the login's pictures
constexpr Colour kReleasedPicture{250, 129, 107};

// Factors of the window's font; these controls are bold.
constexpr double kHeadingFont = 1.3;
constexpr double kStartFont = 1.15;
constexpr double kDayFont = 1.1;
constexpr double kBoldFont = 1.0;

// In characters and lines.
constexpr int kLoginFieldSyllables = 16;
constexpr int kGroupLetters = 6;      // of the group code, where the window is no wider than needed
constexpr int kLongestProgress = 88;  // of the line that ends a job
constexpr int kProgressLines = 2;
constexpr int kVerdictLines = 3;

constexpr int kBarSteps = 1000;
constexpr std::chrono::milliseconds kTransferPoll{200};

constexpr const char* kMessageTitle = "Quenbrook";  // of a message without one

// Factors of the system's font. A till's screen is read standing, at arm's length; on a small
// screen a small font is better than controls that are out of reach.
constexpr double kLargestFont = 1.15;
constexpr double kSmallestFont = 0.4;
constexpr double kFontStep = 0.05;

// The size of a window in the largest font in which it fits, or in the smallest one. `sizeInFont`
// sets the font to a factor of the system's and returns the window's size in it.
template <typename SizeInFont, typename Fits>
[[nodiscard]] auto fitInLargestFont(const SizeInFont& sizeInFont, const Fits& fits) {
  double factor = kLargestFont;
  auto size = sizeInFont(factor);
  while (factor > kSmallestFont && !fits(size)) {
    factor -= kFontStep;
    size = sizeInFont(factor);
  }
  return size;
}

struct Area {
  int left;
  int top;
  int width;
  int height;
};

// Where a box of the size of `box` lies beside the window rather than over it, so that the field
// that it is about stays visible: below, above, to the right, to the left, wherever there is room
// on the screen. Without room it lies over the window's lower edge, where its buttons are.
[[nodiscard]] Area placeBeside(const Area& window, const Area& box, const Area& screen);

}  // namespace ui
