// SPDX-License-Identifier: GPL-3.0-or-later
// Writes stars, picks and colour labels into pictures' XMP sidecars, named as the settings say.
#pragma once

#include "browse/marks/RatingChange.h"
#include "platform/metadata/XmpSidecar.h"

#include <QString>

#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::browse {

// Any thread (the settings store is thread-safe; the files are written by XmpSidecar). The naming of new
// sidecars is kept under "LMR_SidecarNaming": "picture" (IMG_1.CR2.xmp, the default) or "stem" (IMG_1.xmp);
// an existing sidecar is always the one written, whatever its name.
class PictureRater
{
public:
    static inline const QString namingKey = QStringLiteral("LMR_SidecarNaming");

    static PictureRater& shared();
    explicit PictureRater(platform::SettingsStore& settings);

    platform::SidecarNaming naming() const;
    void setNaming(platform::SidecarNaming naming);

    // Reads the picture's marks, applies `change` and writes them. The new marks, or nullopt with `error`
    // (the sidecar is then as it was).
    std::optional<platform::PictureMarks> apply(const QString& picture, const RatingChange& change,
                                                QString* error = nullptr) const;
    bool writeColours(const QString& picture, const QStringList& colours, QString* error = nullptr) const;

private:
    platform::SettingsStore& m_settings;
};

} // namespace lumaro::browse
