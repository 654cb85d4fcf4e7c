// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TempFolder.h"

#include "platform/files/FileNameCodec.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QThread>

#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace lumaro::testing {

TempFolder::TempFolder()
{
    m_dir.setAutoRemove(true);
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(QFile::encodeName(m_dir.path()).toStdString(), ignored);
}

QString TempFolder::write(const QString& relative, const QByteArray& content)
{
    const QString full = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(full).absolutePath());
    QFile file(full);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("TempFolder: cannot write %s", qPrintable(full));
    return full;
}

QString TempFolder::writeNamedByBytes(const QByteArray& name, const QByteArray& content)
{
    const QByteArray full = platform::FileNameCodec::encode(m_dir.path()) + '/' + name;
    const int fd = ::open(full.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0 || ::write(fd, content.constData(), size_t(content.size())) != content.size())
        qFatal("TempFolder: cannot write %s", full.constData());
    ::close(fd);
    return platform::FileNameCodec::decode(full);
}

QString TempFolder::makeFolder(const QString& relative)
{
    const QString full = m_dir.filePath(relative);
    QDir().mkpath(full);
    return full;
}

QString TempFolder::writePicture(const QString& relative, QSize size, QColor color)
{
    const QString full = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(full).absolutePath());
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    // A brighter top-left quarter, so orientation and crop mistakes show up when a test decodes the result.
    for (int y = 0; y < size.height() / 2; ++y)
        for (int x = 0; x < size.width() / 2; ++x)
            image.setPixelColor(x, y, Qt::white);
    const QByteArray format = QFileInfo(full).suffix().toLower().toLatin1();
    if (!image.save(full, format.isEmpty() ? "png" : format.constData()))
        qFatal("TempFolder: cannot encode %s", qPrintable(full));
    return full;
}

QByteArray TempFolder::read(const QString& relative) const
{
    QFile file(m_dir.filePath(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool TempFolder::exists(const QString& relative) const
{
    return QFileInfo::exists(m_dir.filePath(relative));
}

QStringList TempFolder::entries(const QString& relative) const
{
    QStringList names = QDir(m_dir.filePath(relative))
                            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    names.sort();
    return names;
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    return true;
}

QString sharedModelsDir()
{
    const QString fromBuild = qEnvironmentVariable("LUMARO_TEST_MODELS_DIR");
    if (!fromBuild.isEmpty() && QFileInfo(fromBuild).isDir())
        return fromBuild;
#ifdef LUMARO_SHARED_MODELS_DIR
    if (const QString beside = QStringLiteral(LUMARO_SHARED_MODELS_DIR); QFileInfo(beside).isDir())
        return beside;
#endif
    return {};
}

} // namespace lumaro::testing
