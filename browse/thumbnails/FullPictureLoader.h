// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes pictures at their full size for the 100 % loupe, the one on screen first, the next one ahead.
#pragma once

#include "platform/files/FileStamp.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace lumaro::browse {

// Main thread; the decoding runs on its own two threads, value in, image out, so the picture asked for never
// waits behind one decoded ahead. request() names what is wanted now: anything decoded or decoding for
// another file is dropped (a result that arrives for a file no longer wanted is thrown away, never shown), so
// at most the wanted pictures are held (a 24 MP picture takes about 100 MB). JPEG, PNG, TIFF, WebP and HEIC
// decode at full size; RAW files give their largest embedded preview.
class FullPictureLoader : public QObject
{
    Q_OBJECT
public:
    // Called on pool threads. A null image means the file could not be decoded.
    using DecodeFunction = std::function<QImage(const QString& path, int rotation)>;
    using RotationFunction = std::function<int(const QString& path)>;

    explicit FullPictureLoader(DecodeFunction decode = {}, QObject* parent = nullptr);
    ~FullPictureLoader() override;

    void setRotationFunction(RotationFunction rotation) { m_rotation = std::move(rotation); }
    // `current` first, then `ahead` (the pictures the user is likely to go to next), once `current` is in.
    void request(const QString& current, const QStringList& ahead = {});
    // Forgets everything (the loupe was closed, or a picture's pixels changed).
    void clear();
    // The folder is read again: failures are tried again, and so are images whose file's size or modification
    // time moved since they were decoded, at the next request().
    void refresh();

    std::optional<QImage> image(const QString& path) const;
    bool hasFailed(const QString& path) const { return m_failed.contains(path); }
    int runningCount() const { return int(m_running.size()); }

Q_SIGNALS:
    void ready(const QString& path);

private:
    // What is wanted now, read by a decode as it begins: one whose file is no longer wanted does nothing.
    struct Wanted
    {
        std::mutex mutex;
        QSet<QString> paths;
    };
    void startWanted();
    void start(const QString& path);
    void finish(const QString& path, quint64 epoch, const QImage& image, bool skipped,
                const std::optional<platform::FileStamp>& stamp);
    void publishWanted();

    DecodeFunction m_decode;
    RotationFunction m_rotation;
    QThreadPool m_pool;
    QStringList m_wanted;
    QHash<QString, QImage> m_images;
    QHash<QString, quint64> m_running; // path → the epoch it was started in
    QSet<QString> m_failed;
    QHash<QString, std::optional<platform::FileStamp>> m_stamps; // the held images' files as they were read
    std::shared_ptr<Wanted> m_shared = std::make_shared<Wanted>();
    quint64 m_epoch = 0; // bumped by clear(): results started before are dropped
};

} // namespace lumaro::browse
