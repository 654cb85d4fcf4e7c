// SPDX-License-Identifier: GPL-3.0-or-later
// A weather service's answer as the network may deliver it (cut short, of another shape, hostile): read into
// the calendar's days, each day then looked up and put into words.
#include "fuzz/FuzzScratch.h"
#include "home/Forecast.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::optional<home::Forecast> forecast = home::Forecast::parse(fuzz::bytesOf(data, size));
    if (!forecast)
        return 0;
    for (const home::DayForecast& day : forecast->days) {
        (void)forecast->day(day.date);
        (void)home::weatherText(day.weatherCode);
    }
    return 0;
}
