// Texts into code page 949, as every line of the statement file is converted.
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include "pieces_src/pieces.h"
#include "pieces_src/plain_iconv.h"
#include "platform/code_page.h"

namespace bench {

namespace {

constexpr std::string_view kAscii =
    "Insert Into Selling_ItemTB (SLI_GROUP, SLI_SANGHO, SLI_CHAIRMAN, SLI_ID, SLI_SL_ID, "
    "SLI_TABLENO, SLI_MENU1, SLI_QTY, SLI_PRICE )  Values ('A01', 'Hanok', 'Kim', 1, 1001, 12, 1, "
    "'2', '11000');";
constexpr std::string_view kHangul =
    "돌솥비빔밥주방장모둠전계절메뉴주문추가테이블이동수량변경해물파전잔치국수된장찌개";
constexpr std::string_view kMixed =
    "Insert Into Selling_ItemTB (SLI_GROUP, SLI_SANGHO, SLI_CHAIRMAN, SLI_ID, SLI_SL_ID, "
    "SLI_TABLENO, SLI_MENU1, SLI_IS_MENUGRP, SLI_MENUNAME, SLI_QTY, SLI_PRICE, SLI_NAME )  Values "
    "('A01', '한옥', '김대표', 1, 1001, 12, 1, '식사', '돌솥밥', '2', '11000', '박지훈');";

void codePage(benchmark::State& state, std::string_view text) {
  CodePage korean(949);
  std::string out;
  for (auto _ : state) {
    out.clear();
    korean.appendFromUtf8(text, out);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * std::ssize(text));
  state.SetItemsProcessed(state.iterations());
}

void plainIconv(benchmark::State& state, std::string_view text) {
  PlainIconv converter("CP949", "UTF-8");
  for (auto _ : state) benchmark::DoNotOptimize(converter.convert(text));
  state.SetBytesProcessed(state.iterations() * std::ssize(text));
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

void addPlatform() {
  const auto add = [](const std::string& piece, std::string_view text) {
    benchmark::RegisterBenchmark((piece + "/CodePage").c_str(), codePage, text);
    benchmark::RegisterBenchmark((piece + "/iconv on the whole").c_str(), plainIconv, text);
  };
  add("to 949, statement in ASCII", kAscii);
  add("to 949, statement with Hangul", kMixed);
  add("to 949, Hangul", kHangul);
}

}  // namespace bench
