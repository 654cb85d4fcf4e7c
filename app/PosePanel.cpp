// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PosePanel.h"

#include "app/PoseOverlayView.h"
#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"
#include "platform/Log.h"
#include "platform/files/OneLineName.h"
#include "platform/picture/PictureReader.h"
#include "platform/vision/AnalysisImage.h"
#include "pose/PoseTileExporter.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHash>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

const QString kTag = QStringLiteral("POSE_PANEL");
constexpr int kPreviewSide = 900;

// The crossing of the thirds lines, as a photographer says it.
QString crossingName(const QString& powerPoint)
{
    static const QHash<QString, QString> names{{QStringLiteral("upperLeft"), QStringLiteral("左上")},
                                               {QStringLiteral("upperRight"), QStringLiteral("右上")},
                                               {QStringLiteral("lowerLeft"), QStringLiteral("左下")},
                                               {QStringLiteral("lowerRight"), QStringLiteral("右下")}};
    return names.value(powerPoint, powerPoint);
}

QString describe(int number, const pose::AnalysedPerson& analysed)
{
    const pose::PersonPose& person = analysed.pose;
    QStringList lines;
    const pose::PoseActionRuleDefinition& action = pose::ruleDefinition(person.action);
    lines << QStringLiteral("#%1  %2  %3  %4")
                 .arg(number)
                 .arg(person.verdict(), action.displayName,
                      analysed.shotSize ? pose::displayName(*analysed.shotSize) : QString());
    QString first = QStringLiteral("  LEV1 ") + rawValue(person.level1.pose);
    if (person.level1.matchedSide)
        first += QStringLiteral("（") + rawValue(*person.level1.matchedSide) + QStringLiteral("侧）");
    lines << first;
    if (person.level1.matchedDirection)
        lines << QStringLiteral("    ") + person.level1.matchedDirection->reason;
    if (person.level1.reason)
        lines << QStringLiteral("    ") + *person.level1.reason;
    if (person.level2) {
        lines << QStringLiteral("  LEV2 ") + rawValue(person.level2->pose) + QStringLiteral("  ") +
                     person.level2->matchedCondition;
        lines << QStringLiteral("    ") + person.level2->reason;
    }
    lines << QStringLiteral("  ") + action.summary;
    if (analysed.evidence != pose::PersonEvidence::sighting)
        lines << (analysed.evidence == pose::PersonEvidence::face
                      ? QStringLiteral("  弱检测，由人脸确认")
                      : QStringLiteral("  弱检测，由物体检测确认"));
    if (analysed.face) {
        const pose::FaceFacts& face = *analysed.face;
        lines << QStringLiteral("  人脸: 占画面 %1% · 第 %2 行第 %3 列 · %4%5三分点")
                     .arg(face.sizeShare * 100.0, 0, 'f', 2)
                     .arg(face.row + 1)
                     .arg(face.column + 1)
                     .arg(face.onPowerPoint ? QStringLiteral("在") : QStringLiteral("靠近"),
                          crossingName(face.powerPoint));
    }
    QStringList repaired;
    for (auto it = analysed.repairs.cbegin(); it != analysed.repairs.cend(); ++it)
        repaired << it.key() + QStringLiteral("（") + rawValue(it.value()) + QStringLiteral("）");
    if (!repaired.isEmpty())
        lines << QStringLiteral("  已修复关节: ") + repaired.join(QStringLiteral(", "));
    return lines.join(u'\n');
}

} // namespace

struct PosePanel::Worker
{
    std::mutex mutex;
    std::unique_ptr<pose::PicturePoseAnalyzer> analyzer; // made on first use, on the pool thread
};

struct PosePanel::Outcome
{
    std::variant<pose::PicturePoseAnalysis, pose::PicturePoseFailure> result;
    QImage preview;
};

PosePanel::PosePanel(ToolHost& host, QWidget* parent)
    : QWidget(parent), m_host(host), m_status(new QLabel(this)), m_overlay(new PoseOverlayView(this)),
      m_details(new QPlainTextEdit(this)),
      m_exportTiles(new QPushButton(QStringLiteral("导出姿态图块…"), this)),
      m_worker(std::make_shared<Worker>())
{
    m_status->setWordWrap(true);
    m_details->setReadOnly(true);
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_overlay);
    splitter->addWidget(m_details);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_status);
    layout->addWidget(splitter, 1);
    layout->addWidget(m_exportTiles);
    m_exportTiles->setEnabled(false);
    m_exportTiles->setToolTip(
        QStringLiteral("把每个人裁成一张图块（关节、判定线段和姿态名），并附一张总览图；不会覆盖已有文件"));
    connect(m_exportTiles, &QPushButton::clicked, this, [this] {
        const QString dir =
            QFileDialog::getExistingDirectory(m_host.dialogParent(), QStringLiteral("导出姿态图块到"));
        if (!dir.isEmpty())
            exportTilesTo(dir);
    });
    m_status->setText(QStringLiteral("选择一张图片以分析人物姿态"));
    connect(&m_host.modeState(), &browse::LMRModeState::selectionChanged, this, &PosePanel::analyseSelection);
    connect(&m_host.modeState(), &browse::LMRModeState::imageFilesChanged, this,
            &PosePanel::analyseSelection);
}

PosePanel::~PosePanel() = default;

void PosePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    analyseSelection();
}

void PosePanel::analyseSelection()
{
    if (!isVisible())
        return;
    const browse::LMRModeState& state = m_host.modeState();
    const auto folder = state.currentFolder();
    const auto name = state.selectedImageFileName();
    if (!folder || !name) {
        m_wanted.clear();
        m_shownAnalysis.reset();
        m_exportTiles->setEnabled(false);
        m_overlay->clear();
        m_details->clear();
        m_status->setText(QStringLiteral("选择一张图片以分析人物姿态"));
        return;
    }
    m_wanted = QDir(*folder).filePath(*name);
    if (m_wanted == m_shown || m_running)
        return; // a running analysis picks the newest selection up when it ends
    m_running = true;
    m_status->setText(QStringLiteral("正在分析姿态: ") + platform::OneLineName::of(*name));

    QPointer<PosePanel> self(this);
    const std::shared_ptr<Worker> worker = m_worker;
    const QString path = m_wanted;
    QThreadPool::globalInstance()->start([self, worker, path] {
        Outcome outcome;
        {
            std::lock_guard lock(worker->mutex);
            if (!worker->analyzer)
                worker->analyzer = std::make_unique<pose::PicturePoseAnalyzer>();
            outcome.result = worker->analyzer->analyse(path);
        }
        if (std::holds_alternative<pose::PicturePoseAnalysis>(outcome.result)) {
            // The whole picture, upright, as the joints were found on it (never a stored thumbnail, whose
            // frame may differ).
            outcome.preview = platform::PictureReader::read({path, kPreviewSide, false}).image;
        }
        QMetaObject::invokeMethod(
            qApp,
            [self, path, outcome] {
                if (self)
                    self->present(path, outcome);
            },
            Qt::QueuedConnection);
    });
}

void PosePanel::present(const QString& path, const Outcome& outcome)
{
    m_running = false;
    if (path != m_wanted) {
        analyseSelection(); // the selection moved on while this one ran: drop it
        return;
    }
    m_shown = path;
    const QString name = QFileInfo(path).fileName();
    if (const auto* failure = std::get_if<pose::PicturePoseFailure>(&outcome.result)) {
        platform::Log::line(kTag, QStringLiteral("⚠️ ") + name + QStringLiteral(": ") + failure->message);
        m_status->setText(QStringLiteral("⚠️ ") + failure->message);
        m_shownAnalysis.reset();
        m_exportTiles->setEnabled(false);
        m_overlay->clear();
        m_details->clear();
        return;
    }
    const auto& analysis = std::get<pose::PicturePoseAnalysis>(outcome.result);
    platform::Log::line(kTag, QStringLiteral("✅ %1: %2 人").arg(name).arg(analysis.people.size()));
    platform::Log::raw(QStringLiteral("PERF-POSE: detect %1 ms, rules %2 ms")
                           .arg(analysis.detectMs, 0, 'f', 3)
                           .arg(analysis.rulesMs, 0, 'f', 3));
    m_status->setText(analysis.people.empty()
                          ? QStringLiteral("%1: 未发现人物").arg(name)
                          : QStringLiteral("%1: %2 人 · %3")
                                .arg(name)
                                .arg(analysis.people.size())
                                .arg(analysis.shotSize ? pose::displayName(*analysis.shotSize) : QString()));
    QStringList text;
    for (std::size_t i = 0; i < analysis.people.size(); ++i)
        text << describe(int(i) + 1, analysis.people[i]);
    m_details->setPlainText(text.join(QStringLiteral("\n\n")));
    m_overlay->show(outcome.preview, analysis.people);
    m_shownAnalysis = analysis;
    m_exportTiles->setEnabled(!analysis.people.empty());
}

void PosePanel::exportTilesTo(const QString& folder)
{
    if (!m_shownAnalysis || m_shownAnalysis->people.empty())
        return;
    m_exportTiles->setEnabled(false);
    m_status->setText(QStringLiteral("正在导出姿态图块…"));
    QPointer<PosePanel> self(this);
    const pose::PicturePoseAnalysis analysis = *m_shownAnalysis;
    QThreadPool::globalInstance()->start([self, analysis, folder] {
        pose::PoseTileExporter exporter(folder);
        QString error;
        const auto picture =
            platform::AnalysisImageReader::read(analysis.path, pose::PoseTileExporter::kSourceSide, &error);
        if (picture)
            exporter.addPicture(picture->image, analysis);
        const auto sheet = exporter.writeContactSheet();
        QStringList problems = exporter.failures();
        if (!picture)
            problems << error;
        const qsizetype tiles = exporter.written().size() - (sheet ? 1 : 0);
        QMetaObject::invokeMethod(
            qApp,
            [self, folder, tiles, problems] {
                if (self)
                    self->tilesExported(folder, int(tiles), problems);
            },
            Qt::QueuedConnection);
    });
}

void PosePanel::tilesExported(const QString& folder, int tiles, const QStringList& problems)
{
    m_exportTiles->setEnabled(m_shownAnalysis && !m_shownAnalysis->people.empty());
    if (!problems.isEmpty()) {
        platform::Log::line(kTag,
                            QStringLiteral("❌ 姿态图块导出失败: ") + problems.join(QStringLiteral("; ")));
        m_status->setText(QStringLiteral("⚠️ 已导出 %1 个图块到 %2，%3 个失败: %4")
                              .arg(tiles)
                              .arg(folder)
                              .arg(problems.size())
                              .arg(problems.first()));
        return;
    }
    platform::Log::line(kTag, QStringLiteral("✅ 已导出 %1 个姿态图块到 %2").arg(tiles).arg(folder));
    m_status->setText(QStringLiteral("已导出 %1 个姿态图块和总览图到 %2").arg(tiles).arg(folder));
}

} // namespace lumaro::app
