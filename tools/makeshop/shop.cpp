#include "makeshop/shop.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "jetcreate/file_builder.h"
#include "makeshop/config_tables.h"
#include "makeshop/data_tables.h"
#include "makeshop/outgo_tables.h"
#include "makeshop/sale.h"
#include "makeshop/saved_queries.h"
#include "platform/code_page.h"
#include "platform/files.h"
#include "values/runtime_error.h"

namespace makeshop {
namespace {

constexpr std::array kFiles = {"data.mdb", "config.mdb", "outgo.mdb", "config.ini"};
constexpr const char* kStatementFolder = "AutoLoadData";

// Sales of the first days lack the upload marks: they were written before the columns existed.
constexpr int kDaysBeforeMarks = 2;

void refuseExisting(const std::string& folder) {
  for (const char* name : kFiles) {
    const std::string path = platform::joinPath(folder, name);
    if (platform::fileExists(path)) {
      throw RuntimeError(error::kFileExists, "'" + path + "' is there already; nothing was made");
    }
  }
}

void writeProfile(const std::string& path) {
  constexpr std::string_view kProfile =
      "[경영자]\r\nSvrDbName=melauth\r\nGroup=A01\r\n상호=한빛식당\r\n대표자=김대표\r\n"
      "[연결]\r\nODBCcustomer=False\r\n[NewType]\r\nApplyDCinRO=False\r\n";
  platform::createEmptyFile(path);
  platform::appendToFile(path, CodePage(kKoreanCodePage).fromUtf8(kProfile));
}

// The day's number of sales, at most a fifth above or below the average.
int salesOf(Random& random, const Options& options) {
  const int spread = options.salesPerDay / 5;
  return options.salesPerDay + random.between(-spread, spread);
}

void writeDatabases(const Options& options) {
  const jetcreate::FileBuilder::Options creation{.format = options.format,
                                                 .codePage = kKoreanCodePage,
                                                 .created = {static_cast<double>(options.firstDay)},
                                                 .compressTexts = options.compressTexts};
  jetcreate::FileBuilder dataBuilder(platform::joinPath(options.folder, "data.mdb"), creation);
  jetcreate::FileBuilder configBuilder(platform::joinPath(options.folder, "config.mdb"), creation);
  jetcreate::FileBuilder outgoBuilder(platform::joinPath(options.folder, "outgo.mdb"), creation);

  Random random(options.seed);
  Texts texts(random, options.plain);
  DataFile data(dataBuilder, options);
  ConfigFile config(configBuilder, options, random, texts);
  OutgoFile outgo(outgoBuilder, options);
  SaleMaker maker(random, options);
  for (int i = 0; i < options.days; ++i) {
    const std::int32_t day = options.firstDay + i;
    for (int sales = salesOf(random, options); sales > 0; --sales) {
      const SaleWithItems made = maker.next(day);
      data.addSale(made, i < kDaysBeforeMarks);
      config.addSale(made.sale);
    }
    data.addDay(random, texts, day);
    config.addDay(day);
    outgo.addDay(random, texts, day);
  }
  config.finishCustomers();
  addDataQueries(dataBuilder);
  addConfigQueries(configBuilder);
  for (jetcreate::FileBuilder* builder : {&dataBuilder, &configBuilder, &outgoBuilder}) {
    builder->finish();
  }
}

void removeFiles(const std::string& folder) {
  for (const char* name : kFiles) {
    const std::string path = platform::joinPath(folder, name);
    if (platform::fileExists(path)) platform::deleteFile(path);
  }
}

}  // namespace

void makeShop(const Options& options) {
  if (!platform::folderExists(options.folder)) {
    platform::createFolder(options.folder);
  }
  refuseExisting(options.folder);
  try {
    writeDatabases(options);
    writeProfile(platform::joinPath(options.folder, "config.ini"));
    const std::string statements = platform::joinPath(options.folder, kStatementFolder);
    if (!platform::folderExists(statements)) platform::createFolder(statements);
  } catch (const RuntimeError&) {
    removeFiles(options.folder);
    throw;
  }
}

}  // namespace makeshop
