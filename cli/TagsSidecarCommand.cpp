// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli tags in lumaro-cli-exif: a toggled colour goes into the XMP sidecar as well.
#include "cli/Commands.h"
#include "cli/TagsCommand.h"

#include "browse/marks/PictureRater.h"
#include "browse/state/ImageAnnotation.h"

namespace lumaro::cli {

int runTags(const QStringList& arguments)
{
    return runTagsWith(arguments, [](const QString& file, const QStringList& tags, QString* error) {
        return browse::PictureRater::shared().writeColours(file, browse::annotationFromTags(tags).colors,
                                                           error);
    });
}

} // namespace lumaro::cli
