// SPDX-License-Identifier: GPL-3.0-or-later
// The system's time-zone table (tzdata's zone1970.tab) as an old, edited or damaged package may leave it: every
// city read lies on the globe, has a zone and a name to choose it by, and is found again by that name.
#include "fuzz/FuzzScratch.h"
#include "home/CityList.h"

#include <cmath>

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString table = fuzz::FuzzScratch::write(QStringLiteral("zone1970.tab"), fuzz::bytesOf(data, size));
    const QList<home::City> cities = home::CityList::read(table);
    for (const home::City& city : cities) {
        fuzz::require(std::abs(city.position.latitude) <= 90 && std::abs(city.position.longitude) <= 180,
                      "a city lies on the globe");
        fuzz::require(!city.timeZone.isEmpty() && !city.name.trimmed().isEmpty(),
                      "a city has a zone and a name to be chosen by");
        fuzz::require(home::CityList::find(cities, city.name).has_value(), "a city is found by its name");
    }
    return 0;
}
