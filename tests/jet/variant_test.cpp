#include "jet/variant.h"

#include <gtest/gtest.h>

namespace jet {
namespace {

TEST(VariantTest, TypeFollowsTheConstructor) {
  EXPECT_TRUE(Variant().isNull());
  EXPECT_EQ(Variant(true).type(), VariantType::YesNo);
  EXPECT_EQ(Variant("홀").type(), VariantType::Text);
  EXPECT_EQ(Variant(Currency{125000}).as<Currency>()->units, 125000);
}

}  // namespace
}  // namespace jet
