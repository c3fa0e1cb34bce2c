#include "jet/format/creation_format.h"

namespace jet {
namespace {

constexpr SecurityId securityId(int first, int second) {
  return {static_cast<std::byte>(first), static_cast<std::byte>(second)};
}

constexpr CreationFormat kJet3 = {
    .version = Version::kJet3,
    .name = "Standard Jet DB",
    .versionNumber = 0,
    .build = 3410,
    .created = 0,
    .mark = 0,
    .markText = "",
    .definitionSign = 0x4356,
    .systemColumnsByName = false,
    .realIndexFlags = 0,
    .userIndexCascade = kSystemCascade,
    .lastType = ColumnType::kGuid,
    .indexLevels = true,
    .queryColumns = 7,
    .ids = {.engine = securityId(0x02, 0x03),
            .admin = securityId(0x03, 0x01),
            .users = securityId(0x02, 0x01),
            .creator = securityId(0x02, 0x04)},
};

constexpr CreationFormat kJet4 = {
    .version = Version::kJet4,
    .name = "Standard Jet DB",
    .versionNumber = 1,
    .build = 8618,
    .created = 0x40e29ff17d1f72bc,  // 2003-10-30 13:19:46
    .mark = 0x654,
    .markText = "4.0",
    .definitionSign = 0,
    .systemColumnsByName = true,
    .realIndexFlags = 0x80,
    .userIndexCascade = 0,
    .lastType = ColumnType::kNumeric,
    .indexLevels = false,
    .queryColumns = 8,
    .ids = {.engine = securityId(0xa7, 0x31),
            .admin = securityId(0xa6, 0x33),
            .users = securityId(0xa7, 0x33),
            .creator = securityId(0xa7, 0x36)},
};

constexpr CreationFormat accdb(std::uint32_t versionNumber) {
  CreationFormat format = kJet4;
  format.name = "Standard ACE DB";
  format.versionNumber = versionNumber;
  return format;
}

constexpr CreationFormat kAce12 = accdb(2);
constexpr CreationFormat kAce14 = accdb(3);

}  // namespace

const CreationFormat& creationFormat(FileFormat format) {
  switch (format) {
    case FileFormat::kJet3:
      return kJet3;
    case FileFormat::kAce12:
      return kAce12;
    case FileFormat::kAce14:
      return kAce14;
    case FileFormat::kJet4:
      break;
  }
  return kJet4;
}

}  // namespace jet
