// SPDX-License-Identifier: GPL-3.0-or-later
// Stars, picks and colours in XMP sidecars, checked with exiv2's own command-line reader.
#include "platform/metadata/XmpSidecar.h"

#include "tests/support/TempFolder.h"

#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

namespace {

// `exiv2 -px FILE` as key → value, the way another program sees the sidecar.
QMap<QString, QString> exiv2Properties(const QString& file)
{
    QProcess exiv2;
    exiv2.start(QStringLiteral("exiv2"), {QStringLiteral("-px"), file});
    exiv2.waitForFinished();
    QMap<QString, QString> properties;
    for (const QString& line : QString::fromUtf8(exiv2.readAllStandardOutput()).split(QLatin1Char('\n'))) {
        const QStringList words = line.simplified().split(QLatin1Char(' '));
        if (words.size() >= 4)
            properties.insert(words.at(0), words.mid(3).join(QLatin1Char(' ')));
    }
    return properties;
}

// A sidecar as darktable leaves one: its history (a sequence of structures), keywords, its own labels.
const QByteArray kDarktableSidecar = R"(<?xml version="1.0" encoding="UTF-8"?>
<x:xmpmeta xmlns:x="adobe:ns:meta/" x:xmptk="XMP Core 4.4.0-Exiv2">
 <rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">
  <rdf:Description rdf:about="" xmlns:xmp="http://ns.adobe.com/xap/1.0/"
    xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:darktable="http://darktable.sf.net/"
    xmp:Rating="2" darktable:xmp_version="5" darktable:auto_presets_applied="1">
   <dc:subject><rdf:Bag><rdf:li>wedding</rdf:li><rdf:li>first dance</rdf:li></rdf:Bag></dc:subject>
   <darktable:colorlabels><rdf:Seq><rdf:li>3</rdf:li></rdf:Seq></darktable:colorlabels>
   <darktable:history><rdf:Seq>
     <rdf:li darktable:operation="exposure" darktable:enabled="1" darktable:params="0000803f"/>
   </rdf:Seq></darktable:history>
  </rdf:Description>
 </rdf:RDF>
</x:xmpmeta>
)";

class XmpSidecarTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(QStringLiteral("exiv2")).isEmpty())
            GTEST_SKIP() << "the exiv2 command is not installed";
    }
    TempFolder folder;
};

} // namespace

TEST_F(XmpSidecarTest, WritesWhatDarktableDigiKamAndLightroomRead)
{
    const QString picture = folder.writePicture(QStringLiteral("IMG_1.jpg"));
    const QByteArray pictureBytes = folder.read(QStringLiteral("IMG_1.jpg"));
    ASSERT_TRUE(XmpSidecar::writeRating(picture, 4, PickFlag::picked, SidecarNaming::pictureName));
    ASSERT_TRUE(XmpSidecar::writeColours(
        picture, {QStringLiteral("orange"), QStringLiteral("blue"), QStringLiteral("red")},
        SidecarNaming::pictureName));

    const auto seen = exiv2Properties(folder.filePath(QStringLiteral("IMG_1.jpg.xmp")));
    EXPECT_EQ(seen.value(QStringLiteral("Xmp.xmp.Rating")), QStringLiteral("4"));
    EXPECT_EQ(seen.value(QStringLiteral("Xmp.digiKam.PickLabel")), QStringLiteral("3"));
    EXPECT_EQ(seen.value(QStringLiteral("Xmp.xmp.Label")), QStringLiteral("Red")); // the colour given last
    EXPECT_EQ(seen.value(QStringLiteral("Xmp.digiKam.ColorLabel")), QStringLiteral("1"));
    EXPECT_EQ(seen.value(QStringLiteral("Xmp.darktable.colorlabels")),
              QStringLiteral("0, 3")); // no orange there
    EXPECT_EQ(folder.read(QStringLiteral("IMG_1.jpg")), pictureBytes)
        << "the picture itself is never written";

    ASSERT_TRUE(XmpSidecar::writeRating(picture, 3, PickFlag::rejected, SidecarNaming::pictureName));
    EXPECT_EQ(exiv2Properties(folder.filePath(QStringLiteral("IMG_1.jpg.xmp")))
                  .value(QStringLiteral("Xmp.xmp.Rating")),
              QStringLiteral("-1"));
    const auto back = XmpSidecar::read(picture);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->flag, PickFlag::rejected);
    EXPECT_EQ(back->stars, 0);
    // What the editors' labels can hold: one colour for Lightroom and digiKam, no orange for darktable.
    EXPECT_EQ(back->colours, (QStringList{QStringLiteral("red"), QStringLiteral("blue")}));
}

TEST_F(XmpSidecarTest, AnotherProgramsSidecarIsReadAndKeepsItsOwnProperties)
{
    const QString picture = folder.write(QStringLiteral("DSC_7.NEF"), QByteArrayLiteral("raw bytes"));
    // Lightroom's name for it: the stem.
    const QString sidecar = folder.write(QStringLiteral("DSC_7.xmp"), kDarktableSidecar);
    const auto before = exiv2Properties(sidecar);
    ASSERT_TRUE(before.contains(QStringLiteral("Xmp.darktable.history[1]/darktable:operation")));

    const auto read = XmpSidecar::read(picture);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->stars, 2);
    EXPECT_EQ(read->colours, QStringList{QStringLiteral("blue")});

    ASSERT_TRUE(XmpSidecar::writeRating(picture, 5, PickFlag::none, SidecarNaming::pictureName));
    EXPECT_FALSE(folder.exists(QStringLiteral("DSC_7.NEF.xmp"))) << "the existing sidecar is the one written";
    auto after = exiv2Properties(sidecar);
    EXPECT_EQ(after.take(QStringLiteral("Xmp.xmp.Rating")), QStringLiteral("5"));
    auto expected = before;
    expected.remove(QStringLiteral("Xmp.xmp.Rating"));
    EXPECT_EQ(after, expected);
}

TEST_F(XmpSidecarTest, ASidecarThatIsNotXmpIsLeftAsItIs)
{
    const QString picture = folder.writePicture(QStringLiteral("a.jpg"));
    folder.write(QStringLiteral("a.jpg.xmp"), QByteArrayLiteral("<x:xmpmeta half written"));
    QString error;
    EXPECT_FALSE(XmpSidecar::writeRating(picture, 3, PickFlag::none, SidecarNaming::pictureName, &error));
    EXPECT_TRUE(error.contains(QStringLiteral("not valid XMP"))) << error.toStdString();
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg.xmp")), QByteArrayLiteral("<x:xmpmeta half written"));
    EXPECT_FALSE(XmpSidecar::read(picture));
    EXPECT_EQ(folder.entries(), (QStringList{QStringLiteral("a.jpg"), QStringLiteral("a.jpg.xmp")}));
}

// A colour taken off and put back, as a photographer toggles it twice: the sidecar stays valid XMP at every
// step, for us and for exiv2. The same for the declaration-only sidecar earlier versions left
// when the last mark went: it holds nothing and is written over.
TEST_F(XmpSidecarTest, TheLastColourTakenOffLeavesASidecarColoursCanBePutBackInto)
{
    const QByteArray declarationOnly = QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    for (const QByteArray& leftBefore : {QByteArray(), declarationOnly}) {
        TempFolder here;
        const QString picture = here.writePicture(QStringLiteral("a.jpg"));
        if (!leftBefore.isEmpty())
            here.write(QStringLiteral("a.jpg.xmp"), leftBefore);
        const QString sidecar = here.filePath(QStringLiteral("a.jpg.xmp"));
        for (int round = 0; round < 2; ++round) {
            QString error;
            ASSERT_TRUE(
                XmpSidecar::writeColours(picture, {QStringLiteral("red")}, SidecarNaming::pictureName, &error))
                << error.toStdString();
            EXPECT_EQ(exiv2Properties(sidecar).value(QStringLiteral("Xmp.xmp.Label")), QStringLiteral("Red"));
            ASSERT_TRUE(XmpSidecar::writeColours(picture, {}, SidecarNaming::pictureName, &error))
                << error.toStdString();
            const auto read = XmpSidecar::read(picture, &error);
            ASSERT_TRUE(read) << error.toStdString();
            EXPECT_EQ(*read, PictureMarks{});
            EXPECT_TRUE(exiv2Properties(sidecar).isEmpty());
        }
    }
}

TEST_F(XmpSidecarTest, ARatingInsideThePictureIsReadWhenThereIsNoSidecar)
{
    const QString picture = folder.writePicture(QStringLiteral("cam.jpg"));
    QProcess::execute(QStringLiteral("exiv2"),
                      {QStringLiteral("-M"), QStringLiteral("set Xmp.xmp.Rating 3"), picture});
    const auto read = XmpSidecar::read(picture);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->stars, 3);
    // The stem setting names a new sidecar after the picture's stem.
    ASSERT_TRUE(XmpSidecar::writeRating(picture, 1, PickFlag::none, SidecarNaming::stem));
    EXPECT_TRUE(folder.exists(QStringLiteral("cam.xmp")));
}
