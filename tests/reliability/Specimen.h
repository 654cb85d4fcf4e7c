// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures that carry their own identity, so a test can find each one again wherever a command put it.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaro::testing {

// A real JPEG (Qt's encoder) whose comment segment reads "lumaro-id: <id>"; `shade` varies the pixels.
QByteArray jpegWithIdentity(const QString& id, int shade);
// A stand-in RAW file (a TIFF header, then the identity and filler); pairing and copying never decode it.
QByteArray rawWithIdentity(const QString& id);
// The identity a file carries, or nullopt (a foreign file, or one cut short before its comment).
std::optional<QString> identityIn(const QByteArray& bytes);
// What no metadata edit may change: for a JPEG the compressed picture (from its first scan to the end), for
// any other file every byte. Empty when a JPEG has no scan (cut short).
QByteArray payloadOf(const QByteArray& bytes);

} // namespace lumaro::testing
