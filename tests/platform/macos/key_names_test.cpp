#include <gtest/gtest.h>

#include "shortcuts/key_codes.h"

namespace {

TEST(KeyNames, are_those_of_the_systems_virtual_key_codes) {
#define KEY(symbol, code, name) EXPECT_EQ(shortcuts::keyName(code), name) << #symbol;
#include "key_names.inc"
#undef KEY
}

}  // namespace
