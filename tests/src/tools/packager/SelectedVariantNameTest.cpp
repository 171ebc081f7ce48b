// The test of selected variants against the answer of Qt, whose QString::endsWith on the name's
// UTF-8 bytes decided it when the commands file was first generated. This test links Qt Core for
// the comparison; the tool itself does not.

#include "SelectedVariantName.h"

#include <QString>

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using Zar::ResourcesLibrary::Tools::SelectedVariantName;

namespace {

bool QtAnswer(std::string_view name)
{
    return QString::fromUtf8(name.data(), static_cast<int>(name.size()))
        .endsWith(QStringLiteral("_Selected"), Qt::CaseSensitive);
}

std::string Bytes(std::initializer_list<int> values)
{
    std::string bytes;
    for (int value : values)
        bytes += static_cast<char>(value);
    return bytes;
}

std::vector<std::string> CraftedNames()
{
    std::string const suffix = "_Selected";
    std::vector<std::string> names = { "", "_Selected", "Play_Selected", "Play_selected", "Play_SELECTED",
        "Selected", "_Selecte", "Play_Selected ", " Play_Selected", "Play_Selected\n", "x_Selected_Selected",
        "_Selected_x", "Play\xC3\xA9_Selected", "\xE2\x82\xAC_Selected", "\xF0\x9F\x98\x80_Selected" };
    // Bytes that Qt cannot decode, right before the suffix, where they might swallow its first
    // characters: lone continuation bytes, cut sequences, overlong forms, surrogates, values past
    // U+10FFFF, bytes that never start a character, and a byte-order mark.
    std::vector<std::string> const broken = { Bytes({ 0x80 }), Bytes({ 0xBF }), Bytes({ 0xC3 }),
        Bytes({ 0xE2, 0x82 }), Bytes({ 0xF0, 0x9F, 0x98 }), Bytes({ 0xC0, 0xAF }), Bytes({ 0xC1 }),
        Bytes({ 0xE0, 0x80, 0xAF }), Bytes({ 0xED, 0xA0, 0x80 }), Bytes({ 0xF4, 0x90, 0x80, 0x80 }),
        Bytes({ 0xF5 }), Bytes({ 0xFF }), Bytes({ 0xFE }), Bytes({ 0xEF, 0xBB, 0xBF }),
        Bytes({ 0xEF, 0xBF, 0xBE }), Bytes({ 0 }) };
    for (std::string const& bytes : broken) {
        names.push_back(bytes + suffix);
        names.push_back("Play" + bytes + suffix);
        names.push_back(suffix + bytes);
        names.push_back(bytes);
        // The suffix with a broken sequence in place of, or inside, its first characters.
        names.push_back(bytes + suffix.substr(1));
        names.push_back("_" + bytes + suffix.substr(1));
        names.push_back(suffix.substr(0, 4) + bytes + suffix.substr(4));
    }
    names.push_back(std::string("Play\0_Selected", 14));
    names.push_back(std::string("_Selected\0", 10));
    return names;
}

} // namespace

TEST(SelectedVariantNameTest, AgreesWithQtOnCraftedNames)
{
    for (std::string const& name : CraftedNames())
        EXPECT_EQ(QtAnswer(name), SelectedVariantName::Matches(name)) << testing::PrintToString(name);
}

TEST(SelectedVariantNameTest, MatchesExactlyTheCaseSensitiveSuffix)
{
    EXPECT_TRUE(SelectedVariantName::Matches("Play_Selected"));
    EXPECT_TRUE(SelectedVariantName::Matches("\xC3_Selected"));
    EXPECT_FALSE(SelectedVariantName::Matches("Play_selected"));
    EXPECT_FALSE(SelectedVariantName::Matches("Play_Selected "));
    EXPECT_FALSE(SelectedVariantName::Matches(""));
}
