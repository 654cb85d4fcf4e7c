// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionClassificationEngine.h"

#include "vision/ClassificationMark.h"

#include <QSet>

namespace lumaro::vision {

namespace {

using M = ClassificationMark;

struct Facts
{
    bool people, documents, screenshot, structure, outdoor, electronics, furniture, tools, illustration, ticket;
    bool large, isLong, anyCategory;
};

M primaryMark(const Facts& f)
{
    if (f.people) return M::people;
    if (f.documents) return M::documents;
    if (f.screenshot) return M::screenshot;
    if (f.structure) return M::structure;
    if (f.outdoor) return M::outdoor;
    if (f.electronics) return M::electronics;
    if (f.furniture) return M::furniture;
    if (f.illustration) return M::illustration;
    if (f.tools) return M::tools;
    return M::untag;
}

M refined(M primary, const Facts& f)
{
    switch (primary) {
    case M::people:
        if (f.screenshot) return M::peopleScreenshot;
        // An illustrated person is filed as an illustration, not under the people-illustration mark.
        if (f.illustration) return M::illustration;
        return f.large ? M::peoplePortrait : M::people;
    case M::documents:
        if (f.ticket) return M::documentsTicket;
        return f.isLong ? M::documentsLong : M::documents;
    case M::screenshot:
        // Unreachable by precedence today; kept so a change of precedence keeps the sub-marks right.
        if (f.people) return M::peopleScreenshot;
        return f.documents ? M::documentsScreenshot : M::screenshot;
    case M::illustration:
        return f.people ? M::illustrationPeople : M::illustration;
    case M::tools:
        return f.anyCategory ? M::tools : M::untag;
    default:
        return primary;
    }
}

bool isBlank(const QString& label)
{
    return label.trimmed().isEmpty();
}

} // namespace

VisionClassificationEngine::VisionClassificationEngine(const CategoryTable& categoryTable)
    : matcher(categoryTable)
    , table(categoryTable)
{
}

const VisionClassificationEngine& VisionClassificationEngine::shared()
{
    static const VisionClassificationEngine engine;
    return engine;
}

QString VisionClassificationEngine::diverseMark(const QStringList& labels)
{
    for (const QString& label : labels) {
        if (isBlank(label))
            continue;
        QString cleaned;
        for (QChar c : label.toUpper()) {
            if (c == QLatin1Char(' ') || c == QLatin1Char('-') || c == QLatin1Char('.'))
                c = QLatin1Char('_');
            if (c.isLetterOrNumber() || c == QLatin1Char('_'))
                cleaned += c;
        }
        return cleaned.isEmpty() ? QString() : kDiverseMarkPrefix + cleaned;
    }
    return {};
}

QString VisionClassificationEngine::mark(const QStringList& recognizedObjects, const QStringList& sceneClassification,
                                         int pixelWidth, int pixelHeight) const
{
    const QStringList labels = recognizedObjects + sceneClassification;
    const QSet<CategoryKey> c = matcher.categories(labels);
    QSet<QString> lowered;
    for (const QString& label : labels)
        lowered.insert(label.toLower());

    Facts f{};
    f.people = c.contains(CategoryKey::people) || c.contains(CategoryKey::clothing);
    f.documents = c.contains(CategoryKey::documents);
    f.screenshot = c.contains(CategoryKey::screenshot);
    f.structure = c.contains(CategoryKey::structure);
    f.outdoor = c.contains(CategoryKey::outdoor);
    f.electronics = c.contains(CategoryKey::electronics);
    f.furniture = c.contains(CategoryKey::furniture);
    f.tools = c.contains(CategoryKey::tools);
    f.illustration = c.contains(CategoryKey::illustration);
    f.ticket = lowered.contains(QStringLiteral("ticket")) || lowered.contains(QStringLiteral("票据"));
    f.large = pixelWidth >= 1500 && pixelHeight >= 1500;
    f.isLong = pixelWidth > 0 && double(pixelHeight) / double(pixelWidth) > 3.0;
    f.anyCategory = !c.isEmpty();

    const M result = refined(primaryMark(f), f);
    if (result != M::untag)
        return markText(result);
    const QString diverse = diverseMark(labels);
    return diverse.isEmpty() ? markText(M::untag) : diverse;
}

} // namespace lumaro::vision
