#include <gtest/gtest.h>

#include "caudalis/core/TextLiteral.hpp"

using caudalis::quotedLiteral;

TEST(TextLiteral, EnclosesTheTextAndDoublesItsQuoteMarks) {
    EXPECT_EQ(quotedLiteral("it's", '\''), "'it''s'");
    EXPECT_EQ(quotedLiteral("a \"b\"", '"'), "\"a \"\"b\"\"\"");
    EXPECT_EQ(quotedLiteral("", '"'), "\"\"");
    EXPECT_EQ(quotedLiteral("it's \"so\"", '"'), "\"it's \"\"so\"\"\"");
}
