// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BoardSheetPanel.h"

#include "app/InBackground.h"
#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"
#include "vision/BoardSheetService.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QUrl>
#include <QVBoxLayout>

namespace lumaro::app {

BoardSheetPanel::BoardSheetPanel(ToolHost& host, QWidget* parent)
    : QWidget(parent), m_host(host), m_columns(new QSpinBox(this)), m_paper(new QComboBox(this)),
      m_pdf(new QCheckBox(QStringLiteral("同时生成 PDF"), this)),
      m_startButton(new QPushButton(QStringLiteral("生成索引表"), this)),
      m_cancelButton(new QPushButton(QStringLiteral("取消"), this)), m_progress(new QProgressBar(this)),
      m_status(new QLabel(this))
{
    m_columns->setRange(vision::BoardSheetLayout::kMinColumns, vision::BoardSheetLayout::kMaxColumns);
    m_columns->setValue(vision::BoardSheetLayout::kDefaultColumns);
    m_paper->addItem(QStringLiteral("A4"), int(vision::PaperSize::a4));
    m_paper->addItem(QStringLiteral("Letter"), int(vision::PaperSize::letter));
    m_pdf->setChecked(true);
    m_status->setWordWrap(true);
    m_status->setTextInteractionFlags(Qt::TextBrowserInteraction);
    m_status->setOpenExternalLinks(true);
    m_progress->setVisible(false);
    m_cancelButton->setVisible(false);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("每行张数"), m_columns);
    form->addRow(QStringLiteral("纸张"), m_paper);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_pdf);
    layout->addWidget(m_startButton);
    layout->addWidget(m_progress);
    layout->addWidget(m_cancelButton);
    layout->addWidget(m_status);
    layout->addStretch(1);
    connect(m_startButton, &QPushButton::clicked, this, &BoardSheetPanel::start);
    connect(m_cancelButton, &QPushButton::clicked, this, [this] {
        if (m_cancel)
            m_cancel->store(true);
        m_status->setText(QStringLiteral("正在取消…"));
    });
}

BoardSheetPanel::~BoardSheetPanel()
{
    if (m_cancel)
        m_cancel->store(true);
}

void BoardSheetPanel::setBusy(bool busy)
{
    for (QWidget* w : {static_cast<QWidget*>(m_startButton), static_cast<QWidget*>(m_columns),
                       static_cast<QWidget*>(m_paper), static_cast<QWidget*>(m_pdf)})
        w->setEnabled(!busy);
    m_progress->setVisible(busy);
    m_cancelButton->setVisible(busy);
}

void BoardSheetPanel::start()
{
    const browse::LMRModeState& state = m_host.modeState();
    const std::optional<QString> folder = state.currentFolder();
    if (!folder || state.imageFiles().isEmpty()) {
        m_status->setText(QStringLiteral("请先打开一个有图片的文件夹"));
        return;
    }
    const QStringList names = state.imageFiles();
    vision::BoardSheetOptions options;
    options.columns = m_columns->value();
    options.paper = vision::PaperSize(m_paper->currentData().toInt());
    options.pdf = m_pdf->isChecked();
    m_cancel = std::make_shared<std::atomic<bool>>(false);
    m_progress->setRange(0, int(names.size()) * 2);
    m_progress->setValue(0);
    m_status->setText(QStringLiteral("正在生成 %1 张图片的索引表…").arg(names.size()));
    setBusy(true);
    QPointer<BoardSheetPanel> self(this);
    auto cancel = m_cancel;
    const QString path = *folder;
    inBackground(
        this,
        [self, cancel, path, names, chosen = options] {
            vision::BoardSheetOptions options = chosen;
            options.cancel = cancel.get();
            options.progress = [self](int done, int) {
                QMetaObject::invokeMethod(
                    qApp,
                    [self, done] {
                        if (self)
                            self->m_progress->setValue(done);
                    },
                    Qt::QueuedConnection);
            };
            return vision::BoardSheetService().run(path, names, options);
        },
        [this](const vision::BoardSheetResult& result) {
            setBusy(false);
            m_cancel.reset();
            if (result.cancelled)
                m_status->setText(QStringLiteral("已取消，没有留下文件"));
            else if (result.indexFolderRefused)
                m_status->setText(QStringLiteral("无法写入 _index（同名文件挡住了，或文件夹只读）"));
            else if (!result.error.isEmpty())
                m_status->setText(QStringLiteral("❌ 保存失败: ") + result.error);
            else {
                const QString shown = result.pdfPath.isEmpty() ? result.pagePaths.value(0) : result.pdfPath;
                m_status->setText(QStringLiteral("✅ %1 张图片，%2 页%3<br><a href=\"%4\">%5</a>")
                                      .arg(result.pictures)
                                      .arg(result.pagePaths.size())
                                      .arg(result.undecodable > 0
                                               ? QStringLiteral("，%1 张无法解码").arg(result.undecodable)
                                               : QString())
                                      .arg(QUrl::fromLocalFile(shown).toString(),
                                           result.pdfPath.isEmpty() ? QStringLiteral("打开第一页")
                                                                    : QStringLiteral("打开 PDF")));
            }
        });
}

} // namespace lumaro::app
