// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/marks/PictureRater.h"

#include "platform/QSettingsStore.h"

namespace lumaro::browse {

using platform::SidecarNaming;

PictureRater& PictureRater::shared()
{
    static PictureRater rater(platform::QSettingsStore::shared());
    return rater;
}

PictureRater::PictureRater(platform::SettingsStore& settings) : m_settings(settings) {}

SidecarNaming PictureRater::naming() const
{
    return m_settings.string(namingKey) == QLatin1String("stem") ? SidecarNaming::stem
                                                                 : SidecarNaming::pictureName;
}

void PictureRater::setNaming(SidecarNaming naming)
{
    m_settings.setString(namingKey,
                         naming == SidecarNaming::stem ? QStringLiteral("stem") : QStringLiteral("picture"));
}

std::optional<platform::PictureMarks> PictureRater::apply(const QString& picture, const RatingChange& change,
                                                          QString* error) const
{
    const auto before = platform::XmpSidecar::read(picture, error);
    if (!before)
        return std::nullopt;
    const platform::PictureMarks after = change.appliedTo(*before);
    if (!platform::XmpSidecar::writeRating(picture, after.stars, after.flag, naming(), error))
        return std::nullopt;
    return after;
}

bool PictureRater::writeColours(const QString& picture, const QStringList& colours, QString* error) const
{
    return platform::XmpSidecar::writeColours(picture, colours, naming(), error);
}

} // namespace lumaro::browse
