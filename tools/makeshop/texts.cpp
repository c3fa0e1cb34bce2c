#include "makeshop/texts.h"

namespace makeshop {
namespace {

constexpr std::array kHalls = {"홀", "홀", "홀", "창가", "방 1", "방 2", "테라스", "Hall"};
constexpr std::array kHardHalls = {"Kim's table", "김's 방", "C:\\홀\\2층", "눈사람☃ 방"};
constexpr std::array kFamilies = {"김", "이", "박", "최", "정", "강", "조", "윤"};
constexpr std::array kGiven = {"민수", "영희", "지훈", "서연", "도윤", "하은", "준호", "수진"};
constexpr std::array kHardPersons = {"O'Neil", "D'Arcy O'Kim", "똠방각하's 형", "꽃☃님"};
constexpr std::array kCompanies = {"농협",     "한빛상회", "바다수산",
                                   "우리축산", "새벽야채", "대한주류"};
constexpr std::array kHardCompanies = {"O'Neil 상회", "김's 정육", "C:\\거래처"};
constexpr std::array kNotes = {"단골", "포장", "창가 자리", "영수증 없음", "생일", "가족 모임"};
constexpr std::array kHardNotes = {"it's Kim's", "손님's 요청", "메모: C:\\temp\\n", "☃ 겨울 행사"};
constexpr std::array kEvents = {"주문 추가", "수량 변경", "테이블 이동", "메뉴 취소", "할인 적용"};

}  // namespace

const std::array<MenuGroup, 5>& menuGroups() {
  static constexpr std::array<MenuGroup, 5> kGroups = {{{1, "식사", "식사"},
                                                        {2, "찌개·탕", "찌개"},
                                                        {3, "음료", "음료"},
                                                        {4, "주류", "주류"},
                                                        {5, "주방's 추천", "추천"}}};
  return kGroups;
}

// Group 6 does not exist: its items have no menu name, as after the deletion of a group.
const std::array<Menu, 18>& menus() {
  static constexpr std::array<Menu, 18> kMenus = {{{1, 1, "비빔밥", 8000, 3200},
                                                   {2, 1, "냉면", 9000, 3600},
                                                   {3, 1, "불고기 정식", 15000, 7100},
                                                   {4, 1, "돌솥밥", 11000, 4300},
                                                   {5, 2, "김치찌개", 7500, 2800},
                                                   {6, 2, "된장찌개", 7500, 2600},
                                                   {7, 2, "갈비탕", 13000, 6200},
                                                   {8, 2, "삼계탕", 14500, 6900},
                                                   {9, 3, "Coffee", 4500, 900},
                                                   {10, 3, "식혜", 4000, 1100},
                                                   {11, 3, "콜라", 2500, 800},
                                                   {12, 4, "소주", 4000, 1500},
                                                   {13, 4, "맥주", 5000, 1900},
                                                   {14, 4, "막걸리", 6000, 2100},
                                                   {15, 5, "한우 등심 100g", 28000, 17500},
                                                   {16, 5, "주방장 모둠전", 19500, 8100},
                                                   {17, 6, "계절 메뉴", 12000, 5000},
                                                   {18, 3, "생수", 1500, 400}}};
  return kMenus;
}

const std::array<const char*, 6>& cardKinds() {
  static constexpr std::array<const char*, 6> kKinds = {"BC", "KB", "SS", "HD", "LT", "XX"};
  return kKinds;
}

std::string Texts::hall() {
  if (!plain_ && random_.chance(12)) return random_.pick(kHardHalls);
  return random_.pick(kHalls);
}

std::string Texts::person() {
  if (!plain_ && random_.chance(10)) return random_.pick(kHardPersons);
  std::string name = random_.pick(kFamilies);
  return name + random_.pick(kGiven);
}

std::string Texts::company() {
  if (!plain_ && random_.chance(20)) return random_.pick(kHardCompanies);
  return random_.pick(kCompanies);
}

std::string Texts::note() {
  if (!random_.chance(35)) return {};
  if (!plain_ && random_.chance(40)) return random_.pick(kHardNotes);
  return random_.pick(kNotes);
}

// Lengths such that memos are stored in each of their three forms: inline, on a shared page, and
// over several pages.
std::string Texts::history() {
  const int kind = random_.below(100);
  if (kind < 55) return {};
  const int events = kind < 85 ? 1 : kind < 97 ? random_.between(8, 40) : random_.between(250, 400);
  std::string history;
  for (int i = 0; i < events; ++i) {
    if (i > 0) history += "\r\n";
    history += random_.pick(kEvents);
    if (!plain_ && random_.chance(10)) history += " (손님's)";
  }
  return history;
}

std::string Texts::phonePart(int digits) {
  std::string part;
  for (int i = 0; i < digits; ++i) part += static_cast<char>('0' + random_.below(10));
  return part;
}

}  // namespace makeshop
