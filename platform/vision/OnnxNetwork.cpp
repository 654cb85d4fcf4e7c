// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/OnnxNetwork_p.h"

#include "platform/Log.h"
#include "platform/vision/ModelFiles.h"

#include <QFile>
#include <QMutex>
#include <QSet>

#include <exception>

namespace lumaro::platform::detail {

namespace {

const QString kTag = QStringLiteral("VISION_INDEX");

std::optional<cv::dnn::Net> checked(cv::dnn::Net net, const QString& name)
{
    if (net.empty()) {
        Log::line(kTag, QStringLiteral("❌ 模型为空: ") + name);
        return std::nullopt;
    }
    return net;
}

} // namespace

std::optional<cv::dnn::Net> loadOnnxNetwork(const QString& path)
{
    try {
        return checked(cv::dnn::readNetFromONNX(QFile::encodeName(path).toStdString()), path);
    } catch (const std::exception& error) {
        Log::line(kTag, QStringLiteral("❌ 模型加载失败: ") + path + QStringLiteral(" (") +
                            QString::fromUtf8(error.what()) + QLatin1Char(')'));
    }
    return std::nullopt;
}

std::optional<cv::dnn::Net> loadOnnxNetwork(const QByteArray& bytes, const QString& nameForLog)
{
    try {
        return checked(cv::dnn::readNetFromONNX(bytes.constData(), size_t(bytes.size())), nameForLog);
    } catch (const std::exception& error) {
        Log::line(kTag, QStringLiteral("❌ 模型加载失败: ") + nameForLog + QStringLiteral(" (") +
                            QString::fromUtf8(error.what()) + QLatin1Char(')'));
    }
    return std::nullopt;
}

void reportMissingModel(const QString& signal, const QString& relativePath)
{
    static QMutex mutex;
    static QSet<QString> reported;
    {
        QMutexLocker lock(&mutex);
        if (reported.contains(signal))
            return;
        reported.insert(signal);
    }
    Log::line(kTag, QStringLiteral("⚠️ 未安装模型 %1，本次不做%2 (见 scripts/fetch-models.sh)")
                        .arg(relativePath, signal));
}

QString installedModel(const QString& signal, const QString& relativePath)
{
    const QString path = ModelFiles::find(relativePath);
    if (path.isEmpty())
        reportMissingModel(signal, relativePath);
    return path;
}

} // namespace lumaro::platform::detail
