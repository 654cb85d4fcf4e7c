// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyNames.h"

#include <gtest/gtest.h>

using lumaro::platform::keyName;

namespace {

struct KeyCase
{
    int key;
    const char* name;
};

class KeyNames : public ::testing::TestWithParam<KeyCase>
{
};

} // namespace

// Stored bindings rely on these shared names: a binding to "1" fires from the digit row, the keypad, F1 and F11.
TEST_P(KeyNames, NameAsBindingsStoreIt)
{
    const auto name = keyName(GetParam().key);
    ASSERT_TRUE(name);
    EXPECT_EQ(*name, QString::fromLatin1(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(KeyNames, KeyNames,
                         ::testing::Values(KeyCase{Qt::Key_A, "a"}, KeyCase{Qt::Key_Z, "z"}, KeyCase{Qt::Key_1, "1"},
                                           KeyCase{Qt::Key_F1, "1"}, KeyCase{Qt::Key_F11, "1"},
                                           KeyCase{Qt::Key_F2, "2"}, KeyCase{Qt::Key_F12, "2"},
                                           KeyCase{Qt::Key_F3, "3"}, KeyCase{Qt::Key_F13, "3"},
                                           KeyCase{Qt::Key_F4, "f4"}, KeyCase{Qt::Key_Delete, "d"},
                                           KeyCase{Qt::Key_Home, "h"}, KeyCase{Qt::Key_Backspace, "delete"},
                                           KeyCase{Qt::Key_Left, "leftArrow"}, KeyCase{Qt::Key_Down, "downArrow"},
                                           KeyCase{Qt::Key_Space, "space"}, KeyCase{Qt::Key_BracketRight, "]"}));

TEST(KeyNamesUnknown, ALoneModifierHasNoName)
{
    EXPECT_FALSE(keyName(Qt::Key_Shift));
    EXPECT_FALSE(keyName(Qt::Key_VolumeUp));
}
