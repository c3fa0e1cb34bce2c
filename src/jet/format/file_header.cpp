#include "jet/format/file_header.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "jet/format/bytes.h"
#include "jet/format/rc4.h"
#include "jet/format/text_codec.h"
#include "platform/code_page.h"
#include "values/runtime_error.h"

namespace jet {
namespace {

constexpr std::size_t kHeaderBytes = 0x100;  // more than the fields that are read
constexpr std::uint8_t kLastVersion = 6;     // Access 2019
constexpr std::uint8_t kFirstAccdb = 2;      // Access 2007
constexpr std::string_view kMagic = std::string_view("\0\1\0\0", 4);
constexpr std::string_view kJetName = std::string_view("Standard Jet DB\0", 16);
constexpr std::string_view kAccdbName = std::string_view("Standard ACE DB\0", 16);

[[noreturn]] void unrecognized(const std::string& path, const std::string& why) {
  throw RuntimeError(error::kUnrecognized,
                     "Unrecognized database format '" + path + "': " + why + ".");
}

// 0 is found where the engine took it for granted.
int knownCodePage(int number, const std::string& path) {
  constexpr int kWestern = 1252;
  if (number == 0) return kWestern;
  try {
    return CodePage(number).number();
  } catch (const RuntimeError&) {
    unrecognized(path, "its text is in the unknown code page " + std::to_string(number));
  }
}

// The creation date masks the password of Jet 4 once more: its whole days as 32 bits, repeated.
void unmaskPassword(double created, MutableBytes password) {
  if (!(std::fabs(created) < 1e9)) return;  // no date: nothing that the engine wrote
  std::array<std::byte, 4> mask;
  storeLittle(mask, 0, static_cast<std::int32_t>(created));
  for (std::size_t i = 0; i < password.size(); ++i) password[i] ^= mask[i % mask.size()];
}

std::vector<std::byte> readPassword(Bytes header, const Format& format, double created) {
  const Bytes stored = header.subspan(kHeaderPassword, format.headerPasswordSize);
  std::vector<std::byte> password(stored.begin(), stored.end());
  std::size_t unit = 1;
  if (format.version == Version::kJet4) {
    unmaskPassword(created, password);
    unit = 2;
  }
  // It ends at the first zero character; what follows may be left over from an earlier one.
  std::size_t length = 0;
  const auto isZero = [&](std::size_t at) {
    const Bytes character = Bytes(password).subspan(at, unit);
    return std::all_of(character.begin(), character.end(),
                       [](std::byte b) { return b == std::byte{0}; });
  };
  while (length < password.size() && !isZero(length)) length += unit;
  password.resize(length);
  return password;
}

// The password as the file would hold it.
std::vector<std::byte> storedForm(std::string_view password, const FileHeader& header) {
  TextEncoder encoder(header.version, header.codePage);
  std::vector<std::byte> stored = encoder.encode(password, /*compress=*/false);
  stored.resize(std::min(stored.size(), formatOf(header.version).headerPasswordSize));
  return stored;
}

}  // namespace

FileHeader readFileHeader(const RandomAccessFile& file) {
  std::array<std::byte, kHeaderBytes> bytes{};
  if (file.readAt(0, bytes) < bytes.size()) unrecognized(file.path(), "it is too short");
  const std::string_view text = asText(bytes);
  const std::string_view name = text.substr(kHeaderMagic, kJetName.size());
  if (!text.starts_with(kMagic) || (name != kJetName && name != kAccdbName)) {
    unrecognized(file.path(), "it is not a Jet database");
  }

  FileHeader header;
  header.versionByte = loadU8(bytes, kHeaderVersion);
  if (header.versionByte > kLastVersion ||
      (name == kAccdbName) != (header.versionByte >= kFirstAccdb)) {
    unrecognized(file.path(), "its version is not known");
  }
  header.version = header.versionByte == 0 ? Version::kJet3 : Version::kJet4;
  const Format& format = formatOf(header.version);
  applyRc4(kHeaderMaskKey, 0, MutableBytes(bytes).subspan(kHeaderMaskStart, format.headerMaskSize));

  header.encodingKey = loadU32(bytes, kHeaderKey);
  if (header.encodingKey != 0 && header.versionByte >= kFirstAccdb) {
    unrecognized(file.path(), "its pages are encrypted in the way of Access 2007 and later");
  }
  if (header.version == Version::kJet3) {
    header.codePage = knownCodePage(loadU16(bytes, kHeaderCodePage), file.path());
  } else {
    header.created = loadLittle<double>(bytes, kHeaderCreated);
  }
  header.password = readPassword(bytes, format, header.created);
  return header;
}

void checkPassword(const FileHeader& header, std::string_view password, const std::string& path) {
  if (header.password.empty() || storedForm(password, header) == header.password) return;
  throw RuntimeError(error::kBadPassword, "Not a valid password for '" + path + "'.");
}

}  // namespace jet
