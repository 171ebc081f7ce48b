#include "Zar/Lt/Core/StringCollection/IStringCollection.h"

#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include <string>
#include <string_view>
#include <vector>

namespace Zar::Lt::Core {
namespace {

// A collection that records every raw append: the other appends of the interface must all end there.
class RecordingCollection : public IStringCollection {
public:
    using IStringCollection::Append;
    using IStringReadOnlyCollection::Enumerate;

    void Enumerate(EnumerateCallback const& callback) const override
    {
        for (std::size_t i = 0; i < raw.size(); ++i) {
            if (!callback(static_cast<int>(i), raw[i]))
                return;
        }
    }

    void Append(char const* data, unsigned length) override { raw.emplace_back(data, length); }

    std::vector<std::string> raw;
};

TEST(IStringCollectionTest, ViewAppendPassesItsDataAndSize)
{
    RecordingCollection collection;
    char const text[] = "abcdef";
    collection.Append(std::string_view(text, 3));
    EXPECT_EQ((std::vector<std::string> { "abc" }), collection.raw);
}

TEST(IStringCollectionTest, EmptyViewAppendsAnEmptyString)
{
    RecordingCollection collection;
    collection.Append(std::string_view());
    EXPECT_EQ((std::vector<std::string> { "" }), collection.raw);
}

TEST(IStringCollectionTest, ViewLongerThanAnUnsignedLengthIsRefused)
{
    if constexpr (std::numeric_limits<std::size_t>::max() > std::numeric_limits<unsigned>::max()) {
        RecordingCollection collection;
        char const text[] = "a";
        // The size is never read through: the check comes first.
        std::string_view const huge(text, static_cast<std::size_t>(std::numeric_limits<unsigned>::max()) + 1);
        EXPECT_THAT([&] { collection.Append(huge); },
            testing::ThrowsMessage<Zar::Lt::Exceptions::PreCondition>(
                testing::StrEq("PreCondition text.size() <= std::numeric_limits<unsigned>::max()")));
        EXPECT_TRUE(collection.raw.empty());
    } else {
        // Where size_t is no wider than unsigned (32-bit machines) no view can be longer than
        // unsigned counts, so the check cannot fail there: every possible length converts unchanged.
        std::size_t const longest = std::numeric_limits<std::size_t>::max();
        EXPECT_EQ(longest, static_cast<std::size_t>(static_cast<unsigned>(longest)));
    }
}

TEST(IStringCollectionTest, CollectionAppendTakesEveryElementInOrder)
{
    StringCollection other;
    other.Append({ "one", "two", "three" });
    RecordingCollection collection;
    collection.Append(std::string_view("zero"));
    collection.Append(static_cast<IStringReadOnlyCollection const&>(other));
    EXPECT_EQ((std::vector<std::string> { "zero", "one", "two", "three" }), collection.raw);
}

TEST(IStringCollectionTest, AppendOfAnEmptyCollectionAddsNothing)
{
    StringCollection const other;
    RecordingCollection collection;
    collection.Append(static_cast<IStringReadOnlyCollection const&>(other));
    EXPECT_TRUE(collection.raw.empty());
}

TEST(IStringCollectionTest, AppendsDispatchThroughTheInterface)
{
    StringCollection target;
    IStringCollection& collection = target;
    collection.Append("xy", 2);
    collection.Append(std::string_view("z"));
    EXPECT_EQ(2, collection.Count());
    EXPECT_EQ(1, target.IndexOf("z"));
}

} // namespace
} // namespace Zar::Lt::Core
