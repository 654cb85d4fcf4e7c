// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/metadata/Exiv2Setup.h"

#include <exiv2/exiv2.hpp>

#include <mutex>

namespace lumaro::platform {

namespace {

std::mutex xmpToolkitMutex;

void lockXmpToolkit(void*, bool lock)
{
    if (lock)
        xmpToolkitMutex.lock();
    else
        xmpToolkitMutex.unlock();
}

} // namespace

void prepareExiv2()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        Exiv2::XmpParser::initialize(&lockXmpToolkit, nullptr);
#ifdef EXV_ENABLE_BMFF
        Exiv2::enableBMFF(true);
#endif
        // darktable's own namespace, so its sidecars' labels can be written (reading registers it anyway).
        try {
            Exiv2::XmpProperties::registerNs("http://darktable.sf.net/", "darktable");
        } catch (const std::exception&) {
            // already known to this exiv2 build
        }
    });
}

} // namespace lumaro::platform
