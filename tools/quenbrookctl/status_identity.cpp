#include "platform/files.h"
#include "platform/find_file.h"
#include "status_parts.h"

void addIdentity(Report& report, const InstalledShop& shop) {
  const auto& values = shop.start.values;
  const std::string& folder = shop.program.folder;
  report.sections.push_back(
      {"shop",
       "매장",
       {{"group", "그룹 코드", values.shop.group},
        {"trade_name", "상호", values.shop.tradeName},
        {"representative", "대표자", values.shop.representative},
        {"program_folder", "프로그램 폴더", folder},
        {"database_folder", "자료 폴더", platform::parentFolder(values.dataPath)}}});
  if (!shop.ready()) {
    report.problems.emplace_back(
        "시작할 수 없습니다: config.ini가 없거나 읽을 수 없거나, data.mdb가 없습니다.");
    return;
  }
  if (values.shop.group.empty()) {
    report.problems.emplace_back("config.ini의 [경영자] Group이 비어 있습니다.");
  }
  if (values.shop.tradeName.empty()) {
    report.problems.emplace_back("config.ini의 [경영자] 상호가 비어 있습니다.");
  }
  for (const std::string& path : {values.configurationPath, values.outgoPath}) {
    if (!platform::fileExists(path)) report.problems.push_back("파일이 없습니다: " + path);
  }
  // The settlement reads the program folder's files, whatever the configured folder is.
  for (const char* name : {"config.mdb", "data.mdb", "outgo.mdb"}) {
    if (!platform::fileExists(platform::findFile(folder, name))) {
      report.problems.push_back(std::string("결산에 쓰는 파일이 프로그램 폴더에 없습니다: ") +
                                name);
    }
  }
}
