// SPDX-License-Identifier: GPL-3.0-or-later
// Stored key bindings ("HotkeyManager_Hotkeys", current or older form), the viewer's and the histogram's own
// bindings, and the colour annotations kept between modes, as a settings file edited by hand may hold them:
// the same bytes under each key. Annotations read back must survive being stored again unchanged.
#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/hotkeys/ViewerHotkeys.h"
#include "browse/state/ImageAnnotation.h"
#include "fuzz/FuzzScratch.h"
#include "platform/fakes/MemorySettingsStore.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes = fuzz::bytesOf(data, size);
    platform::MemorySettingsStore settings;
    settings.setBytes(browse::HotkeyManager::hotkeysKey, bytes);
    settings.setBytes(browse::ViewerHotkeys::settingsKey, bytes);
    settings.setBytes(browse::HistogramHotkey::settingsKey, bytes);
    browse::HotkeyManager manager(settings);
    for (auto it = manager.hotkeys().constBegin(); it != manager.hotkeys().constEnd(); ++it)
        (void)manager.action(it.value());
    (void)manager.actionForKey(Qt::Key_D, Qt::NoModifier);
    const browse::ViewerHotkeys viewer(settings, manager);
    (void)viewer.actionForKey(Qt::Key_P, Qt::NoModifier);
    const browse::HistogramHotkey histogram(settings, manager);
    (void)histogram.matches(Qt::Key_H, Qt::NoModifier);

    const browse::ImageAnnotationMap annotations = browse::decodeAnnotations(bytes);
    fuzz::require(browse::decodeAnnotations(browse::encodeAnnotations(annotations)) == annotations,
                  "annotations stored again read back unchanged");
    return 0;
}
