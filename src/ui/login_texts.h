// The login window's fixed texts. Trailing blanks are part of them.
#pragma once

namespace ui::text {

constexpr const char* kLogin = "로그인";             // cmdLogin
constexpr const char* kCancel = "취소";              // cmdCancel
constexpr const char* kChangePassword = "암호변경";  // cmdChange

// Labels of the fields.
constexpr const char* kTradeName = "상호(&S)";
constexpr const char* kLoginId = "로그인 ID(&I)";
constexpr const char* kPassword = "암호(&P)";

constexpr const char* kAlreadyRunning =
    "이미 프로그램이 실행중입니다.CTRL + ALT + DEL키를 눌러 확인하세요.";
constexpr const char* kAlreadyRunningTitle = "Tarvick System";
constexpr const char* kNoTradeName = "상호명을 입력하십시요,,";
constexpr const char* kNoLoginId = "로그인ID를 입력하세요!";
constexpr const char* kNoConnection =
    "서버에 연결할 수 없습니다.\r\nconnection Open Error\r\n관리자 정보를 취득할 수 없습니다.\r\n";
constexpr const char* kNoTable = "관리자 Login Table 접속 오류.... DB Connect Check....";
constexpr const char* kNoSuchOperator =
    "입력하신 상호와 이름가 맞지 않습니다.. 정확한 상호와 이름을 입력 하십시요..";
constexpr const char* kWrongPassword = "암호가 틀립니다. 다시 입력하세요!";
constexpr const char* kGoodbye = "Melvane Manager를 종료합니다.. ";

}  // namespace ui::text
