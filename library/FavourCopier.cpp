// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourCopier.h"

#include "library/FavouritesSchema.h"

#include "platform/FileCopier.h"
#include "platform/Log.h"
#include "platform/SettingsStore.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace lumaro::library {

namespace {

const QString kTag = QStringLiteral("FavourCopier");
const QString kImportLocationKey = QStringLiteral("CardImportService_ImportLocation");

bool isSamePicture(const QFileInfo& a, const QFileInfo& b)
{
    return a.size() == b.size() && a.lastModified() == b.lastModified();
}

// The copy of `source` already in `folder`: under its own name, or under one of the "stem_N.ext" names a copy
// takes when another picture had the name first.
std::optional<QString> earlierCopy(const QDir& folder, const QFileInfo& source)
{
    const QString name = source.fileName();
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QString stem = dot > 0 ? name.left(dot) : name;
    const QString suffix = dot > 0 ? name.mid(dot) : QString();
    for (int n = 0;; ++n) {
        const QFileInfo candidate(folder.filePath(n == 0 ? name : QStringLiteral("%1_%2%3").arg(stem).arg(n).arg(suffix)));
        if (!candidate.exists())
            return std::nullopt;
        if (isSamePicture(candidate, source))
            return candidate.absoluteFilePath();
    }
}

} // namespace

const QString FavourCopier::enabledKey = QString::fromUtf8(FavouritesSchema::copyEnabledKey);
const QString FavourCopier::targetPositionKey = QStringLiteral("LMR_FlowFavCopyTargetPosition");

FavourCopier::FavourCopier(const platform::SettingsStore& settings)
    : m_settings(settings)
{
}

bool FavourCopier::isEnabled() const
{
    return m_settings.boolean(enabledKey).value_or(false);
}

QString FavourCopier::targetFolder() const
{
    const QString chosen = m_settings.string(targetPositionKey).value_or(QString());
    if (!chosen.trimmed().isEmpty())
        return QDir::cleanPath(chosen);
    // The import location is the cards module's setting; read by key, since library/ does not depend on cards/.
    QString importLocation = m_settings.string(kImportLocationKey).value_or(QString());
    if (importLocation.trimmed().isEmpty())
        importLocation = QDir(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)).filePath(QStringLiteral("Lumaro"));
    return QDir(importLocation).filePath(QStringLiteral("Favourites"));
}

std::optional<QString> FavourCopier::copy(const QString& picturePath) const
{
    const QFileInfo source(picturePath);
    if (!source.isFile()) {
        platform::Log::line(kTag, QStringLiteral("⚠️ favcp PNG 生成失败: ") + picturePath + QStringLiteral(" (not a file)"));
        return std::nullopt;
    }
    const QString folder = targetFolder();
    if (QFileInfo(folder).exists() && !QFileInfo(folder).isDir()) {
        platform::Log::line(kTag, QStringLiteral("⚠️ favcp PNG 移动失败: ") + folder + QStringLiteral(" is not a folder"));
        return std::nullopt;
    }
    if (!QDir().mkpath(folder)) {
        platform::Log::line(kTag, QStringLiteral("⚠️ favcp PNG 移动失败: cannot create ") + folder);
        return std::nullopt;
    }
    if (const auto existing = earlierCopy(QDir(folder), source))
        return existing;

    QString error;
    const auto written = platform::FileCopier::copyWithoutOverwriting(source.absoluteFilePath(), folder,
                                                                      source.fileName(), &error);
    if (!written) {
        platform::Log::line(kTag, QStringLiteral("⚠️ favcp PNG 生成失败: ") + picturePath + QStringLiteral(": ") + error);
        return std::nullopt;
    }
    platform::Log::line(kTag, QStringLiteral("✅ favcp: ") + *written);
    for (const QString& missed : platform::XmpSidecar::copyCompanions(source.absoluteFilePath(), *written))
        platform::Log::line(kTag, QStringLiteral("⚠️ favcp XMP: ") + missed);
    return written;
}

} // namespace lumaro::library
