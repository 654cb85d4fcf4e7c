// SPDX-License-Identifier: GPL-3.0-or-later
// Qt's own texts (file dialogs, message box buttons, context menus) in Chinese, like the rest of the window.
#pragma once

class QCoreApplication;

namespace lumaro::app {

// Main thread, once at start-up. Loads Qt's zh_CN catalogue from Qt's translations folder (Debian's
// qt6-translations-l10n) into the application; returns false when it is not installed, and Qt then speaks English.
bool installQtChineseTranslation(QCoreApplication& application);

} // namespace lumaro::app
