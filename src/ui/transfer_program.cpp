#include <set>
#include <utility>

#include "platform/files.h"
#include "transfer/upload_file_name.h"
#include "ui/background_transfer.h"
#include "values/runtime_error.h"

namespace ui {

TransferProgram::TransferProgram(std::string programFolder) : folder_(std::move(programFolder)) {}

// A statement file and its compressed form, name.txt and name.txt.gz, count once.
std::size_t TransferProgram::waiting() const {
  constexpr std::size_t kCompressed = 3;  // ".gz"
  std::set<std::string> names;
  try {
    for (auto& entry : platform::listFolder(platform::joinPath(folder_, "AutoLoadData"))) {
      const bool compressed = entry.name.ends_with(".gz");
      if (entry.isFolder || !(compressed || transfer::IsUploadFileName(entry.name))) continue;
      if (compressed) entry.name.resize(entry.name.size() - kCompressed);
      names.insert(std::move(entry.name));
    }
  } catch (const RuntimeError&) {
    return 0;
  }
  return names.size();
}

void TransferProgram::start() {
  child_.emplace(platform::joinPath(folder_, "quenbrookctl"),
                 std::vector<std::string>{"--home", folder_, "transfer"});
}

}  // namespace ui
