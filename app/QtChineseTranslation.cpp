// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/QtChineseTranslation.h"

#include "platform/Log.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace lumaro::app {

bool installQtChineseTranslation(QCoreApplication& application)
{
    auto* translator = new QTranslator(&application);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!translator->load(QLocale(QLocale::Chinese, QLocale::China), QStringLiteral("qtbase"), QStringLiteral("_"),
                          folder)) {
        platform::Log::line(QStringLiteral("MainWindow"), QStringLiteral("⚠️ 未找到Qt中文翻译: ") + folder);
        delete translator;
        return false;
    }
    QCoreApplication::installTranslator(translator);
    return true;
}

} // namespace lumaro::app
