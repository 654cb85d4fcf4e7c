// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/info/ShootingInfo.h"

#include "browse/state/ImageAnnotation.h"
#include "platform/FileTagStore.h"
#include "platform/FolderFiles.h"
#include "platform/files/FileNameCodec.h"
#include "platform/metadata/XmpSidecar.h"

#include <QJsonArray>
#include <QLocale>

#include <cmath>

namespace lumaro::browse {

namespace {

QString number(double value, int decimals)
{
    QString text = QString::number(value, 'f', decimals);
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text;
}

QString camera(const platform::CaptureMetadata& m)
{
    // Most makers repeat their name in the model ("Canon" + "Canon EOS R5").
    if (m.model.startsWith(m.make.section(QLatin1Char(' '), 0, 0), Qt::CaseInsensitive))
        return m.model;
    return QStringList{m.make, m.model}.join(QLatin1Char(' ')).trimmed();
}

QString sizeText(qint64 bytes)
{
    if (bytes >= 1024 * 1024)
        return number(double(bytes) / (1024.0 * 1024.0), 1) + QStringLiteral(" MB");
    return number(double(bytes) / 1024.0, 1) + QStringLiteral(" KB");
}

QString ratingText(const platform::PictureMarks& marks)
{
    QString text = QString(marks.stars, QChar(0x2605)) + QString(5 - marks.stars, QChar(0x2606));
    if (marks.flag == platform::PickFlag::picked)
        text += QStringLiteral(" 精选");
    else if (marks.flag == platform::PickFlag::rejected)
        text = QStringLiteral("废片");
    return text;
}

} // namespace

QString shutterText(double seconds)
{
    if (seconds <= 0)
        return {};
    if (seconds < 0.3)
        return QStringLiteral("1/%1 s").arg(qRound(1.0 / seconds));
    return number(seconds, 1) + QStringLiteral(" s");
}

ShootingInfo ShootingInfo::read(const QString& path, const platform::FileTagStore& tags)
{
    ShootingInfo info;
    info.path = path;
    const auto size = platform::FileNameCodec::isFile(path) ? platform::FolderFiles::sizeOf(path, &info.error)
                                                            : std::nullopt;
    if (!size) {
        info.error = QStringLiteral("no such file");
        return info;
    }
    info.fileSize = *size;
    info.tags = tags.tags(path).value_or(QStringList());
    info.metadata = platform::CaptureMetadata::read(path);
    info.readable = info.metadata.status != platform::CaptureMetadata::Status::cannotOpen;
    if (!info.readable)
        info.error = info.metadata.error;
    info.marks = platform::XmpSidecar::read(path).value_or(platform::PictureMarks{});
    return info;
}

QList<ShootingInfo::Fact> ShootingInfo::facts() const
{
    const platform::CaptureMetadata& m = metadata;
    QList<Fact> facts;
    auto add = [&facts](const char* key, const QString& label, const QString& value) {
        if (!value.isEmpty())
            facts.append({QLatin1String(key), label, value});
    };
    add("camera", QStringLiteral("相机"), camera(m));
    add("lens", QStringLiteral("镜头"), m.lens);
    if (m.focalLength) {
        QString focal = number(*m.focalLength, 1) + QStringLiteral(" mm");
        if (m.focalLength35mm && std::abs(*m.focalLength35mm - *m.focalLength) >= 1)
            focal += QStringLiteral(" (等效 %1 mm)").arg(*m.focalLength35mm);
        add("focalLength", QStringLiteral("焦距"), focal);
    }
    if (m.fNumber)
        add("aperture", QStringLiteral("光圈"), QStringLiteral("f/") + number(*m.fNumber, 1));
    if (m.exposureSeconds)
        add("shutter", QStringLiteral("快门"), shutterText(*m.exposureSeconds));
    if (m.iso)
        add("iso", QStringLiteral("ISO"), QString::number(*m.iso));
    if (m.exposureBias) {
        const double ev = std::round(*m.exposureBias * 10.0) / 10.0;
        add("exposureCompensation", QStringLiteral("曝光补偿"),
            (ev > 0 ? QStringLiteral("+") : QString()) + number(ev, 1) + QStringLiteral(" EV"));
    }
    if (m.flashFired)
        add("flash", QStringLiteral("闪光灯"),
            *m.flashFired ? QStringLiteral("闪光") : QStringLiteral("未闪光"));
    if (m.captured)
        add("captured", QStringLiteral("拍摄时间"),
            m.captured->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    if (m.width > 0 && m.height > 0)
        add("pixels", QStringLiteral("像素"),
            QStringLiteral("%1 × %2 (%3 MP)")
                .arg(m.uprightWidth())
                .arg(m.uprightHeight())
                .arg(number(double(m.width) * m.height / 1e6, 1)));
    if (fileSize >= 0)
        add("fileSize", QStringLiteral("文件大小"), sizeText(fileSize));
    add("colours", QStringLiteral("颜色标签"), annotationFromTags(tags).colors.join(QStringLiteral(", ")));
    add("rating", QStringLiteral("评级"), ratingText(marks));
    return facts;
}

QJsonObject ShootingInfo::toJson() const
{
    const platform::CaptureMetadata& m = metadata;
    QJsonObject json{{QStringLiteral("file"), path}, {QStringLiteral("readable"), readable}};
    auto put = [&json](const char* key, const QJsonValue& value) { json.insert(QLatin1String(key), value); };
    if (!error.isEmpty())
        put("error", error);
    if (!m.make.isEmpty() || !m.model.isEmpty())
        put("camera", camera(m));
    if (!m.lens.isEmpty())
        put("lens", m.lens);
    if (m.focalLength)
        put("focalLength", *m.focalLength);
    if (m.focalLength35mm)
        put("focalLength35mm", *m.focalLength35mm);
    if (m.fNumber)
        put("aperture", *m.fNumber);
    if (m.exposureSeconds)
        put("shutterSeconds", *m.exposureSeconds);
    if (m.iso)
        put("iso", *m.iso);
    if (m.exposureBias)
        put("exposureCompensation", *m.exposureBias);
    if (m.flashFired)
        put("flashFired", *m.flashFired);
    if (m.captured)
        put("captured", m.captured->toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz")));
    if (m.width > 0 && m.height > 0) {
        put("width", m.uprightWidth());
        put("height", m.uprightHeight());
    }
    if (fileSize >= 0)
        put("fileSize", fileSize);
    put("colours", QJsonArray::fromStringList(annotationFromTags(tags).colors));
    put("stars", marks.stars);
    put("flag", marks.flag == platform::PickFlag::picked     ? QStringLiteral("picked")
                : marks.flag == platform::PickFlag::rejected ? QStringLiteral("rejected")
                                                             : QStringLiteral("none"));
    return json;
}

} // namespace lumaro::browse
