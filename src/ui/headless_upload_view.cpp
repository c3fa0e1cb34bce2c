#include <iostream>

#include "ui/upload_view.h"

namespace ui {

void HeadlessUploadView::setProgress(const std::string& text) {
  if (!text.empty()) std::cout << text << std::endl;
}

}  // namespace ui
