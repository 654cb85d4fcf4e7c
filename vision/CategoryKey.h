// SPDX-License-Identifier: GPL-3.0-or-later
// The eleven word categories; each raw string is also the name of its word list.
#pragma once

#include <QString>

#include <array>

namespace lumaro::vision {

enum class CategoryKey {
    people,
    clothing,
    furniture,
    structure,
    documents,
    electronics,
    outdoor,
    tools,
    screenshot,
    illustration,
    none,
};

inline constexpr std::array<CategoryKey, 11> allCategoryKeys{
    CategoryKey::people,    CategoryKey::clothing,    CategoryKey::furniture,  CategoryKey::structure,
    CategoryKey::documents, CategoryKey::electronics, CategoryKey::outdoor,    CategoryKey::tools,
    CategoryKey::screenshot, CategoryKey::illustration, CategoryKey::none,
};

// "PEOPLE_WORDS", "CLOTHING_WORDS", …
QString rawValue(CategoryKey key);

} // namespace lumaro::vision
