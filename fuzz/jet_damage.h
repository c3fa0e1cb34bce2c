// A damaged Jet file in a few bytes: which whole file it is made from, and what is changed there.
// So the fuzzer's changes reach what a reader looks at, where changes to the file's own bytes would
// mostly hit unused ones.
//
//   input = file number (1 byte), changes
//   change = kind and size (1 byte), place (3 bytes, little-endian), operand
//
//   kind (upper 4 bits)  operand, n = lower 4 bits + 1
//   0 to 11  n bytes     written at the place
//   12       3 bytes     place of a page that is copied over the place's page
//   13                   the file ends at the place
//   14                   4 * n bytes of zero from the place on
//   15                   n pages of zeros after the last one
//
// A place counts the bytes of the whole file without its longer runs of zeros, and begins again
// after the last one. A change that the input ends in is left out.
#pragma once

#include <string>
#include <string_view>

namespace fuzz {

// How many whole files there are.
[[nodiscard]] std::size_t wholeFiles();

[[nodiscard]] std::string damagedFile(std::string_view input);

}  // namespace fuzz
