// SPDX-License-Identifier: GPL-3.0-or-later
// The name of a pressed key as key bindings store it, from a Qt key code.
#pragma once

#include <QString>

#include <optional>

namespace lumaro::platform {

// Pure, thread-safe. Letters and digits give themselves in lower case; other keys give the names of the
// macOS virtual key table the bindings were first written for ("leftArrow", "return", "space", "f5", …).
// Kept on purpose, because stored bindings rely on it: several keys share one name. A keypad digit is its
// digit; F1 and F11 give "1", F2 and F12 give "2", F3 and F13 give "3"; forward Delete gives "d" and Home
// gives "h". Backspace is "delete", as that table calls it. nullopt for a key the table does not know
// (a lone modifier, media keys).
std::optional<QString> keyName(int qtKey);

} // namespace lumaro::platform
