// SPDX-License-Identifier: GPL-3.0-or-later
// Toggles one colour tag on a picture and keeps the browsing state's tags and annotations in step with the
// file.
#pragma once

#include "browse/state/ImageAnnotation.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::platform {
class FileTagStore;
}

namespace lumaro::browse {

class LMRModeState;

class PictureRater;

// Main thread (it updates the state). The file's other tags, set by other programs, are kept as they are; the
// colour is added at the end or removed wherever it is. A tag store that fails leaves file and state
// unchanged. The colours are also written as the labels of the picture's XMP sidecar, so editors show them; a
// sidecar that cannot be written is logged and the tag change stands.
class ColorAnnotationService
{
public:
    explicit ColorAnnotationService(platform::FileTagStore& tags, PictureRater* rater = nullptr);

    // The file's tags after the toggle, or nullopt when they could not be read or written.
    std::optional<QStringList> toggle(LMRModeState& state, const QString& folder, const QString& fileName,
                                      const QString& color);
    // Puts `tags` into the state's fileTags and imageAnnotations for `fileName`.
    static void applyToState(LMRModeState& state, const QString& fileName, const QStringList& tags);
    // The colour names among `tags`, in their order.
    static ImageAnnotation annotationFromTags(const QStringList& tags);

private:
    platform::FileTagStore& m_tags;
    PictureRater& m_rater;
};

} // namespace lumaro::browse
