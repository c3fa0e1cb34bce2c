#include "makeshop/options.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "values/date_time.h"
#include "values/runtime_error.h"
#include "values/variant.h"

namespace makeshop {
namespace {

constexpr int kMaxDays = 3660;
constexpr int kMaxSales = 5000;

[[noreturn]] void refuse(const std::string& reason) {
  throw RuntimeError(error::kInvalidCall, reason + " (see --help)");
}

template <typename T>
T number(const std::string& option, const std::string& text, T least, T most) {
  T value{};
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (fault != std::errc() || end != text.data() + text.size() || value < least || value > most) {
    refuse(option + ": '" + text + "' is no whole number from " + std::to_string(least) + " to " +
           std::to_string(most));
  }
  return value;
}

std::int32_t day(const std::string& option, const std::string& text) {
  const auto date = values::parseDate(text);
  if (!date || date->serial != std::floor(date->serial) || date->serial < 1 ||
      date->serial > values::daySerial(2100, 1, 1)) {
    refuse(option + ": '" + text + "' is no date of the form yyyy-MM-dd up to 2100");
  }
  return static_cast<std::int32_t>(date->serial);
}

// A value of an option that is one of a few words.
template <typename T>
T oneOf(const std::string& option, const std::string& word,
        const std::vector<std::pair<std::string_view, T>>& words) {
  std::string known;
  for (const auto& [name, value] : words) {
    if (name == word) return value;
    known += (known.empty() ? "" : ", ") + std::string(name);
  }
  refuse(option + ": '" + word + "' is none of " + known);
}

void takeValue(const std::string& option, const std::string& value, Options& options) {
  using jet::FileFormat;
  if (option == "--format") {
    options.format = oneOf<FileFormat>(option, value,
                                       {{"jet3", FileFormat::kJet3},
                                        {"jet4", FileFormat::kJet4},
                                        {"accdb", FileFormat::kAce12},
                                        {"accdb14", FileFormat::kAce14}});
  } else if (option == "--texts") {
    options.compressTexts = oneOf<bool>(option, value, {{"compressed", true}, {"utf16", false}});
  } else if (option == "--days") {
    options.days = number(option, value, 1, kMaxDays);
  } else if (option == "--sales-per-day") {
    options.salesPerDay = number(option, value, 0, kMaxSales);
  } else if (option == "--from") {
    options.firstDay = day(option, value);
  } else {
    options.seed = number<std::uint64_t>(option, value, 0, UINT64_MAX);
  }
}

bool takesValue(const std::string& option) {
  return option == "--format" || option == "--texts" || option == "--days" ||
         option == "--sales-per-day" || option == "--from" || option == "--seed";
}

}  // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  options.firstDay = values::daySerial(2013, 8, 1);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (takesValue(argument)) {
      if (++i == arguments.size()) refuse(argument + " lacks its value");
      takeValue(argument, arguments[i], options);
    } else if (argument == "--no-indexes") {
      options.indexes = false;
    } else if (argument == "--no-item-day-index") {
      options.itemDayIndex = false;
    } else if (argument == "--whole-amounts") {
      options.wholeAmounts = true;
    } else if (argument == "--plain") {
      options.plain = true;
    } else if (argument == "--help") {
      options.help = true;
    } else if (argument == "--version") {
      options.version = true;
    } else if (argument.starts_with("-") || !options.folder.empty()) {
      refuse("'" + argument + "' is not understood");
    } else {
      options.folder = argument;
    }
  }
  if (options.folder.empty() && !options.help && !options.version) refuse("no folder is named");
  return options;
}

const char* usage() {
  return "usage: makeshop DIR [options]\n"
         "\n"
         "Makes a sample shop in the folder DIR: data.mdb, config.mdb, outgo.mdb, config.ini and\n"
         "AutoLoadData. The same options make the same files, byte for byte.\n"
         "\n"
         "  --days N            days of business (21)\n"
         "  --sales-per-day N   sales a day on the average (30)\n"
         "  --from DATE         first day, yyyy-MM-dd (2013-08-01)\n"
         "  --seed N            another number, another shop (1)\n"
         "  --no-indexes        no index on the sale id of items, nor on any day\n"
         "  --no-item-day-index no index on the day of items\n"
         "  --whole-amounts     amounts of sales and items are Long instead of Currency\n"
         "  --format F          jet3 (Access 97), jet4 (2000), accdb (2007), accdb14 (2010); the "
         "files\n"
         "                      keep their names (jet4)\n"
         "  --texts T           compressed where that is shorter, as Access makes its text fields, "
         "or\n"
         "                      utf16 throughout, as CREATE TABLE does; not in jet3 (compressed)\n"
         "  --plain             texts without apostrophes, backslashes and foreign characters\n"
         "  --help, --version\n";
}

}  // namespace makeshop
