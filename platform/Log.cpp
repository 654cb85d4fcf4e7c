// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Log.h"

#include <cstdio>
#include <mutex>

namespace lumaro::platform {

namespace {

std::mutex& sinkMutex()
{
    static std::mutex mutex;
    return mutex;
}

void writeTo(FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

Log::Sink& currentSink()
{
    static Log::Sink sink;
    return sink;
}

} // namespace

void Log::line(const QString& tag, const QString& message)
{
    raw(tag + QStringLiteral(" - ") + message);
}

void Log::raw(const QString& text)
{
    std::lock_guard lock(sinkMutex());
    if (currentSink()) {
        currentSink()(text);
        return;
    }
    writeTo(stdout, text);
}

void Log::setSink(Sink sink)
{
    std::lock_guard lock(sinkMutex());
    currentSink() = std::move(sink);
}

void Log::toStandardError()
{
    setSink([](const QString& text) { writeTo(stderr, text); });
}

void Log::silence()
{
    setSink([](const QString&) {});
}

} // namespace lumaro::platform
