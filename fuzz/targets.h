// What the fuzzer calls: one function for each kind of bytes that come from outside.
//
//   fuzz::runJetSql("SELECT * FROM Items WHERE id = 5");   // true
//   fuzz::runJetSql("SELECT");                             // false: refused, and that is right
//
// True where the input was taken as good. Bad input is a RuntimeError, which a target takes
// for an answer; any other exception, a broken requirement, a sanitizer's report, and more time or
// memory than fuzz/run allows are findings, and end the process.
//
// Seeds are good inputs, which a search begins with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

using Seeds = std::vector<std::string>;

// A damaged Jet file: judged by jetcheck, read whole by the engine, its saved queries run. The
// input is a jet_damage.h text.
bool readJetFile(std::string_view input);
[[nodiscard]] Seeds jetFileSeeds();

// A damaged Jet file in which rows are marked, and grow: what jetcheck finds whole stays whole. The
// input is a jet_damage.h text.
bool markRows(std::string_view input);

// A text of Jet SQL on a small file, run twice: the second time from the cache of statements.
bool runJetSql(std::string_view input);
[[nodiscard]] Seeds jetSqlSeeds();

// The bytes of a config.ini: every key that the program reads, and one that it writes.
bool readProfile(std::string_view input);
[[nodiscard]] Seeds profileSeeds();

// The bytes of a statement file: quenbrookctl's check and finish.
bool judgeStatements(std::string_view input);
[[nodiscard]] Seeds statementSeeds();

// What an FTP server answers while a file is sent to it and renamed; scripted_server.h.
bool sendToServer(std::string_view input);
[[nodiscard]] Seeds serverSeeds();

struct Target {
  std::string_view name;
  bool (*run)(std::string_view input);
  Seeds (*seeds)();
};

constexpr Target kTargets[] = {
    {"jet_file", readJetFile, jetFileSeeds},
    {"jet_mark", markRows, jetFileSeeds},
    {"jet_sql", runJetSql, jetSqlSeeds},
    {"profile", readProfile, profileSeeds},
    {"statements", judgeStatements, statementSeeds},
    {"ftp_replies", sendToServer, serverSeeds},
};

}  // namespace fuzz
