// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardReco.h"

#include "platform/ImageMetadata.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <functional>

namespace lumaro::cards {

using platform::Log;

namespace {

bool isDirectory(const QString& mountPath, const QString& relative)
{
    return QFileInfo(QDir(mountPath).filePath(relative)).isDir();
}

bool isFile(const QString& mountPath, const QString& relative)
{
    return QFileInfo(QDir(mountPath).filePath(relative)).isFile();
}

QString volumeName(const QString& mountPath)
{
    return QFileInfo(QDir::cleanPath(mountPath)).fileName().toUpper();
}

// The tag the family's statistics lines carry.
QString statisticsTag(CameraType type)
{
    switch (type) {
    case CameraType::canonR:
        return QStringLiteral("CanonR");
    case CameraType::canonIXUS:
        return QStringLiteral("CanonIXUS");
    case CameraType::unknown:
        break;
    }
    return QStringLiteral("Card");
}

// Calls `visit` for each file directly in DCIM and in its camera folders (names starting with three digits).
// Dot-files are left out: cameras never write them, desktops leave them behind. False when DCIM cannot be
// listed.
bool forEachCameraFile(const QString& dcim, const std::function<void(const QFileInfo&)>& visit)
{
    static const QRegularExpression cameraFolder(QStringLiteral("^\\d{3}"));
    const QDir folder(dcim);
    if (!folder.isReadable())
        return false;
    const QFileInfoList entries =
        folder.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        if (entry.isFile()) {
            visit(entry);
            continue;
        }
        if (!entry.isDir() || !cameraFolder.match(entry.fileName()).hasMatch())
            continue;
        const QFileInfoList files = QDir(entry.filePath()).entryInfoList(QDir::Files, QDir::Name);
        for (const QFileInfo& file : files)
            visit(file);
    }
    return true;
}

bool isJpgSuffix(const QString& upperSuffix)
{
    return upperSuffix == QLatin1String("JPG") || upperSuffix == QLatin1String("JPEG");
}

// "Canon" + "Canon EOS R5" reads "Canon EOS R5": most cameras repeat the make in the model.
QString joinMakeModel(const QString& make, const QString& model)
{
    if (model.startsWith(make, Qt::CaseInsensitive))
        return model;
    return make + QLatin1Char(' ') + model;
}

QString cameraOfPicture(const QString& picture)
{
    const platform::ImageMetadata metadata = platform::ImageMetadata::read(picture);
    switch (metadata.status) {
    case platform::ImageMetadata::Status::cannotOpen:
        Log::raw(QStringLiteral("⚠️ EXIF 读取失败: 无法创建图像源 - ") + picture);
        return {};
    case platform::ImageMetadata::Status::noProperties:
        Log::raw(QStringLiteral("⚠️ EXIF 读取失败: 无法获取属性 - ") + picture);
        return {};
    case platform::ImageMetadata::Status::ok:
        break;
    }
    if (metadata.make.isEmpty() || metadata.model.isEmpty()) {
        Log::raw(QStringLiteral("⚠️ EXIF 中未找到完整的品牌/机型信息 - ") + picture);
        return {};
    }
    const QString joined = joinMakeModel(metadata.make, metadata.model);
    Log::raw(QStringLiteral("📷 EXIF 拍摄设备: ") + joined);
    return joined;
}

} // namespace

QString familyName(CameraType type)
{
    switch (type) {
    case CameraType::canonR:
        return QStringLiteral("Canon R ") + QStringLiteral("系列");
    case CameraType::canonIXUS:
        return QStringLiteral("Canon IXUS 系列");
    case CameraType::unknown:
        break;
    }
    return {};
}

std::optional<CardRecognition> CardReco::recognize(const QString& mountPath)
{
    std::optional<CardRecognition> result;
    if (isFile(mountPath, QStringLiteral("DCIM/CANONMSC/M3100.CTG")) &&
        isDirectory(mountPath, QStringLiteral("MISC")) && isDirectory(mountPath, QStringLiteral("DCIM")) &&
        isDirectory(mountPath, QStringLiteral("DCIM/CANONMSC"))) {
        result = CardRecognition{
            CameraType::canonR, mountPath,
            QStringLiteral("检测到 Canon R 系列格式化特征：/DCIM/CANONMSC/M3100.CTG 和 /MISC 目录存在")};
    } else if (isDirectory(mountPath, QStringLiteral("DCIM/131CANON"))) {
        QString information = QStringLiteral("检测到 Canon IXUS 系列格式化特征：/DCIM/131CANON 目录存在");
        if (volumeName(mountPath) == QLatin1String("CANON_DC"))
            information += QStringLiteral("，磁盘名称匹配 CANON_DC");
        result = CardRecognition{CameraType::canonIXUS, mountPath, information};
    }
    if (!result)
        return result;
    Log::raw(QStringLiteral("📷 存储卡识别成功: ") + familyName(result->cameraType));
    Log::raw(QStringLiteral("   挂载路径: ") + mountPath);
    Log::raw(QStringLiteral("   匹配信息: ") + result->matchInformation);
    return result;
}

QString CardReco::firstPicture(const QString& mountPath)
{
    QString first;
    forEachCameraFile(QDir(mountPath).filePath(QStringLiteral("DCIM")), [&first](const QFileInfo& file) {
        if (first.isEmpty() && isJpgSuffix(file.suffix().toUpper()))
            first = file.filePath();
    });
    return first;
}

DigitalCardStats CardReco::statistics(const QString& mountPath, CameraType type)
{
    DigitalCardStats stats;
    stats.cameraType = type;
    stats.rawFormat = type == CameraType::canonR ? QStringLiteral("CR3") : QString();
    stats.videoFormat = type == CameraType::canonR      ? QStringLiteral("MP4")
                        : type == CameraType::canonIXUS ? QStringLiteral("AVI")
                                                        : QString();
    const QString tag = statisticsTag(type);
    const QString dcim = QDir(mountPath).filePath(QStringLiteral("DCIM"));
    if (!QFileInfo(dcim).isDir()) {
        Log::raw(QStringLiteral("⚠️ ") + tag + QStringLiteral(" 统计: DCIM 目录不存在 - ") + mountPath);
        return stats;
    }
    int total = 0;
    const bool listed = forEachCameraFile(dcim, [&](const QFileInfo& file) {
        total += 1;
        const QString suffix = file.suffix().toUpper();
        if (isJpgSuffix(suffix))
            stats.jpgCount += 1;
        else if (!stats.rawFormat.isEmpty() && suffix == stats.rawFormat)
            stats.rawCount += 1;
        else if (!stats.videoFormat.isEmpty() && suffix == stats.videoFormat)
            stats.videoCount += 1;
    });
    if (!listed) {
        Log::raw(QStringLiteral("⚠️ ") + tag + QStringLiteral(" 统计: 无法读取 DCIM 目录内容 - ") +
                 QStringLiteral("permission denied: ") + dcim);
        return stats;
    }
    QString counts = QStringLiteral(", JPG: ") + QString::number(stats.jpgCount);
    if (type == CameraType::canonR)
        counts += QStringLiteral(", CR3: ") + QString::number(stats.rawCount) + QStringLiteral(", MP4: ") +
                  QString::number(stats.videoCount);
    else
        counts += QStringLiteral(", AVI: ") + QString::number(stats.videoCount);
    Log::raw(QStringLiteral("📊 ") + tag + QStringLiteral(" 存储卡统计: ") + mountPath + counts +
             QStringLiteral(", 文件总数: ") + QString::number(total));
    if (type != CameraType::unknown) {
        const QString picture = firstPicture(mountPath);
        if (!picture.isEmpty())
            stats.cameraMakeModel = cameraOfPicture(picture);
    }
    return stats;
}

QString CardReco::cameraMakeModel(const QString& mountPath)
{
    const QString picture = firstPicture(mountPath);
    return picture.isEmpty() ? QString() : cameraOfPicture(picture);
}

} // namespace lumaro::cards
