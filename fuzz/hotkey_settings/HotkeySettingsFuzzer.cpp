// SPDX-License-Identifier: GPL-3.0-or-later
// Stored key bindings ("HotkeyManager_Hotkeys"), current or older form, or a settings file edited by hand.
#include "browse/hotkeys/HotkeyManager.h"
#include "fuzz/FuzzScratch.h"
#include "platform/fakes/MemorySettingsStore.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    platform::MemorySettingsStore settings;
    settings.setBytes(browse::HotkeyManager::hotkeysKey, fuzz::bytesOf(data, size));
    browse::HotkeyManager manager(settings);
    for (auto it = manager.hotkeys().constBegin(); it != manager.hotkeys().constEnd(); ++it)
        (void)manager.action(it.value());
    (void)manager.actionForKey(Qt::Key_D, Qt::NoModifier);
    return 0;
}
