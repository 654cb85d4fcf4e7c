// SPDX-License-Identifier: GPL-3.0-or-later
// What a picture's header says about the moment it was taken: camera, lens, time, exposure, counters, rating.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace lumaro::platform {

// Read from the EXIF, maker notes and XMP of JPEG, TIFF, HEIF and RAW files (CR2, CR3, NEF, ARW, RAF, ORF,
// RW2, DNG, …) and of XMP sidecar files, through exiv2; only the headers are read, never the pixels. A field
// the file does not carry stays empty. Thread-safe, blocking: meant for pool threads.
struct CaptureMetadata
{
    enum class Status
    {
        ok,         // the header was read; any field may still be empty
        cannotOpen, // missing, unreadable, truncated or not a picture
        noMetadata, // a picture without EXIF or XMP
    };

    Status status = Status::cannotOpen;
    QString error; // the reader's reason when status is not ok

    QString make;
    QString model;
    QString bodySerial; // the camera's serial number (EXIF or maker notes)
    QString lens;       // the lens model, from EXIF or the maker notes' lens tables
    QString lensSerial;

    // The camera's own clock, as written (no time zone): DateTimeOriginal with its sub-seconds. The QDateTime
    // is in UTC only so that no daylight-saving jump of this machine can shift it.
    std::optional<QDateTime> captured;
    bool hasSubSeconds = false;

    int orientation = 1; // EXIF orientation 1–8
    int width = 0;       // stored pixels, before the orientation is applied; 0 when unknown
    int height = 0;

    std::optional<double> focalLength;  // mm
    std::optional<int> focalLength35mm; // mm, 35 mm equivalent, when the file gives it
    std::optional<int> iso;
    std::optional<double> fNumber;
    std::optional<double> exposureSeconds;
    std::optional<double> exposureBias; // EV, as the photographer dialled it
    std::optional<bool> flashFired;

    // The camera's running file or frame number (EXIF ImageNumber, Canon file number, …): tells apart two
    // shots taken in the same instant, and finds the JPEG and RAW of one shot.
    std::optional<qint64> imageNumber;
    // The camera's shutter actuation counter, where its maker notes keep one (Nikon, Pentax).
    std::optional<qint64> shutterCount;
    // xmp:Rating (or EXIF Rating): 0–5, −1 for rejected.
    std::optional<int> rating;

    // Upright size after the orientation is applied.
    int uprightWidth() const { return orientation >= 5 && orientation <= 8 ? height : width; }
    int uprightHeight() const { return orientation >= 5 && orientation <= 8 ? width : height; }

    static CaptureMetadata read(const QString& path);
};

} // namespace lumaro::platform
