#include "StreamLogger.h"

#include <gtest/gtest.h>

#include <sstream>

using Zar::ResourcesLibrary::Tools::Inspect::StreamLogger;

TEST(StreamLoggerTest, WritesOneLinePerRecordWithItsPlace)
{
    std::ostringstream out;
    StreamLogger logger("check", out);
    logger.Log(
        20, "'Cannot open bmp/icons/list.txt'", "src/lib/Zar/ResourcesLibrary/Image/InputSequence", 55);
    logger.Log(50, "Stack trace:", nullptr, 0);
    logger.Log(50, "frame", "", 3);
    EXPECT_EQ(out.str(),
        "check [20] 'Cannot open bmp/icons/list.txt' (src/lib/Zar/ResourcesLibrary/Image/InputSequence:55)\n"
        "check [50] Stack trace:\n"
        "check [50] frame\n");
}
