// SPDX-License-Identifier: GPL-3.0-or-later
// Records one key press for a binding being edited in the settings; the widget that feeds it lives in app/.
#pragma once

#include "browse/hotkeys/Hotkey.h"

#include <QObject>

#include <optional>

namespace lumaro::browse {

// Main thread. While listening, the app hands every key press to capture() instead of the dispatcher. An
// unknown key (a lone modifier, a media key) is logged and captures nothing; listening goes on.
class KeyListener : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    static inline const QString waitingText = QStringLiteral("请按下快捷键...");
    static inline const QString idleText = QStringLiteral("点击开始录制...");

    void startListening();
    void stopListening();
    bool isListening() const { return m_isListening; }
    // The prompt the binding editor shows: waiting for a key, or ready to record.
    QString promptText() const { return m_isListening ? waitingText : idleText; }

    // A Qt key event's key code, modifiers and its own description for the log. Returns whether it was
    // taken (listening and a known key).
    bool capture(int qtKey, Qt::KeyboardModifiers modifiers, const QString& eventDescription = {});
    const std::optional<Hotkey>& capturedKey() const { return m_capturedKey; }
    void clearCapturedKey();

Q_SIGNALS:
    void capturedKeyChanged();
    void listeningChanged();

private:
    bool m_isListening = false;
    std::optional<Hotkey> m_capturedKey;
};

} // namespace lumaro::browse
