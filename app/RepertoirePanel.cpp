// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RepertoirePanel.h"

#include "app/PictureListWaterfall.h"
#include "app/PictureOpener.h"
#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"
#include "library/RepertoireExporter.h"
#include "library/RepertoireStore.h"
#include "platform/QSettingsStore.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

const QString kCurrentBundleKey = QStringLiteral("RepertoirePanel_CurrentBundle");
const QString kDefaultBundle = QStringLiteral("Repertoire");

QString outcome(const library::RepertoireExportResult& result)
{
    QString text = QObject::tr("已导出 %1 个文件").arg(result.written.size());
    if (!result.missing.isEmpty())
        text += QObject::tr("；%1 张找不到，未导出: %2")
                    .arg(result.missing.size())
                    .arg(result.missing.join(QStringLiteral(", ")));
    if (!result.failures.isEmpty())
        text += QObject::tr("；失败: %1").arg(result.failures.join(QStringLiteral("; ")));
    return text;
}

} // namespace

RepertoirePanel::RepertoirePanel(ToolHost& host, library::RepertoireStore& store,
                                 library::FavourManager& favourites, QWidget* parent)
    : QWidget(parent), m_host(host), m_store(store), m_bundles(new QComboBox(this)),
      m_summary(new QLabel(this)), m_pictures(new PictureListWaterfall(favourites, this)),
      m_message(new QLabel(this))
{
    m_message->setWordWrap(true);
    m_summary->setWordWrap(true);
    auto* create = new QPushButton(tr("新建合集…"), this);
    auto* rename = new QPushButton(tr("重命名…"), this);
    auto* drop = new QPushButton(tr("删除合集…"), this);
    auto* add = new QPushButton(tr("加入当前图片 (B)"), this);
    auto* remove = new QPushButton(tr("从合集移除"), this);
    auto* toFolder = new QPushButton(tr("导出到文件夹…"), this);
    auto* toZip = new QPushButton(tr("导出为 zip…"), this);
    // The bundle's name gets a row of its own: beside three buttons a narrow panel cut it to a few letters.
    auto* top = new QHBoxLayout;
    top->addWidget(create);
    top->addWidget(rename);
    top->addWidget(drop);
    auto* middle = new QHBoxLayout;
    middle->addWidget(add);
    middle->addWidget(remove);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(toFolder);
    bottom->addWidget(toZip);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_bundles);
    layout->addLayout(top);
    layout->addLayout(middle);
    layout->addWidget(m_summary);
    layout->addWidget(m_pictures, 1);
    layout->addLayout(bottom);
    layout->addWidget(m_message);
    m_pictures->setMinimumHeight(240);

    connect(create, &QPushButton::clicked, this, &RepertoirePanel::askNewBundle);
    connect(rename, &QPushButton::clicked, this, &RepertoirePanel::askRename);
    connect(drop, &QPushButton::clicked, this, &RepertoirePanel::askDrop);
    connect(add, &QPushButton::clicked, this, &RepertoirePanel::addSelection);
    connect(remove, &QPushButton::clicked, this, &RepertoirePanel::removeSelected);
    connect(toFolder, &QPushButton::clicked, this, [this] { askExport(false); });
    connect(toZip, &QPushButton::clicked, this, [this] { askExport(true); });
    connect(m_bundles, &QComboBox::currentTextChanged, this, [this](const QString& name) {
        if (m_filling)
            return;
        platform::QSettingsStore::shared().setString(kCurrentBundleKey, name);
        reload();
    });
    connect(m_pictures, &PictureListWaterfall::openRequested, this, [this](const QString& path) {
        if (auto* opener = dynamic_cast<PictureOpener*>(&m_host))
            opener->openPicture(path);
    });
    connect(this, &RepertoirePanel::exported, this, &RepertoirePanel::say);
    if (QWidget* window = m_host.dialogParent()) {
        auto* key = new QAction(tr("加入合集"), window);
        key->setShortcut(Qt::Key_B);
        connect(key, &QAction::triggered, this, &RepertoirePanel::addSelection);
        window->addAction(key);
    }
    fillBundles();
}

RepertoirePanel::~RepertoirePanel() = default;

QString RepertoirePanel::currentBundle() const
{
    return m_bundles->currentText();
}

QString RepertoirePanel::message() const
{
    return m_message->text();
}

void RepertoirePanel::say(const QString& text)
{
    m_message->setText(text);
}

void RepertoirePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    fillBundles(); // the command line may have changed them
}

void RepertoirePanel::fillBundles()
{
    const auto bundles = m_store.bundles();
    if (!bundles) {
        say(tr("无法读取合集数据库"));
        return;
    }
    const QString wanted =
        m_bundles->count() > 0
            ? currentBundle()
            : platform::QSettingsStore::shared().string(kCurrentBundleKey).value_or(QString());
    m_filling = true;
    m_bundles->clear();
    for (const library::RepertoireBundle& bundle : *bundles)
        m_bundles->addItem(bundle.name);
    m_bundles->setCurrentIndex(std::max(0, m_bundles->findText(wanted)));
    m_filling = false;
    reload();
}

void RepertoirePanel::setCurrentBundle(const QString& name)
{
    m_bundles->setCurrentIndex(m_bundles->findText(name));
}

std::optional<QString> RepertoirePanel::createBundle(const QString& name)
{
    if (auto refusal = m_store.create(name))
        return refusal;
    fillBundles();
    setCurrentBundle(name.trimmed());
    return std::nullopt;
}

void RepertoirePanel::askNewBundle()
{
    bool ok = false;
    const QString name =
        QInputDialog::getText(this, tr("新建合集"), tr("合集名称:"), QLineEdit::Normal, {}, &ok);
    if (!ok)
        return;
    if (const auto refusal = createBundle(name))
        say(*refusal);
}

std::optional<QString> RepertoirePanel::renameBundle(const QString& newName)
{
    if (auto refusal = m_store.rename(currentBundle(), newName))
        return refusal;
    platform::QSettingsStore::shared().setString(kCurrentBundleKey, newName.trimmed());
    m_bundles->setItemText(m_bundles->currentIndex(), newName.trimmed());
    fillBundles();
    say(tr("合集已重命名为“%1”").arg(newName.trimmed()));
    return std::nullopt;
}

std::optional<QString> RepertoirePanel::dropBundle()
{
    const QString name = currentBundle();
    if (auto refusal = m_store.drop(name))
        return refusal;
    fillBundles();
    say(tr("已删除合集“%1”（图片本身未动）").arg(name));
    return std::nullopt;
}

void RepertoirePanel::askRename()
{
    if (currentBundle().isEmpty())
        return;
    bool ok = false;
    const QString name =
        QInputDialog::getText(this, tr("重命名合集"), tr("新名称:"), QLineEdit::Normal, currentBundle(), &ok);
    if (!ok || name.trimmed() == currentBundle())
        return;
    if (const auto refusal = renameBundle(name))
        say(*refusal);
}

void RepertoirePanel::askDrop()
{
    if (currentBundle().isEmpty())
        return;
    const auto answer = QMessageBox::question(
        this, tr("删除合集"), tr("删除合集“%1”？只删除这份清单，图片本身不受影响。").arg(currentBundle()));
    if (answer != QMessageBox::Yes)
        return;
    if (const auto refusal = dropBundle())
        say(*refusal);
}

void RepertoirePanel::reload()
{
    const QString name = currentBundle();
    if (name.isEmpty()) {
        m_pictures->setPaths({});
        m_summary->setText(tr("还没有合集：按 B 把当前图片加入合集“%1”，或新建一个").arg(kDefaultBundle));
        return;
    }
    const auto items = m_store.items(name);
    if (!items) {
        say(tr("无法读取合集: ") + name);
        return;
    }
    QStringList paths;
    int missing = 0;
    for (const library::RepertoireItem& item : *items) {
        paths << item.filePath;
        missing += item.isPresent ? 0 : 1;
    }
    m_pictures->setPaths(paths);
    m_summary->setText(
        missing == 0
            ? tr("%1 张图片（双击在其文件夹中打开）").arg(paths.size())
            : tr("%1 张图片，其中 %2 张找不到（被移走或在废纸篓中）").arg(paths.size()).arg(missing));
}

void RepertoirePanel::addSelection()
{
    const browse::LMRModeState& state = m_host.modeState();
    const auto folder = state.currentFolder();
    const auto name = state.selectedImageFileName();
    if (!folder || !name) {
        say(tr("没有选中的图片"));
        return;
    }
    if (currentBundle().isEmpty()) {
        if (const auto refusal = createBundle(kDefaultBundle); refusal && !m_store.bundle(kDefaultBundle)) {
            say(*refusal);
            return;
        }
        setCurrentBundle(kDefaultBundle);
    }
    const QString path = QDir(*folder).filePath(*name);
    const auto added = m_store.add(currentBundle(), {path});
    if (!added) {
        say(tr("无法加入合集: ") + m_store.dbManager().lastError().message);
        return;
    }
    say(*added > 0 ? tr("已加入合集“%1”: %2").arg(currentBundle(), *name)
                   : tr("已在合集“%1”中: %2").arg(currentBundle(), *name));
    reload();
}

void RepertoirePanel::removeSelected()
{
    const QString path = m_pictures->selectedPath();
    if (path.isEmpty() || currentBundle().isEmpty())
        return;
    if (m_store.remove(currentBundle(), {path}))
        say(tr("已从合集移除（文件未动）: ") + path);
    reload();
}

void RepertoirePanel::askExport(bool asZip)
{
    if (currentBundle().isEmpty())
        return;
    const QString target =
        asZip
            ? QFileDialog::getSaveFileName(this, tr("导出为 zip"),
                                           QDir::home().filePath(currentBundle() + QStringLiteral(".zip")),
                                           tr("Zip 文件 (*.zip)"), nullptr, QFileDialog::DontConfirmOverwrite)
            : QFileDialog::getExistingDirectory(this, tr("导出到文件夹"), QDir::homePath());
    if (!target.isEmpty())
        exportTo(target, asZip);
}

void RepertoirePanel::exportTo(const QString& target, bool asZip)
{
    const auto items = m_store.items(currentBundle());
    if (!items)
        return;
    say(tr("正在导出…"));
    QPointer<RepertoirePanel> guard(this);
    const QList<library::RepertoireItem> list = *items;
    QThreadPool::globalInstance()->start([guard, list, target, asZip] {
        const auto result = asZip ? library::RepertoireExporter::toZip(list, target)
                                  : library::RepertoireExporter::toFolder(list, target);
        const QString text = outcome(result);
        QMetaObject::invokeMethod(
            guard.data(),
            [guard, text] {
                if (guard)
                    Q_EMIT guard->exported(text);
            },
            Qt::QueuedConnection);
    });
}

} // namespace lumaro::app
