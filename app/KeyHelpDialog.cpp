// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeyHelpDialog.h"

#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/hotkeys/ViewerHotkeys.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace lumaro::app {

QList<QPair<QString, QString>> KeyHelpDialog::rows()
{
    QList<QPair<QString, QString>> rows;
    const browse::HotkeyManager& culling = browse::HotkeyManager::shared();
    for (browse::HotkeyAction action : browse::allHotkeyActions())
        rows.append({culling.hotkey(action).displayText(), browse::displayName(action)});
    rows.append(
        {browse::HistogramHotkey::shared().hotkey().displayText(), QStringLiteral("显示 / 隐藏直方图")});
    const browse::ViewerHotkeys& viewer = browse::ViewerHotkeys::shared();
    for (browse::ViewerAction action : browse::allViewerActions())
        rows.append({viewer.hotkey(action).displayText(), browse::displayName(action)});
    rows.append({QStringLiteral("Esc"), QStringLiteral("退出放大查看，再按一次退出全屏")});
    rows.append({QStringLiteral("双击预览"), QStringLiteral("在双击处 100% 放大查看")});
    rows.append(
        {QStringLiteral("滚轮 / 拖动"), QStringLiteral("放大查看时缩放（适合窗口、100%、200%）/ 平移")});
    return rows;
}

KeyHelpDialog::KeyHelpDialog(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("快捷键"));
    resize(520, 640);
    const auto entries = rows();
    auto* table = new QTableWidget(int(entries.size()), 2, this);
    table->setHorizontalHeaderLabels({tr("按键"), tr("作用")});
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int row = 0; row < entries.size(); ++row) {
        table->setItem(row, 0, new QTableWidgetItem(entries.at(row).first));
        table->setItem(row, 1, new QTableWidgetItem(entries.at(row).second));
    }
    table->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    table->resizeColumnToContents(0);
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table);
    layout->addWidget(close);
}

} // namespace lumaro::app
