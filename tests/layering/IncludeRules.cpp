// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/layering/IncludeRules.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

namespace lumaro::testing {

namespace {

const QMap<QString, QSet<QString>>& allowedModules()
{
    static const QMap<QString, QSet<QString>> table{
        {QStringLiteral("platform"), {QStringLiteral("platform")}},
        {QStringLiteral("browse"), {QStringLiteral("browse"), QStringLiteral("platform")}},
        {QStringLiteral("vision"), {QStringLiteral("vision"), QStringLiteral("platform")}},
        {QStringLiteral("pose"), {QStringLiteral("pose"), QStringLiteral("vision"), QStringLiteral("platform")}},
        {QStringLiteral("cards"), {QStringLiteral("cards"), QStringLiteral("platform")}},
        {QStringLiteral("library"), {QStringLiteral("library"), QStringLiteral("platform")}},
        {QStringLiteral("report"), {QStringLiteral("report"), QStringLiteral("platform")}},
        {QStringLiteral("rolls"), {QStringLiteral("rolls"), QStringLiteral("browse"), QStringLiteral("platform")}},
        {QStringLiteral("home"),
         {QStringLiteral("home"), QStringLiteral("browse"), QStringLiteral("cards"), QStringLiteral("library"),
          QStringLiteral("platform")}},
        {QStringLiteral("cli"),
         {QStringLiteral("cli"), QStringLiteral("browse"), QStringLiteral("vision"), QStringLiteral("pose"),
          QStringLiteral("cards"), QStringLiteral("library"), QStringLiteral("report"), QStringLiteral("rolls"),
          QStringLiteral("home"), QStringLiteral("platform")}},
        {QStringLiteral("app"),
         {QStringLiteral("app"), QStringLiteral("browse"), QStringLiteral("vision"), QStringLiteral("pose"),
          QStringLiteral("cards"), QStringLiteral("library"), QStringLiteral("report"), QStringLiteral("rolls"),
          QStringLiteral("home"), QStringLiteral("platform")}},
    };
    return table;
}

// System headers that mean "talking to the OS directly": only platform/ may.
bool isOperatingSystemHeader(const QString& header)
{
    static const QRegularExpression pattern(QStringLiteral(
        R"(^(sys/.*|unistd\.h|fcntl\.h|dirent\.h|pwd\.h|grp\.h|mntent\.h|gio/.*|glib\.h|dbus/.*|attr/.*|linux/.*)$)"));
    return pattern.match(header).hasMatch();
}

bool isWidgetsHeader(const QString& header)
{
    static const QRegularExpression pattern(QStringLiteral(
        R"(^(QtWidgets/.*|QtCharts/.*|QChart|QChartView|Q(Widget|MainWindow|Application|Dialog|FileDialog|Label|PushButton|ListWidget|ListView|)"
        R"(TreeView|TableView|GraphicsView|ScrollArea|Splitter|StackedWidget|MessageBox|ProgressDialog|Menu|)"
        R"(MenuBar|ToolBar|StatusBar|LineEdit|ComboBox|CheckBox|SpinBox|Slider|Layout|BoxLayout|HBoxLayout|)"
        R"(VBoxLayout|GridLayout|FormLayout|AbstractItemView|Action|Shortcut|KeySequenceEdit|ToolButton|Frame|)"
        R"(TabWidget|GroupBox|DockWidget|Style|StyledItemDelegate|AbstractScrollArea))$)"));
    return pattern.match(header).hasMatch();
}

// "moc_Foo.cpp" included at the end of Foo.cpp: Qt's generated code for that file's own class, compiled into
// its object so that only what uses the class pulls it (and its libraries) into a program.
bool isOwnMocOutput(const QString& relativePath, const QString& header)
{
    const QString stem = relativePath.section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0);
    return header == QStringLiteral("moc_%1.cpp").arg(stem);
}

} // namespace

QString moduleOf(const QString& relativePath)
{
    const QString first = relativePath.section(QLatin1Char('/'), 0, 0);
    return allowedModules().contains(first) ? first : QString();
}

QList<IncludeViolation> checkIncludes(const QString& relativePath, const QString& source)
{
    static const QRegularExpression includeLine(QStringLiteral(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])"));
    const QString module = moduleOf(relativePath);
    QList<IncludeViolation> violations;
    if (module.isEmpty())
        return violations;
    const QStringList lines = source.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const auto match = includeLine.match(lines.at(i));
        if (!match.hasMatch())
            continue;
        const bool quoted = match.captured(1) == QLatin1String("\"");
        const QString header = match.captured(2);
        const auto report = [&](const QString& reason) {
            violations.append({relativePath, i + 1, header, reason});
        };
        if (quoted) {
            const QString target = header.section(QLatin1Char('/'), 0, 0);
            if (isOwnMocOutput(relativePath, header))
                continue;
            if (!header.contains(QLatin1Char('/')))
                report(QStringLiteral("include with the module path"));
            else if (target == QLatin1String("tests"))
                report(QStringLiteral("production code includes tests/"));
            else if (allowedModules().contains(target) && !allowedModules()[module].contains(target))
                report(QStringLiteral("%1 may not include %2").arg(module, target));
            else if (header.contains(QStringLiteral("/fakes/")) && !relativePath.contains(QStringLiteral("/fakes/")))
                report(QStringLiteral("fakes are for tests only"));
            continue;
        }
        if (module != QLatin1String("platform") && isOperatingSystemHeader(header))
            report(QStringLiteral("only platform/ talks to the OS"));
        if (module != QLatin1String("app") && isWidgetsHeader(header))
            report(QStringLiteral("only app/ uses Qt Widgets"));
    }
    return violations;
}

} // namespace lumaro::testing
