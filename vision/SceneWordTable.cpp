// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/SceneWordTable.h"

#include <QHash>
#include <QSet>

namespace lumaro::vision {

namespace {

const QString kOutdoor = QStringLiteral("outdoor");
const QString kLandscape = QStringLiteral("landscape");
const QString kSky = QStringLiteral("sky");
const QString kIndoor = QStringLiteral("indoor");
const QString kStructure = QStringLiteral("structure");

QHash<QString, QStringList> buildTable()
{
    QHash<QString, QStringList> table;
    const auto add = [&table](std::initializer_list<const char*> labels, const QStringList& words) {
        for (const char* label : labels)
            table[QString::fromLatin1(label)] += words;
    };
    // ImageNet's landforms and waters, and what is only seen on them.
    add({"alp", "cliff", "valley", "volcano", "promontory", "lakeside", "seashore", "sandbar", "geyser",
         "coral_reef", "rapeseed", "hay", "dam", "breakwater"},
        {kOutdoor, kLandscape});
    add({"canoe", "yawl", "schooner", "pirate", "fireboat", "liner", "container_ship", "catamaran",
         "trimaran", "speedboat", "lifeboat", "paddle", "dogsled", "ski", "snowmobile", "mountain_tent",
         "pier", "boathouse"},
        {kOutdoor});
    // ImageNet's "wing" is an airliner's wing seen from its window, over the land or the clouds.
    add({"airliner", "parachute", "airplane", "kite", "wing"}, {kOutdoor, kSky});
    add({"surfboard", "skis", "snowboard", "park_bench", "worm_fence", "picket_fence"}, {kOutdoor});
    // Streets and the things that stand in them.
    add({"street_sign", "traffic_light", "stop_sign", "parking_meter", "fire_hydrant"},
        {kOutdoor, kStructure});
    // Rooms.
    add({"couch", "bed", "dining_table", "toilet", "tv", "microwave", "oven", "refrigerator", "sink",
         "studio_couch", "bookcase", "entertainment_center", "home_theater", "wardrobe", "four_poster"},
        {kIndoor});
    return table;
}

QSet<QString> setOf(std::initializer_list<const char*> labels)
{
    QSet<QString> set;
    for (const char* label : labels)
        set.insert(QString::fromLatin1(label));
    return set;
}

const QSet<QString>& landforms()
{
    static const QSet<QString> words =
        setOf({"alp", "cliff", "valley", "volcano", "promontory", "lakeside", "seashore", "sandbar", "geyser",
               "rapeseed", "hay", "breakwater", "dam", "maze", "megalith", "cliff_dwelling"});
    return words;
}

const QSet<QString>& openAirThings()
{
    static const QSet<QString> words =
        setOf({"park_bench",        "worm_fence",    "picket_fence",
               "stone_wall",        "viaduct",       "suspension_bridge",
               "steel_arch_bridge", "barn",          "yurt",
               "mountain_tent",     "apiary",        "totem_pole",
               "water_tower",       "mountain_bike", "snowmobile",
               "dogsled",           "ski",           "parachute",
               "airliner",          "wing"})
            .unite(setOf({"pier", "dock", "boathouse", "beacon", "canoe", "paddle", "lifeboat", "speedboat",
                          "schooner", "yawl", "catamaran", "trimaran", "wreck", "coral_reef"}))
            // Ships are seen on open water; ImageNet's "pirate" is a pirate ship (and what it takes a line
            // of pylons and wires against the sky for).
            .unite(setOf({"pirate", "fireboat", "liner", "container_ship"}))
            // A terrace, a caravan and a cart stand out of doors: a park's path and benches under trees
            // spread over these and the waters' classes.
            .unite(setOf({"patio", "mobile_home", "oxcart", "horse_cart"}))
            // Masts and dishes against the sky: a bridge's cables and a line of pylons come out as these.
            .unite(setOf({"pole", "flagpole", "maypole", "solar_dish", "radio_telescope"}));
    return words;
}

// ImageNet's rooms, halls and shops, and the fittings seen only inside them.
const QSet<QString>& interiors()
{
    static const QSet<QString> words =
        setOf({"library", "restaurant", "barbershop", "bookshop", "butcher_shop", "confectionery",
               "grocery_store", "shoe_shop", "tobacco_shop", "toyshop", "bakery", "stage", "theater_curtain",
               "altar", "vault"})
            .unite(setOf({"shoji",          "window_shade",  "sliding_door",  "bannister",
                          "studio_couch",   "four_poster",   "dining_table",  "bookcase",
                          "china_cabinet",  "wardrobe",      "chiffonier",    "entertainment_center",
                          "home_theater",   "table_lamp",    "lampshade",     "prayer_rug",
                          "fire_screen",    "folding_chair", "rocking_chair", "barber_chair",
                          "throne",         "grand_piano",   "upright",       "desk",
                          "crib",           "cradle",        "bassinet",      "quilt",
                          "medicine_chest", "washbasin",     "bathtub",       "tub",
                          "shower_curtain", "toilet_seat",   "refrigerator",  "microwave",
                          "dishwasher",     "stove"}));
    return words;
}

} // namespace

bool SceneWordTable::isInterior(const QString& identifier)
{
    return interiors().contains(identifier);
}

bool SceneWordTable::isOpenAir(const QString& identifier)
{
    return landforms().contains(identifier) || openAirThings().contains(identifier);
}

bool SceneWordTable::isLandform(const QString& identifier)
{
    return landforms().contains(identifier);
}

QStringList SceneWordTable::sceneWordsFor(const QString& identifier)
{
    static const QHash<QString, QStringList> table = buildTable();
    return table.value(identifier);
}

bool SceneWordTable::needsLargeBox(const QString& cocoLabel)
{
    static const QSet<QString> rooms{
        QStringLiteral("chair"),        QStringLiteral("couch"),        QStringLiteral("bed"),
        QStringLiteral("dining_table"), QStringLiteral("toilet"),       QStringLiteral("tv"),
        QStringLiteral("laptop"),       QStringLiteral("mouse"),        QStringLiteral("remote"),
        QStringLiteral("keyboard"),     QStringLiteral("cell_phone"),   QStringLiteral("microwave"),
        QStringLiteral("oven"),         QStringLiteral("refrigerator"), QStringLiteral("sink"),
        QStringLiteral("bench"),        QStringLiteral("vase"),         QStringLiteral("clock"),
    };
    return rooms.contains(cocoLabel);
}

bool SceneWordTable::isIgnoredObject(const QString& cocoLabel)
{
    return cocoLabel == QLatin1String("person") || cocoLabel == QLatin1String("book");
}

bool SceneWordTable::isWornItem(const QString& identifier)
{
    static const QSet<QString> worn{
        QStringLiteral("abaya"),        QStringLiteral("academic_gown"),
        QStringLiteral("apron"),        QStringLiteral("bikini"),
        QStringLiteral("brassiere"),    QStringLiteral("cloak"),
        QStringLiteral("diaper"),       QStringLiteral("fur_coat"),
        QStringLiteral("gown"),         QStringLiteral("hoopskirt"),
        QStringLiteral("jean"),         QStringLiteral("jersey"),
        QStringLiteral("kimono"),       QStringLiteral("lab_coat"),
        QStringLiteral("maillot"),      QStringLiteral("military_uniform"),
        QStringLiteral("miniskirt"),    QStringLiteral("overskirt"),
        QStringLiteral("pajama"),       QStringLiteral("poncho"),
        QStringLiteral("sarong"),       QStringLiteral("suit"),
        QStringLiteral("sweatshirt"),   QStringLiteral("swimming_trunks"),
        QStringLiteral("trench_coat"),  QStringLiteral("vestment"),
        QStringLiteral("stole"),        QStringLiteral("bulletproof_vest"),
        QStringLiteral("bathing_cap"),  QStringLiteral("bonnet"),
        QStringLiteral("cowboy_hat"),   QStringLiteral("sombrero"),
        QStringLiteral("mortarboard"),  QStringLiteral("shower_cap"),
        QStringLiteral("ski_mask"),     QStringLiteral("wig"),
        QStringLiteral("hair_slide"),   QStringLiteral("clog"),
        QStringLiteral("cowboy_boot"),  QStringLiteral("loafer"),
        QStringLiteral("running_shoe"), QStringLiteral("sandal"),
        QStringLiteral("sock"),         QStringLiteral("christmas_stocking"),
        QStringLiteral("bolo_tie"),     QStringLiteral("bow_tie"),
        QStringLiteral("windsor_tie"),  QStringLiteral("feather_boa"),
        QStringLiteral("necklace"),     QStringLiteral("tie"),
        QStringLiteral("ballplayer"),   QStringLiteral("groom"),
        QStringLiteral("scuba_diver"),
    };
    return worn.contains(identifier);
}

} // namespace lumaro::vision
