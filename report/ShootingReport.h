// SPDX-License-Identifier: GPL-3.0-or-later
// The shooting report of a folder: exposures, pace, orientation, lenses, exposure settings and culling.
#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::report {

// One bar of a distribution: its label ("24 mm", "ISO 400", "f/2.8", "1/250 s") and how many exposures.
struct CountedValue
{
    QString label;
    int count = 0;
};

struct MinuteCount
{
    QDateTime minute; // the start of the minute, camera time
    int count = 0;
};

struct Burst
{
    QDateTime start;
    int frames = 0;
    double seconds = 0; // first to last frame
};

struct TimeGap
{
    QDateTime from; // the last exposure before the break
    QDateTime to;   // the first one after it
};

struct CameraUse
{
    QString name;   // "Canon EOS R5"
    QString serial; // empty when the files do not say
    int exposures = 0;
    // The camera's shutter actuation counter over this shoot, when its maker notes keep one.
    std::optional<qint64> firstShutterCount;
    std::optional<qint64> lastShutterCount;
    // Its running file number (EXIF ImageNumber, Canon file number), when given.
    std::optional<qint64> firstImageNumber;
    std::optional<qint64> lastImageNumber;
};

struct LensUse
{
    QString name;
    QString serial;
    int exposures = 0;
};

struct ShootingReport
{
    QString folder;
    bool deep = false;

    int files = 0;           // picture files read
    int unreadable = 0;      // picture files whose header could not be read
    int exposures = 0;       // shots: a JPEG and a RAW of one shot count once
    int pairedExposures = 0; // exposures kept as more than one file (JPEG + RAW, …)
    int exposuresWithoutTime = 0;

    std::optional<QDateTime> first;
    std::optional<QDateTime> last;
    double shootingMinutes = 0;         // first to last exposure
    double picturesPerMinute = 0;       // over the whole shooting time
    double activePicturesPerMinute = 0; // over the shooting time without the breaks
    std::optional<MinuteCount> busiestMinute;
    QList<MinuteCount> timeline; // every minute with at least one exposure, in order
    QList<Burst> bursts;
    int framesInBursts = 0;
    QList<TimeGap> gaps; // breaks of at least `breakMinutes`

    int landscape = 0;
    int portrait = 0;
    int square = 0;
    int orientationUnknown = 0;

    QList<CountedValue> focalLengths;
    bool focalLengthsAre35mm = false; // every focal length came as a 35 mm equivalent
    int focalLengthUnknown = 0;
    QList<CameraUse> cameras;
    QList<LensUse> lenses;
    QList<CountedValue> isos;
    QList<CountedValue> apertures;
    QList<CountedValue> shutterSpeeds;
    int flashFired = 0;
    int flashNotFired = 0;
    int flashUnknown = 0;

    // Culling, counted in exposures.
    int kept = 0;
    QMap<QString, int> taggedByColour;     // "red" … "purple"
    int tagged = 0;                        // exposures with at least one colour tag
    bool hasRatings = false;               // some file or sidecar carries a rating at all
    QMap<int, int> ratings;                // stars 1–5 → exposures; −1 rejected
    int rated = 0;                         // exposures with 1–5 stars
    std::optional<int> deletedThisSession; // known only to the app's window

    static constexpr double burstGapSeconds = 0.5;     // frames closer than this, when times have sub-seconds
    static constexpr double wholeSecondBurstGap = 1.0; // the same, when the camera writes whole seconds only
    static constexpr int burstMinimumFrames = 3;
    static constexpr int breakMinutes = 10;
};

} // namespace lumaro::report
