#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Zar::Lt::Core {
namespace {

std::vector<std::string> Elements(IStringReadOnlyCollection const& collection)
{
    std::vector<std::string> elements;
    collection.Enumerate([&elements](int index, std::string_view text) {
        EXPECT_EQ(static_cast<int>(elements.size()), index);
        elements.emplace_back(text);
        return true;
    });
    return elements;
}

StringCollection Five()
{
    StringCollection collection;
    collection.Append({ "a", "b", "c", "d", "e" });
    return collection;
}

TEST(StringCollectionTest, EmptyCollection)
{
    StringCollection const collection;
    EXPECT_EQ(0, collection.Count());
    EXPECT_EQ(-1, collection.IndexOf("a"));
    EXPECT_FALSE(collection.Exists("a"));
    EXPECT_TRUE(Elements(collection).empty());
}

TEST(StringCollectionTest, RawAppendCopiesTheBytes)
{
    StringCollection collection;
    char text[] = "abc";
    collection.Append(text, 3);
    text[0] = 'X';
    EXPECT_EQ((std::vector<std::string> { "abc" }), Elements(collection));
}

TEST(StringCollectionTest, RawAppendTakesLengthBytesNotUpToAZero)
{
    StringCollection collection;
    collection.Append("a\0b-tail", 3);
    collection.Append("ignored", 0);
    EXPECT_EQ((std::vector<std::string> { std::string("a\0b", 3), "" }), Elements(collection));
}

TEST(StringCollectionTest, DefaultViewAppendsAnEmptyString)
{
    StringCollection collection;
    collection.Append(std::string_view());
    collection.Append(nullptr, 0);
    EXPECT_EQ((std::vector<std::string> { "", "" }), Elements(collection));
}

TEST(StringCollectionTest, ListAppendKeepsTheOrderAfterExistingElements)
{
    StringCollection collection;
    collection.Append(std::string_view("first"));
    collection.Append({ "second", "third" });
    collection.Append(std::initializer_list<std::string_view> {});
    EXPECT_EQ((std::vector<std::string> { "first", "second", "third" }), Elements(collection));
    EXPECT_EQ(3, collection.Count());
}

TEST(StringCollectionTest, CollectionAppendCopiesAnotherCollection)
{
    StringCollection collection;
    collection.Append(static_cast<IStringReadOnlyCollection const&>(Five()));
    EXPECT_EQ((std::vector<std::string> { "a", "b", "c", "d", "e" }), Elements(collection));
}

TEST(StringCollectionTest, CollectionAppendedToItselfDoublesOnce)
{
    StringCollection collection;
    collection.Append({ "a long string that does not fit a small buffer", "b" });
    collection.Append(static_cast<IStringReadOnlyCollection const&>(collection));
    EXPECT_EQ((std::vector<std::string> { "a long string that does not fit a small buffer", "b",
                  "a long string that does not fit a small buffer", "b" }),
        Elements(collection));
}

TEST(StringCollectionTest, EnumerateStopsWhenTheCallbackReturnsFalse)
{
    std::vector<int> seen;
    Five().Enumerate([&seen](int index, std::string_view) {
        seen.push_back(index);
        return index < 2;
    });
    EXPECT_EQ((std::vector<int> { 0, 1, 2 }), seen);
}

TEST(StringCollectionTest, EnumerateWithAnOffset)
{
    std::vector<std::pair<int, std::string>> seen;
    Five().Enumerate(2, [&seen](int index, std::string_view text) {
        seen.emplace_back(index, text);
        return true;
    });
    EXPECT_EQ((std::vector<std::pair<int, std::string>> { { 0, "c" }, { 1, "d" }, { 2, "e" } }), seen);
}

TEST(StringCollectionTest, EnumerateWithAnOffsetPastTheEndDeliversNothing)
{
    int calls = 0;
    auto const count = [&calls](int, std::string_view) {
        ++calls;
        return true;
    };
    Five().Enumerate(5, count);
    Five().Enumerate(6, count);
    EXPECT_EQ(0, calls);
}

TEST(StringCollectionTest, EmptyCallbackThrowsOnlyWhenThereIsSomethingToDeliver)
{
    IStringReadOnlyCollection::EnumerateCallback const none;
    EXPECT_NO_THROW(StringCollection().Enumerate(none));
    EXPECT_THROW(Five().Enumerate(none), std::bad_function_call);
}

TEST(StringCollectionTest, QueriesFindTheFirstEqualElement)
{
    StringCollection collection;
    collection.Append({ "Play", "Stop", "Play", "" });
    EXPECT_EQ(4, collection.Count());
    EXPECT_EQ(0, collection.IndexOf("Play"));
    EXPECT_EQ(1, collection.IndexOf("Stop"));
    EXPECT_EQ(3, collection.IndexOf(""));
    EXPECT_EQ(-1, collection.IndexOf("play"));
    EXPECT_EQ(-1, collection.IndexOf("Pla"));
    EXPECT_TRUE(collection.Exists("Stop"));
    EXPECT_FALSE(collection.Exists("Stop "));
    EXPECT_EQ(0, collection.Offset());
}

TEST(StringCollectionTest, CopiesAreIndependent)
{
    StringCollection original = Five();
    StringCollection copy = original;
    copy.Append(std::string_view("f"));
    EXPECT_EQ(5, original.Count());
    EXPECT_EQ(6, copy.Count());
}

TEST(StringCollectionTest, ListAppendThroughTheClassSlot)
{
    StringCollection target;
    IStringCollection& collection = target;
    collection.Append(std::string_view("x"));
    target.Append({ "y" });
    EXPECT_EQ((std::vector<std::string> { "x", "y" }), Elements(collection));
}

} // namespace
} // namespace Zar::Lt::Core
