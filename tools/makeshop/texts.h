// The words of a sample shop: menus, names, notes.
//
//   Texts texts(random, options.plain);
//   std::string note = texts.note();
//
// Without --plain many names and notes hold characters that are hard to send to the server:
// apostrophes (one or two), backslashes, a character that code page 949 lacks.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "makeshop/random.h"

namespace makeshop {

struct MenuGroup {
  std::int32_t id = 0;
  const char* name = "";
  const char* plainName = "";
};

struct Menu {
  std::int32_t id = 0;
  std::int32_t group = 0;
  const char* name = "";
  std::int32_t price = 0;  // won
  std::int32_t cost = 0;
};

[[nodiscard]] const std::array<MenuGroup, 5>& menuGroups();
[[nodiscard]] const std::array<Menu, 18>& menus();
[[nodiscard]] const std::array<const char*, 6>& cardKinds();

class Texts {
 public:
  Texts(Random& random, bool plain) : random_(random), plain_(plain) {}

  [[nodiscard]] std::string hall();  // the part of the restaurant
  [[nodiscard]] std::string person();
  [[nodiscard]] std::string company();
  [[nodiscard]] std::string note();     // empty in most cases
  [[nodiscard]] std::string history();  // of a sale: nothing, some words, or pages
  [[nodiscard]] std::string phonePart(int digits);

 private:
  Random& random_;
  bool plain_;
};

}  // namespace makeshop
