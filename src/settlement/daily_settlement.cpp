#include "settlement/daily_settlement.h"

namespace lib_결산 {

namespace {

constexpr std::array<FigureInfo, kFigureCount> kFigures = {{
    {Figure::객단가, "객단가", "DD_VISITOR_COST", "총판매액 a customer"},
    {Figure::경품건수, "경품건수", "DD_GIFT_CNT", "sum of nos, qryRstFreeGift"},
    {Figure::경품현금지급, "경품현금지급", "DD_GIFT_CASH",
     "sum of price_free_gifts, qryRstSelling"},
    {Figure::돈통열린회수, "돈통열린회수", "DD_CASHBOX_OPEN",
     "num_drawer + num_drawer2 + num_drawer3, set_basic3"},
    {Figure::매가변경, "매가변경", "DD_MAGA_CHANGE", "sum of price_change, selling"},
    {Figure::반품, "반품", "DD_BANPUM", "none: always 0"},
    {Figure::봉사료, "봉사료", "DD_BONGSA", "sum of price_gratuitys, qryRstSelling"},
    {Figure::부가세, "부가세", "DD_VAT",
     "sum of price_vats, qryRstSelling; computed from the total when VAT is on"},
    {Figure::상품권사용, "상품권사용", "DD_GIFT_USE", "sum of price_tickets, qryRstSelling"},
    {Figure::상품권판매, "상품권판매", "DD_GIFT_SALE",
     "price_gets, qryRstTicket or qryODBCRstTicket"},
    {Figure::서비스, "서비스", "DD_SERVICE", "sum of price_services, qryRstSelling"},
    {Figure::서비스건수, "서비스건수", "DD_SERVICE_CNT", "rows of selling_item given as service"},
    {Figure::선금금액, "선금금액", "DD_PREPAY", "sum of first_payment, booking"},
    {Figure::손님수, "손님수", "DD_VISITOR_CNT", "sum of customer_nos, qryRstSelling"},
    {Figure::손님수남, "손님수남", "DD_VISITOR_MALE", "sum of customer_nos_male, qryRstSelling"},
    {Figure::손님수여, "손님수여", "DD_VISITOR_FEMALE",
     "sum of customer_nos_female, qryRstSelling"},
    {Figure::시제, "시제", "DD_SIJAE", "hand_amount, set_basic3"},
    {Figure::실판매액, "실판매액", "DD_REAL_SALE", "총판매액 and 절상절하 less discounts"},
    {Figure::외상매출, "외상매출", "DD_CREDIT_SALE", "sum of price_credits, qryRstSelling"},
    {Figure::외상종료액, "외상종료액", "DD_CREDIT_END", "prices, qryRstCreditTerminate"},
    {Figure::외상카드입금, "외상카드입금", "DD_CREDIT_CARD",
     "price_ins of the last row by card, qryRstCredit"},
    {Figure::외상현금입금, "외상현금입금", "DD_CREDIT_CASH",
     "price_ins of the last other row, qryRstCredit"},
    {Figure::전표건수, "전표건수", "DD_BILL_CNT", "num_paper, set_basic3"},
    {Figure::절상절하, "절상절하", "DD_UPDOWN", "sum of price_trim, selling"},
    {Figure::종업원수, "종업원수", "DD_EMPLOYEE_CNT", "num_employee, newest set_basic2"},
    {Figure::좌석수, "좌석수", "DD_SEAT_CNT", "num_table, newest set_basic2"},
    {Figure::좌석회전율, "좌석회전율", "DD_SEAT_CHANGE", "손님수 a seat, in percent"},
    {Figure::주문건수, "주문건수", "DD_JUMUN_CNT", "rows of selling"},
    {Figure::지출액, "지출액", "DD_OUTLAY", "sums of price and JiGeupAek, outgo_item"},
    {Figure::직원당손님수, "직원당손님수", "DD_EMP_VISIT_CNT", "손님수 an employee"},
    {Figure::직원당판매액, "직원당판매액", "DD_EMP_SALE", "총판매액 an employee"},
    {Figure::총마진, "총마진", "DD_TOT_MARGIN", "sum of margin_amounts, qryRstSellingItemSum"},
    {Figure::총원가, "총원가", "DD_TOT_COST", "sum of cost_amounts, qryRstSellingItemSum"},
    {Figure::총판매액, "총판매액", "DD_TOT_PRICE", "sum of sa, qryRstSum, with the service charge"},
    {Figure::출금, "출금", "DD_CASH_OUT", "sum of JiGeupAek, outgo_item"},
    {Figure::취소건수, "취소건수", "DD_CANCEL_CNT", "num_cancel, set_basic3"},
    {Figure::카드, "카드", "DD_CARD", "none: always 0"},
    {Figure::카드매출, "카드매출", "DD_CARD_SALE", "sum of price_cards of sales, qryCardItem"},
    {Figure::카드외부취소, "카드외부취소", "DD_CARD_CANCEL",
     "sum of price_cards cancelled outside the till, qryCardItem"},
    {Figure::카드지불외, "카드지불외", "DD_CARD_PAYMENT",
     "sum of price_cards without a sale, qryCardItem"},
    {Figure::쿠폰건수, "쿠폰건수", "DD_COUPON_CNT", "sum of coupons, qryRstSelling"},
    {Figure::쿠폰사용, "쿠폰사용", "DD_COUPON_USE", "sum of price_coupons, qryRstSelling"},
    {Figure::테이블단가, "테이블단가", "DD_TABLE_COST", "총판매액 a table"},
    {Figure::테이블수, "테이블수", "DD_TABLE_CNT", "sum of team_nos, qryRstSelling"},
    {Figure::페이아웃, "페이아웃", "DD_PAYOUT", "sum of price_payouts, qryRstSelling"},
    {Figure::할인, "할인", "DD_DISCOUNT", "sum of price_discounts, qryRstSelling"},
    {Figure::현금매출, "현금매출", "DD_CASH_SALE",
     "총판매액 less all other means of payment, and 현금입금"},
    {Figure::현금입금, "현금입금", "DD_CASH_IN", "sum of price of type 9, outgo_item"},
}};

}  // namespace

std::span<const FigureInfo, kFigureCount> figures() { return kFigures; }

}  // namespace lib_결산
