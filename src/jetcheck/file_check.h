// Is a Jet file whole? Reads all of it and says what contradicts itself.
//
//   const Summary found = checkFile("/shop/data.mdb", [](const std::string& line) { ... });
//   if (found.faults == 0) use(found.rows);
//
// What is held against each other: the header; the catalogue and every definition; pages and their
// owners (usage maps of tables, indexes and long values, the file's map of free pages); every row,
// forward pointer and chain of long values; counts of rows and AutoNumbers; the order, prefixes,
// levels and chains of index pages, and entries against rows both ways.
// docs/jet-format.md says what real files are allowed.
//
// Opens for reading and takes no locks: while a program writes, its half-written changes look like
// faults. A password is not asked for: nothing in the file is encoded with it. Memory: the page
// cache and some bytes a page, whatever the size of the file.
// Errors: 53, 75, 76, 57 of opening and reading, 3343 for what is not a Jet file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "jetcheck/fault_log.h"

namespace jetcheck {

// What was reached; all of it where there are no faults.
struct Summary {
  std::size_t faults = 0;
  std::size_t tables = 0;  // those of the engine's own included
  std::size_t rows = 0;
  std::size_t indexes = 0;  // trees: those that share one count once
  std::uint32_t pages = 0;
  std::uint32_t lostPages = 0;  // in use by the map of free pages, and holding nothing: no fault
};

// Each fault goes to `sink` as a line without an end.
[[nodiscard]] Summary checkFile(const std::string& path, const FaultLog::Sink& sink);

}  // namespace jetcheck
