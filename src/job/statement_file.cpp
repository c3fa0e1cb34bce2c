#include "job/statement_file.h"

#include "extract/conversions.h"
#include "platform/files.h"

namespace job {

std::string workingPath(const settings::StartValues& start, const platform::LocalTime& moment) {
  const auto folder = platform::joinPath(start.programFolder, "AutoLoadData");
  const auto name = platform::formatTime(moment, platform::kFileStampFormat) + "_" +
                    extract::SqlText(values::Variant(start.shop.tradeName)) + ".tx";
  return platform::joinPath(folder, name);
}

std::string finalPath(const std::string& working) { return working + "t"; }

bool holdsStatement(std::string_view firstLine) {
  return firstLine.find("Insert") != std::string_view::npos ||
         firstLine.find("Delete") != std::string_view::npos;
}

}  // namespace job
