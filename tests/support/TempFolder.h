// SPDX-License-Identifier: GPL-3.0-or-later
// A real temporary folder with helpers to fill it: plain files, small real pictures, sub-folders.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

namespace lumaro::testing {

class TempFolder
{
public:
    TempFolder();
    // Removes the folder by its bytes: QTemporaryDir leaves behind any name that is not valid UTF-8.
    ~TempFolder();

    QString path() const { return m_dir.path(); }
    QString filePath(const QString& relative) const { return m_dir.filePath(relative); }

    // Creates the file (and its folders) with `content`; returns its full path.
    QString write(const QString& relative, const QByteArray& content = QByteArrayLiteral("x"));
    // Writes (creating or replacing) the file named by its own bytes directly in the folder (a name that is not
    // UTF-8, which Qt's file classes cannot write); returns its path as FileNameCodec decodes it.
    QString writeNamedByBytes(const QByteArray& name, const QByteArray& content = QByteArrayLiteral("x"));
    QString makeFolder(const QString& relative);
    // A real picture of `size`, encoded by Qt in the format its suffix names (jpg, png, tiff, bmp, webp).
    QString writePicture(const QString& relative, QSize size = {64, 48}, QColor color = Qt::darkCyan);
    QByteArray read(const QString& relative) const;
    bool exists(const QString& relative) const;
    // Names directly inside `relative` (hidden ones too), sorted.
    QStringList entries(const QString& relative = {}) const;

private:
    QTemporaryDir m_dir;
};

// Runs the event loop until `done` holds or `timeoutMs` passes; returns whether it held. Waits on events,
// never on a fixed sleep.
bool waitUntil(const std::function<bool()>& done, int timeoutMs = 5000);

// The models folder beside the checkout (../shared/models), or empty when it is not there.
QString sharedModelsDir();

} // namespace lumaro::testing
