// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PairingPanel.h"

#include "app/FolderDropZone.h"
#include "app/ToolHost.h"
#include "cards/ByteCountFormatter.h"
#include "cards/PairingSession.h"
#include "platform/FreedesktopTrash.h"
#include "platform/QSettingsStore.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumaro::app {

using cards::ByteCountFormatter;

namespace {

FolderDropZone::Texts jpgTexts(PairingPanel::Tool tool)
{
    const bool clean = tool == PairingPanel::Tool::clean;
    return {clean ? QStringLiteral("JPG文件夹（保留范围）") : QStringLiteral("JPG文件夹（参照清单）"),
            clean ? QStringLiteral("拖拽JPG文件夹到此处 或 点击下方按钮选择") : QStringLiteral("拖拽到此 或 点击下方按钮选择"),
            QStringLiteral("选择JPG文件夹"), QStringLiteral("选择包含JPG文件的文件夹"), QStringLiteral("JPG文件夹已设置："),
            QStringLiteral("JPG")};
}

FolderDropZone::Texts rawTexts(PairingPanel::Tool tool)
{
    const bool clean = tool == PairingPanel::Tool::clean;
    return {clean ? QStringLiteral("RAW文件夹（待清理目标）") : QStringLiteral("RAW文件夹（来源范围）"),
            clean ? QStringLiteral("拖拽RAW文件夹到此处 或 点击下方按钮选择") : QStringLiteral("拖拽到此 或 点击下方按钮选择"),
            QStringLiteral("选择RAW文件夹"), QStringLiteral("选择包含RAW文件的文件夹"), QStringLiteral("RAW文件夹已设置："),
            QStringLiteral("RAW")};
}

} // namespace

PairingPanel::PairingPanel(Tool tool, ToolHost& host, QWidget* parent)
    : QWidget(parent)
    , m_tool(tool)
    , m_host(host)
    , m_session(new cards::PairingSession(platform::QSettingsStore::shared(),
                                          tool == Tool::clean ? &platform::FreedesktopTrash::shared() : nullptr, this))
    , m_jpgZone(new FolderDropZone(jpgTexts(tool), this))
    , m_rawZone(new FolderDropZone(rawTexts(tool), this))
    , m_analyzeButton(new QPushButton(QStringLiteral("分析"), this))
    , m_figures(new QLabel(this))
    , m_message(new QLabel(this))
    , m_actionButton(new QPushButton(this))
    , m_progress(new QProgressBar(this))
    , m_history(new QListWidget(this))
{
    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel(tool == Tool::clean ? QStringLiteral("JPG-RAW配对清理") : QStringLiteral("RAW PICK"), this);
    title->setStyleSheet(QStringLiteral("font-size: 15px; font-weight: bold"));
    auto* subtitle = new QLabel(tool == Tool::clean ? QStringLiteral("系统自动匹配同名文件，清理冗余RAW")
                                                    : QStringLiteral("依据JPG清单，复制匹配RAW至 RAW_PICK 文件夹"),
                                this);
    subtitle->setWordWrap(true);
    layout->addWidget(title);
    layout->addWidget(subtitle);
    auto* zones = new QHBoxLayout;
    zones->addWidget(m_jpgZone);
    zones->addWidget(m_rawZone);
    layout->addLayout(zones);
    layout->addWidget(m_analyzeButton);
    m_figures->setWordWrap(true);
    m_message->setWordWrap(true);
    layout->addWidget(m_figures);
    layout->addWidget(m_message);
    m_actionButton->setIcon(QIcon::fromTheme(tool == Tool::clean ? QStringLiteral("user-trash")
                                                                 : QStringLiteral("document-save-as")));
    layout->addWidget(m_actionButton);
    layout->addWidget(m_progress);
    m_progress->setRange(0, 1000);
    if (tool == Tool::clean) {
        auto* historyTitle = new QLabel(QStringLiteral("清理记录"), this);
        historyTitle->setToolTip(QStringLiteral("clock.arrow.circlepath"));
        layout->addWidget(historyTitle);
        layout->addWidget(m_history);
    } else {
        m_history->hide();
    }
    layout->addStretch(1);

    connect(m_jpgZone, &FolderDropZone::folderChosen, m_session, &cards::PairingSession::setJpgFolder);
    connect(m_rawZone, &FolderDropZone::folderChosen, m_session, &cards::PairingSession::setRawFolder);
    connect(m_analyzeButton, &QPushButton::clicked, m_session, &cards::PairingSession::analyze);
    connect(m_actionButton, &QPushButton::clicked, this, [this] {
        if (m_tool == Tool::clean)
            m_session->clean();
        else
            m_session->pick();
    });
    connect(m_session, &cards::PairingSession::changed, this, &PairingPanel::refresh);
    refresh();
}

void PairingPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_loaded)
        return;
    m_loaded = true;
    m_session->loadRememberedFolders();
}

QString PairingPanel::figures() const
{
    const cards::AnalysisResults& r = m_session->analysisResults();
    if (!r.isAnalyzed)
        return {};
    return QStringLiteral("JPG：%1 个（%2）\nRAW：%3 个（%4）\n匹配：JPG %5 个，RAW %6 个（%7）\n不匹配RAW：%8 个（%9）")
        .arg(r.jpgFiles.size())
        .arg(ByteCountFormatter::string(r.jpgTotalSize))
        .arg(r.rawFiles.size())
        .arg(ByteCountFormatter::string(r.rawTotalSize))
        .arg(r.matchedJpgCount)
        .arg(r.matchedFiles.size())
        .arg(ByteCountFormatter::string(r.matchedTotalSize))
        .arg(r.unmatchedFiles.size())
        .arg(ByteCountFormatter::string(r.unmatchedTotalSize));
}

void PairingPanel::refresh()
{
    m_jpgZone->setStartFolder(m_session->jpgFolderLastLocation());
    m_rawZone->setStartFolder(m_session->rawFolderLastLocation());
    m_jpgZone->showFolder(m_session->jpgFolderPath());
    m_rawZone->showFolder(m_session->rawFolderPath());
    const bool busy = m_session->isBusy();
    m_analyzeButton->setEnabled(!busy);
    m_analyzeButton->setText(m_session->isAnalyzing() ? QStringLiteral("分析中…") : QStringLiteral("分析"));
    m_figures->setText(figures());
    m_progress->setVisible(m_session->isCleaning() || m_session->isPicking());
    m_progress->setValue(int(m_session->progress() * 1000));

    const cards::AnalysisResults& results = m_session->analysisResults();
    QString message = m_session->alertMessage();
    bool offerAction = false;
    if (m_tool == Tool::clean && results.isAnalyzed) {
        const cards::CleanOffer offer = m_session->cleanOffer();
        offerAction = offer.canClean();
        if (offerAction)
            m_actionButton->setText(QStringLiteral("清理 %1 个冗余RAW文件（%2）")
                                        .arg(offer.fileCount)
                                        .arg(ByteCountFormatter::string(offer.totalSize)));
        if (message.isEmpty())
            message = offer.message;
    } else if (m_tool == Tool::pick && results.isAnalyzed) {
        offerAction = !results.matchedFiles.isEmpty();
        m_actionButton->setText(QString::number(results.matchedFiles.size()) + QStringLiteral(" 个  ·  复制体量: ")
                                + ByteCountFormatter::string(results.matchedTotalSize));
        if (!m_session->lastPickFolderPath().isEmpty())
            message += QStringLiteral("\nRAW_PICK：") + m_session->lastPickFolderPath();
    }
    m_message->setText(message.trimmed());
    m_actionButton->setVisible(offerAction);
    m_actionButton->setEnabled(!busy);

    m_history->clear();
    const auto& history = m_session->cleanResults();
    for (auto it = history.crbegin(); it != history.crend(); ++it)
        m_history->addItem(it->timestamp.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QStringLiteral("  ")
                           + it->message);
    // A clean may have taken files out of the folder the window shows.
    if (history.size() > m_historySeen) {
        m_historySeen = history.size();
        m_host.reloadCurrentFolder();
    }
}

} // namespace lumaro::app
