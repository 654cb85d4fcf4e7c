// SPDX-License-Identifier: GPL-3.0-or-later
// A shoot's report as the report tests build it: colour tags kept in memory, and the scan and build in one
// call.
#pragma once

#include "platform/FileTagStore.h"
#include "report/ReportBuilder.h"

#include <QMap>

namespace lumaro::testing {

// Colour tags kept in memory, as another program would have set them.
class MapTags final : public platform::FileTagStore
{
public:
    std::optional<QStringList> tags(const QString& path, QString*) const override
    {
        return m_tags.value(path);
    }
    bool setTags(const QString& path, const QStringList& tags, QString*) override
    {
        m_tags.insert(path, tags);
        return true;
    }

private:
    QMap<QString, QStringList> m_tags;
};

// The report of `folder` (and below it when `deep`), scanned with `tags`; an empty report when the folder
// cannot be listed.
inline report::ShootingReport reportOf(const QString& folder, bool deep = false,
                                       const platform::FileTagStore& tags = MapTags())
{
    const auto scan = report::ShootScanner(tags).scan(folder, deep, nullptr, {});
    return scan ? report::ReportBuilder::build(folder, deep, *scan) : report::ShootingReport{};
}

} // namespace lumaro::testing
