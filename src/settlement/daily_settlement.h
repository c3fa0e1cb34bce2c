// The settlement figures of one business day: whole won, counts, and one percentage.
//
//   DailySettlement day;
//   day[Figure::총판매액] = 1000000;
//   for (const FigureInfo& figure : figures()) use(figure.label, figure.column, figure.source);
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lib_결산 {

// In the alphabetical order of their labels, which is the record's own order.
enum class Figure : std::uint8_t {
  객단가,
  경품건수,
  경품현금지급,
  돈통열린회수,
  매가변경,
  반품,
  봉사료,
  부가세,
  상품권사용,
  상품권판매,
  서비스,
  서비스건수,
  선금금액,
  손님수,
  손님수남,
  손님수여,
  시제,
  실판매액,
  외상매출,
  외상종료액,
  외상카드입금,
  외상현금입금,
  전표건수,
  절상절하,
  종업원수,
  좌석수,
  좌석회전율,
  주문건수,
  지출액,
  직원당손님수,
  직원당판매액,
  총마진,
  총원가,
  총판매액,
  출금,
  취소건수,
  카드,
  카드매출,
  카드외부취소,
  카드지불외,
  쿠폰건수,
  쿠폰사용,
  테이블단가,
  테이블수,
  페이아웃,
  할인,
  현금매출,
  현금입금,
};

constexpr std::size_t kFigureCount = 48;

struct FigureInfo {
  Figure figure;
  std::string_view label;
  std::string_view column;  // of the server's DailyDataTB
  std::string_view source;
};

// In the order of Figure.
[[nodiscard]] std::span<const FigureInfo, kFigureCount> figures();

[[nodiscard]] inline const FigureInfo& figureInfo(Figure figure) {
  return figures()[static_cast<std::size_t>(figure)];
}

// Why a computation ended early.
struct DayFailure {
  int step = 0;    // of the computation, 1 to 22
  int number = 0;  // of the error
  std::string description;
};

class DailySettlement {
 public:
  // The figures from its step on are 0; those of the step itself may be either.
  std::optional<DayFailure> failure;

  [[nodiscard]] std::int32_t operator[](Figure figure) const {
    return values_[static_cast<std::size_t>(figure)];
  }
  [[nodiscard]] std::int32_t& operator[](Figure figure) {
    return values_[static_cast<std::size_t>(figure)];
  }

 private:
  std::array<std::int32_t, kFigureCount> values_{};
};

}  // namespace lib_결산
