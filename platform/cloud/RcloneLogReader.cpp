// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/RcloneLogReader.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

namespace lumaro::platform {

namespace {

// Converting a double outside the target's range is undefined behaviour, and a damaged line may hold 1e300.
template <typename Number> Number count(const QJsonObject& stats, const char* key)
{
    const qint64 value = stats.value(QLatin1String(key)).toInteger(-1);
    return value >= 0 && value <= std::numeric_limits<Number>::max() ? Number(value) : 0;
}

} // namespace

RcloneLogReader::RcloneLogReader(std::function<void(const RcloneProgress&)> progress)
    : m_progress(std::move(progress))
{
}

void RcloneLogReader::feed(const QByteArray& bytes)
{
    // What was pending holds no newline: only the new bytes are searched, so a long line fed in small
    // pieces costs no more than fed whole.
    qsizetype searchFrom = m_pending.size();
    m_pending += bytes;
    qsizetype start = 0;
    for (qsizetype end; (end = m_pending.indexOf('\n', searchFrom)) >= 0; searchFrom = start = end + 1)
        readLine(m_pending.sliced(start, end - start));
    m_pending.remove(0, start);
}

void RcloneLogReader::finish()
{
    readLine(m_pending);
    m_pending.clear();
}

void RcloneLogReader::readLine(const QByteArray& line)
{
    const QByteArray trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return;
    const QJsonDocument document = QJsonDocument::fromJson(trimmed);
    if (!document.isObject()) {
        m_lastPlainLine = QString::fromUtf8(trimmed);
        return;
    }
    const QJsonObject entry = document.object();
    const QString level = entry.value(QStringLiteral("level")).toString();
    if (level == QLatin1String("error") || level == QLatin1String("critical") ||
        level == QLatin1String("fatal")) {
        QString message = entry.value(QStringLiteral("msg")).toString().trimmed();
        const QString object = entry.value(QStringLiteral("object")).toString();
        if (!object.isEmpty())
            message = object + QStringLiteral(": ") + message;
        m_errors.append(message);
    }
    const QJsonObject stats = entry.value(QStringLiteral("stats")).toObject();
    if (stats.isEmpty())
        return;
    m_last.bytes = count<qint64>(stats, "bytes");
    m_last.totalBytes = count<qint64>(stats, "totalBytes");
    m_last.transfers = count<int>(stats, "transfers");
    m_last.errors = count<int>(stats, "errors");
    if (m_progress)
        m_progress(m_last);
}

} // namespace lumaro::platform
