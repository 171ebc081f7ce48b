#include "Zar/Lt/Core/StringCollection/IStringReadOnlyCollection.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Zar::Lt::Core {
namespace {

// A collection that offers nothing but the enumeration primitive, over fixed texts, and records how
// far every enumeration walked: the queries of the interface must be built on it alone.
class FixedCollection : public IStringReadOnlyCollection {
public:
    explicit FixedCollection(std::vector<std::string> texts)
        : _texts(std::move(texts))
    {
    }

    using IStringReadOnlyCollection::Enumerate;

    void Enumerate(EnumerateCallback const& callback) const override
    {
        ++enumerations;
        for (std::size_t i = 0; i < _texts.size(); ++i) {
            ++visited;
            if (!callback(static_cast<int>(i), _texts[i]))
                return;
        }
    }

    mutable int enumerations = 0;
    mutable int visited = 0;

private:
    std::vector<std::string> _texts;
};

using Delivered = std::vector<std::pair<int, std::string>>;

Delivered EnumerateFrom(IStringReadOnlyCollection const& collection, int offset)
{
    Delivered delivered;
    collection.Enumerate(offset, [&delivered](int index, std::string_view text) {
        delivered.emplace_back(index, std::string(text));
        return true;
    });
    return delivered;
}

TEST(IStringReadOnlyCollectionTest, QueriesOnAnEmptyCollection)
{
    FixedCollection const empty({});
    EXPECT_EQ(0, empty.Count());
    EXPECT_EQ(-1, empty.IndexOf("a"));
    EXPECT_EQ(-1, empty.IndexOf(""));
    EXPECT_FALSE(empty.Exists("a"));
    EXPECT_FALSE(empty.Exists(""));
    EXPECT_TRUE(EnumerateFrom(empty, 0).empty());
    EXPECT_TRUE(EnumerateFrom(empty, 3).empty());
}

TEST(IStringReadOnlyCollectionTest, OffsetIsZero) { EXPECT_EQ(0, FixedCollection({ "a", "b" }).Offset()); }

TEST(IStringReadOnlyCollectionTest, CountEnumeratesEverything)
{
    FixedCollection const collection({ "a", "b", "c" });
    EXPECT_EQ(3, collection.Count());
    EXPECT_EQ(1, collection.enumerations);
    EXPECT_EQ(3, collection.visited);
}

TEST(IStringReadOnlyCollectionTest, ExistsStopsAtTheFirstEqualElement)
{
    FixedCollection const collection({ "a", "b", "c", "b" });
    EXPECT_TRUE(collection.Exists("b"));
    EXPECT_EQ(2, collection.visited);
}

TEST(IStringReadOnlyCollectionTest, ExistsComparesSizeAndBytes)
{
    FixedCollection const collection({ "ab", "", std::string("x\0y", 3) });
    EXPECT_TRUE(collection.Exists("ab"));
    EXPECT_TRUE(collection.Exists(""));
    EXPECT_TRUE(collection.Exists(std::string_view("x\0y", 3)));
    EXPECT_FALSE(collection.Exists("a"));
    EXPECT_FALSE(collection.Exists("abc"));
    EXPECT_FALSE(collection.Exists("AB"));
    EXPECT_FALSE(collection.Exists("x"));
}

TEST(IStringReadOnlyCollectionTest, IndexOfGivesTheFirstEqualPosition)
{
    FixedCollection const collection({ "a", "b", "c", "b" });
    EXPECT_EQ(1, collection.IndexOf("b"));
    EXPECT_EQ(2, collection.visited);
    EXPECT_EQ(0, collection.IndexOf("a"));
    EXPECT_EQ(2, collection.IndexOf("c"));
}

TEST(IStringReadOnlyCollectionTest, IndexOfAMissingElementIsMinusOne)
{
    FixedCollection const collection({ "a", "b" });
    EXPECT_EQ(-1, collection.IndexOf("z"));
    EXPECT_EQ(2, collection.visited);
}

TEST(IStringReadOnlyCollectionTest, EnumerateFromZeroDeliversEverything)
{
    FixedCollection const collection({ "a", "b" });
    EXPECT_EQ((Delivered { { 0, "a" }, { 1, "b" } }), EnumerateFrom(collection, 0));
}

TEST(IStringReadOnlyCollectionTest, EnumerateFromAnOffsetRenumbersFromZero)
{
    FixedCollection const collection({ "a", "b", "c", "d", "e" });
    EXPECT_EQ((Delivered { { 0, "c" }, { 1, "d" }, { 2, "e" } }), EnumerateFrom(collection, 2));
}

TEST(IStringReadOnlyCollectionTest, EnumerateFromAnOffsetAtOrPastTheEndDeliversNothing)
{
    FixedCollection const collection({ "a", "b", "c" });
    EXPECT_TRUE(EnumerateFrom(collection, 3).empty());
    EXPECT_TRUE(EnumerateFrom(collection, 4).empty());
    EXPECT_TRUE(EnumerateFrom(collection, 1000).empty());
}

TEST(IStringReadOnlyCollectionTest, NegativeOffsetSkipsNothingAndNumbersFromMinusTheOffset)
{
    // Nothing lies below a negative offset, and position - offset counts up from -offset.
    FixedCollection const collection({ "a", "b" });
    EXPECT_EQ((Delivered { { 2, "a" }, { 3, "b" } }), EnumerateFrom(collection, -2));
}

TEST(IStringReadOnlyCollectionTest, EnumerateFromAnOffsetStopsWhenTheCallbackSaysSo)
{
    FixedCollection const collection({ "a", "b", "c", "d", "e" });
    Delivered delivered;
    collection.Enumerate(1, [&delivered](int index, std::string_view text) {
        delivered.emplace_back(index, std::string(text));
        return index < 1;
    });
    EXPECT_EQ((Delivered { { 0, "b" }, { 1, "c" } }), delivered);
    EXPECT_EQ(3, collection.visited);
}

} // namespace
} // namespace Zar::Lt::Core
