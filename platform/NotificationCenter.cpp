// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NotificationCenter.h"

namespace lumaro::platform {

NotificationCenter& NotificationCenter::shared()
{
    static NotificationCenter center;
    return center;
}

void NotificationCenter::post(const QString& name, const QVariantMap& userInfo)
{
    Q_EMIT posted(name, userInfo);
}

} // namespace lumaro::platform
