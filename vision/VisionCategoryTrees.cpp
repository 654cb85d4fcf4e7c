// SPDX-License-Identifier: GPL-3.0-or-later
// The default tag trees of the eleven categories: the scene classifier's identifiers that belong to each,
// with common English and Chinese words. Identifiers that fit no tree (animals, food, vehicles) are left
// out on purpose: such a picture is named after its own first label ("MARK_DIVERSE_…").
#include "vision/VisionClassifierTag.h"

namespace lumaro::vision {

namespace {

using Tag = VisionClassifierTag;

Tag tag(const char* name, const char* cn, const char* en, QStringList synonyms, std::vector<Tag> children = {})
{
    return Tag{QString::fromUtf8(name), QString::fromUtf8(cn), QString::fromUtf8(en), std::move(synonyms),
               std::move(children)};
}

// The person detectors report a person as "person", and a picture with people in it as "people" (the
// ImageNet classifier has no class for people).
const Tag& peopleTree()
{
    static const Tag root = tag("people", "人物", "People",
        {"person", "people", "human", "face", "man", "woman", "child", "baby", "girl", "boy", "crowd", "selfie",
         "portrait", "人", "人像", "肖像", "自拍", "合影", "男人", "女人", "孩子"},
        {tag("athlete", "运动员", "Athletes", {"ballplayer", "player", "运动"}),
         tag("ceremony_people", "新人", "Weddings", {"groom", "bride", "wedding", "婚礼", "新娘", "新郎"}),
         tag("diver", "潜水员", "Divers", {"scuba_diver", "潜水"})});
    return root;
}

const Tag& clothingTree()
{
    static const Tag root = tag("clothing_accessories", "服饰", "Clothing & Accessories",
        {"clothing", "clothes", "apparel", "fashion", "outfit", "服装", "衣服", "穿搭", "时装"},
        {tag("garments", "衣物", "Garments",
             {"abaya", "academic_gown", "apron", "bikini", "brassiere", "cloak", "diaper",
              "fur_coat", "gown", "hoopskirt", "jean", "jersey", "kimono", "lab_coat", "maillot",
              "military_uniform", "miniskirt", "overskirt", "pajama", "poncho", "sarong", "suit",
              "sweatshirt", "swimming_trunks", "trench_coat", "vestment", "stole", "bulletproof_vest",
              "dress", "shirt", "jacket", "coat", "skirt", "连衣裙", "衬衫", "外套", "裙子", "西装", "和服"}),
         tag("headwear", "帽饰", "Headwear",
             {"bathing_cap", "bonnet", "cowboy_hat", "sombrero", "mortarboard", "shower_cap", "ski_mask",
              "wig", "hair_slide", "hat", "cap", "帽子"}),
         tag("footwear", "鞋履", "Footwear",
             {"clog", "cowboy_boot", "loafer", "running_shoe", "sandal", "sock", "christmas_stocking", "shoe",
              "shoes", "boots", "鞋", "靴子"}),
         // Only what is worn on the body: a purse, wallet, sunglasses or mittens lie on tables and in
         // shop windows as often as they are worn, and "cardigan" is also ImageNet's corgi.
         tag("accessories", "配饰", "Accessories",
             {"bolo_tie", "bow_tie", "windsor_tie", "feather_boa", "necklace",
              "tie", "项链", "领带"})});
    return root;
}

const Tag& furnitureTree()
{
    static const Tag root = tag("furniture_home", "家具家居", "Furniture & Home",
        {"furniture", "home", "interior", "room", "家具", "家居", "室内", "房间"},
        {tag("seating", "座椅", "Chairs & Sofas",
             {"studio_couch", "folding_chair", "rocking_chair", "barber_chair", "throne", "park_bench",
              "chair", "chairs", "sofa", "couch", "bench", "椅子", "沙发"}),
         tag("tables_storage", "桌柜", "Tables & Storage",
             {"dining_table", "desk", "bookcase", "china_cabinet", "chiffonier", "wardrobe", "chest",
              "medicine_chest", "entertainment_center", "file", "plate_rack", "table", "cabinet", "shelf",
              "桌子", "柜子", "书架"}),
         tag("beds", "床品", "Beds & Bedding",
             {"four_poster", "cradle", "crib", "bassinet", "quilt", "pillow", "sleeping_bag", "bed", "床",
              "枕头", "被子"}),
         tag("home_fittings", "家居陈设", "Home Fittings",
             {"table_lamp", "lampshade", "shower_curtain", "doormat",
              "prayer_rug", "fire_screen", "bathtub", "tub", "washbasin", "toilet_seat", "vase", "lamp",
              "curtain", "carpet", "灯", "窗帘", "地毯", "浴缸", "花瓶"})});
    return root;
}

// Window shades and a theatre's curtain are what ImageNet sees in facades and halls: parts of a building,
// not furnishings.
const Tag& structureTree()
{
    static const Tag root = tag("structure_building", "建筑", "Structure & Building",
        {"structure", "building", "architecture", "house", "tower", "bridge", "city", "street", "建筑", "房子", "楼", "桥",
         "城市", "街道"},
        {tag("landmarks", "地标", "Landmarks & Worship",
             {"church", "palace", "castle", "monastery", "mosque", "stupa", "dome", "bell_cote", "altar",
              "triumphal_arch", "obelisk", "megalith", "totem_pole", "cliff_dwelling", "temple", "教堂",
              "宫殿", "城堡", "寺庙", "塔"}),
         tag("public_buildings", "公共建筑", "Public Buildings",
             {"library", "cinema", "planetarium", "prison", "restaurant", "bakery", "barbershop", "bookshop",
              "butcher_shop", "confectionery", "grocery_store", "shoe_shop", "tobacco_shop", "toyshop",
              "stage", "shop", "store", "图书馆", "商店", "餐厅"}),
         tag("structures", "构筑物", "Bridges & Works",
             {"boathouse", "steel_arch_bridge", "suspension_bridge", "viaduct", "dam", "pier", "dock",
              "breakwater", "water_tower", "beacon", "drilling_platform", "lumbermill", "barn", "greenhouse",
              "apiary", "yurt", "mobile_home", "lighthouse", "灯塔", "码头", "大坝"}),
         tag("building_parts", "建筑构件", "Building Parts",
             {"tile_roof", "thatch", "vault", "patio", "fountain", "stone_wall", "chainlink_fence",
              "picket_fence", "worm_fence", "bannister", "sliding_door", "window_screen", "window_shade",
              "theater_curtain", "roof", "wall",
              "屋顶", "墙", "围栏"})});
    return root;
}

const Tag& documentsTree()
{
    static const Tag root = tag("documents_charts", "文档图表", "Documents & Charts",
        {"document", "documents", "paper", "text", "page", "receipt", "invoice", "ticket", "letter", "form",
         "chart", "table_chart", "文档", "文件", "票据", "发票", "收据", "车票", "门票", "图表", "表格", "合同"},
        {tag("printed_matter", "印刷品", "Printed Matter",
             {"menu", "envelope", "book_jacket", "crossword_puzzle", "binder", "packet", "book", "magazine",
              "newspaper", "菜单", "信封", "书", "杂志", "报纸"})});
    return root;
}

const Tag& electronicsTree()
{
    static const Tag root = tag("consumer_electronics", "数码电子", "Consumer Electronics",
        {"electronics", "device", "gadget", "电子产品", "数码", "设备"},
        {tag("electronic_devices", "电子设备", "Electronic Devices",
             {"laptop", "notebook", "desktop_computer", "hand_held_computer", "cellular_telephone",
              "dial_telephone", "pay_phone", "ipod", "modem", "printer", "photocopier", "hard_disc",
              "cd_player", "cassette_player", "tape_player", "radio", "loudspeaker", "microphone",
              "remote_control", "mouse", "joystick", "oscilloscope", "digital_watch", "digital_clock",
              "home_theater", "computer", "phone", "smartphone", "cell_phone", "remote", "电脑", "笔记本", "手机", "电话", "耳机"},
             {tag("computer_monitor", "显示器", "Monitors & Screens",
                  {"monitor", "screen", "television", "tv", "显示器", "电视", "屏幕"}),
              tag("computer_keyboard", "键盘", "Keyboards",
                  {"computer_keyboard", "typewriter_keyboard", "space_bar", "keyboard", "键盘"})}),
         tag("optical_equipment", "光学器材", "Optical Equipment",
             {"reflex_camera", "polaroid_camera", "lens_cap", "binoculars", "loupe", "projector", "tripod",
              "camera", "lens", "相机", "镜头", "望远镜"})});
    return root;
}

const Tag& outdoorTree()
{
    static const Tag root = tag("outdoor_nature", "户外风景", "Outdoor & Nature",
        {"outdoor", "nature", "landscape", "scenery", "mountain", "beach", "sea", "ocean", "lake", "river",
         "forest", "sky", "sunset", "snow", "户外", "风景", "自然", "山", "海", "海滩", "湖", "河", "森林",
         "天空", "日落", "雪"},
        {tag("landforms", "地貌", "Landforms",
             {"alp", "cliff", "valley", "volcano", "promontory", "geyser", "cliff_dwelling", "megalith",
              "山谷", "火山", "悬崖"}),
         tag("waterside", "水边", "Waterside",
             {"lakeside", "seashore", "sandbar", "coral_reef", "湖畔", "海岸", "珊瑚礁"})});
    return root;
}

const Tag& toolsTree()
{
    static const Tag root = tag("tools_utensils", "工具器具", "Tools & Utensils",
        {"tool", "tools", "utensil", "工具", "器具"},
        {tag("hand_tools", "手工具", "Hand Tools",
             {"hammer", "screwdriver", "power_drill", "chain_saw", "hatchet", "plane", "shovel", "broom",
              "plunger", "lawn_mower", "carpenters_kit", "can_opener", "corkscrew", "letter_opener", "rule",
              "slide_rule", "scale", "padlock", "combination_lock", "safety_pin", "screw", "nail", "chain",
              "hook", "paintbrush", "wrench", "锤子", "螺丝刀", "扳手", "钳子"}),
         tag("kitchen_utensils", "厨具", "Kitchen Utensils",
             {"cleaver", "ladle", "spatula", "wooden_spoon", "frying_pan", "wok", "caldron", "dutch_oven",
              "crock_pot", "measuring_cup", "mixing_bowl", "strainer", "teapot", "coffeepot", "厨具", "锅",
              "刀"}),
         tag("basket_container", "篮筐容器", "Baskets & Containers",
             {"shopping_basket", "hamper", "bucket", "crate", "barrel", "rain_barrel", "basket", "篮子",
              "桶"}),
         tag("sports_equipment", "运动器材", "Sports Equipment",
             {"barbell", "dumbbell", "balance_beam", "parallel_bars", "horizontal_bar", "punching_bag",
              "racket", "ski", "golf_ball", "tennis_ball", "soccer_ball", "basketball", "baseball",
              "volleyball", "rugby_ball", "croquet_ball", "ping_pong_ball", "puck", "football_helmet",
              "球", "球拍", "哑铃"})});
    return root;
}

const Tag& screenshotTree()
{
    static const Tag root = tag("screenshot", "截图", "Screenshots",
        {"web_site", "website", "screen_capture", "screenshot", "user_interface", "截图", "截屏", "屏幕截图",
         "网页"});
    return root;
}

const Tag& illustrationTree()
{
    static const Tag root = tag("illustration", "插画", "Illustration & Art",
        {"comic_book", "drawing", "painting", "cartoon", "sketch", "artwork", "anime", "插画", "漫画", "绘画",
         "素描", "动漫"});
    return root;
}

const Tag& noneTree()
{
    static const Tag root = tag("none", "未分类", "Uncategorised", {"other", "unknown", "其他"});
    return root;
}

} // namespace

const CategoryTable& defaultCategoryTable()
{
    static const CategoryTable table{
        {&peopleTree(), CategoryKey::people},
        {&clothingTree(), CategoryKey::clothing},
        {&furnitureTree(), CategoryKey::furniture},
        {&structureTree(), CategoryKey::structure},
        {&documentsTree(), CategoryKey::documents},
        {&electronicsTree(), CategoryKey::electronics},
        {&outdoorTree(), CategoryKey::outdoor},
        {&toolsTree(), CategoryKey::tools},
        {&screenshotTree(), CategoryKey::screenshot},
        {&illustrationTree(), CategoryKey::illustration},
        {&noneTree(), CategoryKey::none},
    };
    return table;
}

} // namespace lumaro::vision
