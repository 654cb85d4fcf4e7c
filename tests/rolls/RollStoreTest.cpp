// SPDX-License-Identifier: GPL-3.0-or-later
// The records of published rolls as a damaged or edited rolls.json may hold them.
#include "rolls/RollStore.h"

#include "platform/AppPaths.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using lumaro::rolls::RollStore;

TEST(RollStore, CountsThatAreNoWholeNumberFromZeroUpReadAsZero)
{
    // 1e300 used to be cast to qint64: undefined behaviour, a negative size on x86.
    ASSERT_TRUE(QDir().mkpath(lumaro::platform::AppPaths::dataDir()));
    QFile records(lumaro::platform::AppPaths::dataDir() + QStringLiteral("/rolls.json"));
    ASSERT_TRUE(records.open(QIODevice::WriteOnly | QIODevice::Truncate));
    records.write(R"([{"name":"huge","target":"photos:a","pictures":-4,"bytes":1e300},)"
                  R"({"name":"minus","target":"photos:b","pictures":3,"bytes":-1},)"
                  R"({"name":"fine","target":"photos:c","pictures":12,"bytes":7340032000}])");
    records.close();
    const QList<lumaro::rolls::PublishedRoll> rolls = RollStore::all();
    ASSERT_EQ(rolls.size(), 3);
    EXPECT_EQ(rolls.at(0).bytes, 0);
    EXPECT_EQ(rolls.at(0).pictures, 0);
    EXPECT_EQ(rolls.at(1).bytes, 0);
    EXPECT_EQ(rolls.at(2).bytes, 7340032000);
    EXPECT_EQ(rolls.at(2).pictures, 12);
}
