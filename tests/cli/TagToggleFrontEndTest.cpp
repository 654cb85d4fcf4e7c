// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli-xmp toggles a colour itself, without Qt, when it can do exactly what lumaro-cli-exif would;
// anything else it hands on before changing or printing anything. Each case runs on a fresh folder through a
// lone copy of lumaro-cli-xmp (no program beside it, so a hand-over shows as "cannot start"), then again
// through lumaro-cli-exif: what the helper answers must print and leave (tags attribute, sidecar bytes) what
// the exif program does.
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XdgTags.h"

#include "platform/AppPaths.h"

#include <QDir>
#include <QFile>
#include <QSettings>

#include <gtest/gtest.h>

using namespace lumaro::testing;

namespace {

constexpr char picture[] = "IMG 1 é.JPG";

// A sidecar darktable left: a rating, a red label and an editing history that must survive.
constexpr char darktableSidecar[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
    "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
    "<rdf:Description rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\""
    " xmlns:darktable=\"http://darktable.sf.net/\" xmp:Rating=\"3\" xmp:Label=\"Red\">"
    "<darktable:colorlabels><rdf:Seq><rdf:li>0</rdf:li></rdf:Seq></darktable:colorlabels>"
    "<darktable:history><rdf:Seq><rdf:li darktable:operation=\"exposure\" darktable:enabled=\"1\"/>"
    "</rdf:Seq></darktable:history></rdf:Description></rdf:RDF></x:xmpmeta>\n";

struct ToggleCase
{
    const char* name;
    QStringList arguments;   // after "tags"; "%1" stands for the picture's path
    QByteArray tagsBefore;   // the attribute's bytes; empty: none
    const char* sidecarName; // a sidecar there before, or null
    QByteArray sidecarBefore;
    QByteArray settings; // the settings file's contents; empty: none
    bool answeredAlone;
};

class TagToggleFrontEnd : public ::testing::TestWithParam<ToggleCase>
{
protected:
    TagToggleFrontEnd()
    {
        QDir().mkpath(bin.filePath(QStringLiteral("bin")));
        QFile::copy(QStringLiteral(LUMARO_CLI_XMP_PATH), lone);
    }

    ~TagToggleFrontEnd() override { QFile::remove(settingsFile); }

    // The case's picture, sidecar and settings, from nothing; false without user extended attributes.
    bool prepare()
    {
        QDir(pictures.path()).removeRecursively();
        QDir().mkpath(pictures.path());
        const QString path = pictures.write(QString::fromUtf8(picture), "jpeg bytes");
        if (GetParam().sidecarName)
            pictures.write(QString::fromUtf8(GetParam().sidecarName), GetParam().sidecarBefore);
        QFile::remove(settingsFile);
        if (!GetParam().settings.isEmpty()) {
            QDir().mkpath(QFileInfo(settingsFile).absolutePath());
            QFile file(settingsFile);
            if (!file.open(QIODevice::WriteOnly))
                return false;
            file.write(GetParam().settings);
        }
        return GetParam().tagsBefore.isEmpty() || setXdgTags(path, GetParam().tagsBefore);
    }

    // Every file of the folder with its bytes, and the picture's tags attribute.
    QStringList state() const
    {
        QStringList found;
        for (const QString& name : pictures.entries())
            found << name + QStringLiteral(": ") + QString::fromUtf8(pictures.read(name));
        const auto tags = xdgTags(pictures.filePath(QString::fromUtf8(picture)));
        found << QStringLiteral("tags: ") + (tags ? QString::fromUtf8(*tags) : QStringLiteral("(none)"));
        return found;
    }

    CliResult run(const QString& program) const
    {
        QStringList arguments{QStringLiteral("tags")};
        for (QString argument : GetParam().arguments)
            arguments << argument.replace(QStringLiteral("%1"),
                                          pictures.filePath(QString::fromUtf8(picture)));
        return runProgram(program, arguments);
    }

    TempFolder pictures;
    TempFolder bin;
    const QString lone = bin.filePath(QStringLiteral("bin/lumaro-cli-xmp"));
    const QString settingsFile = lumaro::platform::AppPaths::configDir() + QStringLiteral("/lumaro.conf");
};

} // namespace

TEST_P(TagToggleFrontEnd, AnswersAsTheExifProgramOrHandsOnHavingDoneNothing)
{
    if (!prepare())
        GTEST_SKIP() << "no user extended attributes on this file system";
    const QStringList before = state();
    const CliResult helper = run(lone);
    const QStringList helperState = state();
    ASSERT_TRUE(prepare());
    const CliResult exif = run(QStringLiteral(LUMARO_CLI_EXIF_PATH));
    if (!GetParam().answeredAlone) {
        expectHandedOver(helper, QStringLiteral("lumaro-cli-exif"));
        EXPECT_EQ(helperState, before);
        return;
    }
    EXPECT_EQ(helper.exitCode, exif.exitCode) << exif.errText().toStdString();
    EXPECT_EQ(helper.out, exif.out);
    EXPECT_EQ(helper.errText(), exif.errText());
    EXPECT_EQ(helperState, state());
    EXPECT_NE(helperState, before) << "the case changes nothing, so it cannot tell a wrong change";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TagToggleFrontEnd,
    ::testing::Values(
        ToggleCase{"onWithoutSidecar", {"%1", "--toggle", "red"}, {}, nullptr, {}, {}, true},
        ToggleCase{"keepsOtherProgramsTags",
                   {"-q", "%1", "--toggle=green"},
                   " Portfolio , red,client A",
                   nullptr,
                   {},
                   {},
                   true},
        ToggleCase{
            "lastColourOffLeavesNoFile", {"%1", "--toggle", "red"}, "red,Portfolio", nullptr, {}, {}, true},
        ToggleCase{"json", {"--json", "--toggle", "blue", "%1", "--quiet"}, "red", nullptr, {}, {}, true},
        ToggleCase{"darktableSidecarKept",
                   {"%1", "--toggle", "yellow"},
                   "red",
                   "IMG 1 é.JPG.xmp",
                   darktableSidecar,
                   {},
                   true},
        ToggleCase{"lightroomStemSidecar",
                   {"%1", "--toggle", "purple"},
                   {},
                   "IMG 1 é.xmp",
                   darktableSidecar,
                   {},
                   true},
        ToggleCase{"lastColourOffEmptiesSidecar",
                   {"%1", "--toggle", "red"},
                   "red",
                   "IMG 1 é.JPG.xmp",
                   darktableSidecar,
                   {},
                   true},
        ToggleCase{"declarationOnlySidecar",
                   {"%1", "--toggle", "orange"},
                   {},
                   "IMG 1 é.JPG.XMP",
                   "<?xml version=\"1.0\"?>\n",
                   {},
                   true},
        ToggleCase{"stemNamingSetting",
                   {"%1", "--toggle", "blue"},
                   {},
                   nullptr,
                   {},
                   "[General]\nLMR_SidecarNaming=stem\n",
                   true},
        ToggleCase{"otherSettingsOnly",
                   {"%1", "--toggle", "blue"},
                   {},
                   nullptr,
                   {},
                   "[General]\nLMR_Other=1\n[Window]\nLMR_SidecarNaming=stem\n",
                   true},
        ToggleCase{"quotedNamingSetting",
                   {"%1", "--toggle", "blue"},
                   {},
                   nullptr,
                   {},
                   "[General]\nLMR_SidecarNaming=\"stem\"\n",
                   false},
        ToggleCase{"sidecarNotXmp",
                   {"%1", "--toggle", "red"},
                   {},
                   "IMG 1 é.JPG.xmp",
                   "<x:xmpmeta unclosed",
                   {},
                   false},
        ToggleCase{"colourInCapitals", {"%1", "--toggle", "Red"}, {}, nullptr, {}, {}, false},
        ToggleCase{"unknownColour", {"%1", "--toggle", "magenta"}, {}, nullptr, {}, {}, false},
        ToggleCase{"twoToggles", {"%1", "--toggle", "red", "--toggle", "blue"}, {}, nullptr, {}, {}, false},
        ToggleCase{"tagNotUtf8", {"%1", "--toggle", "red"}, "f\xf6", nullptr, {}, {}, false},
        ToggleCase{"missingFile", {"%1.gone", "--toggle", "red"}, {}, nullptr, {}, {}, false},
        ToggleCase{"help", {"--help"}, {}, nullptr, {}, {}, false}),
    [](const auto& info) { return std::string(info.param.name); });
