// SPDX-License-Identifier: GPL-3.0-or-later
#include "rolls/AlbumPage.h"

#include "platform/DeviceIdentity.h"

#include <QUuid>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

using namespace lumaro::rolls;

namespace {

// Names a camera, a phone or a person gives files: the page must stay well-formed and show each as it is.
TEST(AlbumPage, IsWellFormedAndCaptionsEveryNameAsItIs)
{
    const QList<StagedPicture> pictures{
        {QStringLiteral("IMG_0001.JPG"),
         QStringLiteral("IMG_0001-1"),
         {},
         QStringLiteral("IMG_0001"),
         {QStringLiteral("red")}},
        {QStringLiteral("a <b> & \"c\".jpg"),
         QStringLiteral("a__b_____c_-2"),
         {},
         QStringLiteral("a <b> & \"c\""),
         {QStringLiteral("green"), QStringLiteral("Work")}},
        {QStringLiteral("婚礼 ]]> 01.jpg"),
         QStringLiteral("_____01-3"),
         QStringLiteral("_____01-3.jpg"),
         QStringLiteral("婚礼 ]]> 01"),
         {}},
    };
    const QString html = AlbumPage::html(QStringLiteral("Ann & Bo's <wedding>"), pictures);

    QXmlStreamReader xml(html);
    QStringList captions, images, filters;
    QString title;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("title"))
            title = xml.readElementText();
        else if (xml.name() == QLatin1String("img"))
            images << xml.attributes().value(QStringLiteral("src")).toString();
        else if (xml.name() == QLatin1String("figcaption") || (xml.name() == QLatin1String("button")))
            (xml.name() == QLatin1String("button") ? filters : captions)
                << xml.readElementText(QXmlStreamReader::IncludeChildElements);
    }
    ASSERT_FALSE(xml.hasError()) << xml.errorString().toStdString() << " at line " << xml.lineNumber();
    EXPECT_EQ(title, QStringLiteral("Ann & Bo's <wedding>"));
    EXPECT_EQ(captions, (QStringList{QStringLiteral("IMG_0001"), QStringLiteral("a <b> & \"c\""),
                                     QStringLiteral("婚礼 ]]> 01")}));
    EXPECT_EQ(images, (QStringList{QStringLiteral("t/IMG_0001-1.jpg"), QStringLiteral("t/a__b_____c_-2.jpg"),
                                   QStringLiteral("t/_____01-3.jpg")}));
    // Only colours some picture has are offered, after "all"; other tag names are not colours.
    EXPECT_EQ(filters, (QStringList{QStringLiteral("全部"), QStringLiteral("red"), QStringLiteral("green")}));
    EXPECT_TRUE(html.contains(QStringLiteral("href=\"o/_____01-3.jpg\"")));
}

TEST(DeviceIdentity, IsOneRandomIdentifierKeptForTheInstall)
{
    QString error;
    const QString first = lumaro::platform::DeviceIdentity::identifier(&error);
    EXPECT_FALSE(QUuid::fromString(first).isNull()) << first.toStdString() << error.toStdString();
    EXPECT_EQ(lumaro::platform::DeviceIdentity::identifier(), first);
}

} // namespace
