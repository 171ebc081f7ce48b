#include "StreamLoggerFactory.h"

#include <gtest/gtest.h>

#include <sstream>

using Zar::ResourcesLibrary::Tools::Inspect::StreamLoggerFactory;

TEST(StreamLoggerFactoryTest, KeepsOneLoggerPerName)
{
    std::ostringstream out;
    StreamLoggerFactory factory(out);
    auto const first = factory.GetLogger("a");
    EXPECT_EQ(factory.GetLogger("a"), first);
    auto const second = factory.GetLogger("b");
    EXPECT_NE(second, first);
    first->Log(20, "one", nullptr, 0);
    second->Log(20, "two", nullptr, 0);
    EXPECT_EQ(out.str(), "a [20] one\nb [20] two\n");
}

TEST(StreamLoggerFactoryTest, HasNoDiagnosticContext)
{
    std::ostringstream out;
    StreamLoggerFactory factory(out);
    EXPECT_EQ(factory.GetNDC(), nullptr);
}
