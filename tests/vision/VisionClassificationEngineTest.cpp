// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionClassificationEngine.h"

#include "vision/ClassificationMark.h"

#include <gtest/gtest.h>

using namespace lumaro::vision;

namespace {

struct MarkCase
{
    const char* rule;
    QStringList objects;
    QStringList scene;
    int width;
    int height;
    QString expected;
};

void PrintTo(const MarkCase& c, std::ostream* os)
{
    *os << c.rule;
}

QStringList L(std::initializer_list<const char*> words)
{
    QStringList list;
    for (const char* w : words)
        list << QString::fromUtf8(w);
    return list;
}

class MarkOfAPicture : public ::testing::TestWithParam<MarkCase>
{
};

TEST_P(MarkOfAPicture, FollowsPrecedenceAndRefinements)
{
    const MarkCase& c = GetParam();
    EXPECT_EQ(VisionClassificationEngine::shared().mark(c.objects, c.scene, c.width, c.height), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, MarkOfAPicture,
    ::testing::Values(
        MarkCase{"no labels", {}, {}, 800, 600, "MARK_UNTAG"},
        MarkCase{"people", L({"person"}), L({"person"}), 800, 600, "MARK_PEOPLE"},
        MarkCase{"clothing counts as people", L({"kimono"}), {}, 800, 600, "MARK_PEOPLE"},
        MarkCase{"people with screenshot", L({"person", "web_site"}), {}, 800, 600, "MARK_PEOPLE_SCREENSHOT"},
        MarkCase{"illustrated person is an illustration", L({"person", "comic_book"}), {}, 2000, 2000,
                 "MARK_ILLUSTRATION"},
        MarkCase{"people beat documents", L({"menu", "person"}), {}, 800, 600, "MARK_PEOPLE"},
        MarkCase{"people 1500x1500 is a portrait", L({"person"}), {}, 1500, 1500, "MARK_PEOPLE_PORTRAIT"},
        MarkCase{"people 1499x4000 is not", L({"person"}), {}, 1499, 4000, "MARK_PEOPLE"},
        MarkCase{"documents", L({"envelope"}), {}, 800, 600, "MARK_DOCUMENTS"},
        MarkCase{"documents 1000x3001 are long", L({"menu"}), {}, 1000, 3001, "MARK_DOCUMENTS_LONG"},
        MarkCase{"documents 1000x3000 are not", L({"menu"}), {}, 1000, 3000, "MARK_DOCUMENTS"},
        MarkCase{"票据 is a ticket whatever the shape", L({"menu", "票据"}), {}, 1000, 5000,
                 "MARK_DOCUMENTS_TICKET"},
        MarkCase{"ticket, any case", L({"Ticket"}), {}, 800, 600, "MARK_DOCUMENTS_TICKET"},
        MarkCase{"tickets is not ticket", L({"menu", "tickets"}), {}, 800, 600, "MARK_DOCUMENTS"},
        MarkCase{"ticket office is not ticket", L({"menu", "ticket office"}), {}, 800, 600, "MARK_DOCUMENTS"},
        MarkCase{"documents beat screenshot", L({"web_site", "book_jacket"}), {}, 800, 600, "MARK_DOCUMENTS"},
        MarkCase{"screenshot", L({"web_site"}), {}, 1170, 2532, "MARK_SCREENSHOT"},
        MarkCase{"structure beats outdoor", L({"lakeside", "church"}), {}, 800, 600, "MARK_STRUCTURE"},
        MarkCase{"a token in two trees", L({"cliff_dwelling"}), {}, 800, 600, "MARK_STRUCTURE"},
        MarkCase{"a facade's window shades are a building", L({"window_shade"}), {}, 800, 600,
                 "MARK_STRUCTURE"},
        MarkCase{"a theatre's curtain is a building", L({"theater_curtain"}), {}, 800, 600, "MARK_STRUCTURE"},
        MarkCase{"outdoor beats electronics", L({"laptop", "seashore"}), {}, 800, 600, "MARK_OUTDOOR"},
        MarkCase{"electronics beat furniture", L({"studio_couch", "monitor"}), {}, 800, 600, "MARK_ELECTRONICS"},
        MarkCase{"furniture beats illustration", L({"comic_book", "dining_table"}), {}, 800, 600,
                 "MARK_FURNITURE"},
        MarkCase{"illustration beats tools", L({"hammer", "comic_book"}), {}, 800, 600, "MARK_ILLUSTRATION"},
        MarkCase{"tools", L({"screwdriver"}), {}, 800, 600, "MARK_TOOLS"},
        MarkCase{"labels from the scene list count", {}, L({"volcano"}), 800, 600, "MARK_OUTDOOR"},
        MarkCase{"whole-string match only", L({"church tower"}), {}, 800, 600, "MARK_DIVERSE_CHURCH_TOWER"},
        MarkCase{"none words never mark", L({"other"}), {}, 800, 600, "MARK_DIVERSE_OTHER"},
        MarkCase{"diverse from the first label", L({"malamute", "eskimo_dog"}), {}, 800, 600,
                 "MARK_DIVERSE_MALAMUTE"},
        MarkCase{"blanks skipped, punctuation cleaned", L({"  ", "Sea-Turtle.v2"}), {}, 800, 600,
                 "MARK_DIVERSE_SEA_TURTLE_V2"},
        MarkCase{"line ends count as blank", L({"\n\t"}), L({"sea turtle"}), 800, 600, "MARK_DIVERSE_SEA_TURTLE"},
        MarkCase{"only the first non-blank label is tried", L({"!!!", "malamute"}), {}, 800, 600, "MARK_UNTAG"},
        MarkCase{"untrimmed label keeps inner and outer spaces as _", L({" hot pot "}), {}, 800, 600,
                 "MARK_DIVERSE__HOT_POT_"},
        MarkCase{"Chinese letters are kept", L({"小狗 (幼犬)"}), {}, 800, 600, "MARK_DIVERSE_小狗_幼犬"},
        MarkCase{"zero width is never long", L({"menu"}), {}, 0, 4000, "MARK_DOCUMENTS"}));

TEST(VisionTagMatcher, ATokenMayStandForSeveralCategories)
{
    const VisionTagMatcher matcher;
    const QSet<CategoryKey> both = matcher.tokenMap.value(QStringLiteral("cliff_dwelling"));
    EXPECT_TRUE(both.contains(CategoryKey::structure));
    EXPECT_TRUE(both.contains(CategoryKey::outdoor));
}

TEST(VisionTagMatcher, TitlesAndChildrenInheritTheirRootsCategory)
{
    const VisionTagMatcher matcher;
    EXPECT_EQ(matcher.categories({QStringLiteral("Tools & Utensils")}), QSet<CategoryKey>{CategoryKey::tools});
    EXPECT_EQ(matcher.categories({QStringLiteral("computer_monitor")}),
              QSet<CategoryKey>{CategoryKey::electronics});
    EXPECT_EQ(matcher.categories({QStringLiteral("FURNITURE & HOME")}), QSet<CategoryKey>{CategoryKey::furniture});
    EXPECT_TRUE(matcher.categories({QStringLiteral("monitor "), QStringLiteral("bald_eagle")}).isEmpty());
}

TEST(VisionTagMatcher, EveryTableIdentifierTheRulesNameIsPresent)
{
    const VisionTagMatcher matcher;
    for (const char* id : {"clothing_accessories", "structure_building", "documents_charts", "electronic_devices",
                           "consumer_electronics", "computer_monitor", "computer_keyboard", "optical_equipment",
                           "basket_container", "furniture & home", "structure & building", "documents & charts",
                           "consumer electronics", "electronic devices", "sports equipment", "tools & utensils"})
        EXPECT_TRUE(matcher.tokenMap.contains(QString::fromUtf8(id))) << id;
}

TEST(VisionClassificationEngine, AnInjectedTableDecides)
{
    VisionClassifierTag mountains{QStringLiteral("peaks"), QStringLiteral("山峰"), QStringLiteral("Peaks"),
                                  {QStringLiteral("matterhorn")}, {}};
    VisionClassifierTag towers{QStringLiteral("towers"), QStringLiteral("塔"), QStringLiteral("Towers"),
                               {QStringLiteral("matterhorn")}, {}};
    const VisionClassificationEngine engine({{&mountains, CategoryKey::outdoor}, {&towers, CategoryKey::structure}});
    EXPECT_EQ(engine.mark({QStringLiteral("Matterhorn")}, {}, 10, 10), QStringLiteral("MARK_STRUCTURE"));
    EXPECT_EQ(engine.mark({QStringLiteral("church")}, {}, 10, 10), QStringLiteral("MARK_DIVERSE_CHURCH"));
}

TEST(ClassificationMark, SixteenMarksInOrder)
{
    EXPECT_EQ(allMarkTexts().size(), 16u);
    EXPECT_EQ(markText(ClassificationMark::illustrationPeople), QStringLiteral("MARK_ILLUSTRATION_PEOPLE"));
    EXPECT_EQ(markText(ClassificationMark::documentsScreenshot), QStringLiteral("MARK_DOCUMENTS_SCREENSHOT"));
    EXPECT_EQ(markText(ClassificationMark::untag), QStringLiteral("MARK_UNTAG"));
    EXPECT_EQ(rawValue(CategoryKey::illustration), QStringLiteral("ILLUSTRATION_WORDS"));
}

} // namespace
