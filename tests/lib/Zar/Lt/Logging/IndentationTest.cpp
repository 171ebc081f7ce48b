#include "Zar/Lt/Logging/Indentation.h"

#include <gtest/gtest.h>

#include <string>

namespace Zar::Lt::Logging {
namespace {

TEST(IndentationTest, SpacesAreSixtyFourBlanks) { EXPECT_EQ(std::string(64, ' '), Indentation::_spaces); }

TEST(IndentationTest, IndentationIsTheLastBlanksOfTheConstant)
{
    auto const five = Indentation::Of(5);
    EXPECT_EQ("     ", five);
    EXPECT_EQ(Indentation::_spaces.data() + 59, five.data());
}

TEST(IndentationTest, ZeroAndNegativeCountsGiveNoBlanks)
{
    EXPECT_EQ("", Indentation::Of(0));
    EXPECT_EQ("", Indentation::Of(-3));
}

TEST(IndentationTest, CountsBeyondTheConstantAreCapped)
{
    EXPECT_EQ(std::string(64, ' '), Indentation::Of(64));
    EXPECT_EQ(std::string(64, ' '), Indentation::Of(65));
    EXPECT_EQ(std::string(64, ' '), Indentation::Of(1000));
}

} // namespace
} // namespace Zar::Lt::Logging
