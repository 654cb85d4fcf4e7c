// SPDX-License-Identifier: GPL-3.0-or-later
// Every key of the window and what it does, read from the bindings in force.
#pragma once

#include <QDialog>
#include <QList>
#include <QPair>

namespace lumaro::app {

// Main thread. Built from the live bindings (the seventeen culling actions, the histogram key and the viewer
// keys) each time it opens, so a key rebound in the settings shows as bound.
class KeyHelpDialog : public QDialog
{
    Q_OBJECT
public:
    explicit KeyHelpDialog(QWidget* parent = nullptr);

    // (key, what it does) in the order shown.
    static QList<QPair<QString, QString>> rows();
};

} // namespace lumaro::app
