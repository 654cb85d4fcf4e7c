// SPDX-License-Identifier: GPL-3.0-or-later
// Delete + restore of one picture inside the process, without any start-up cost: what a key press pays.
#include "browse/trash/FileDeleteService.h"
#include "platform/FreedesktopTrash.h"
#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace lumaro;

namespace {

struct Setup
{
    QTemporaryDir root;
    QString folder;

    Setup()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(root.filePath(QStringLiteral("data"))));
        folder = root.filePath(QStringLiteral("shoot"));
        QDir().mkpath(folder);
        QFile file(QDir(folder).filePath(QStringLiteral("IMG 0001.JPG")));
        file.open(QIODevice::WriteOnly);
        file.write(QByteArray(200'000, 'j'));
        platform::Log::silence();
    }

    // Other items already in the Trash, which a restore without a saved path has to look through.
    void fillTrash(int count)
    {
        for (int i = 0; i < count; ++i) {
            const QString path = QDir(folder).filePath(QStringLiteral("old_%1.jpg").arg(i));
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.close();
            QString error;
            platform::FreedesktopTrash::shared().moveToTrash(path, &error);
        }
    }
};

browse::FileDeleteService::Options options()
{
    browse::FileDeleteService::Options result;
    result.useGio = false;
    return result;
}

void BM_DeleteThenRestoreFromSavedPath(benchmark::State& state)
{
    Setup setup;
    setup.fillTrash(int(state.range(0)));
    browse::FileDeleteService service(options());
    for (auto _ : state) {
        const browse::TrashOutcome outcome = service.moveToTrash(QStringLiteral("IMG 0001.JPG"), setup.folder, {});
        browse::DeletedFileInfo info;
        info.fileName = QStringLiteral("IMG 0001.JPG");
        info.folderPath = setup.folder;
        info.trashFileURL = outcome.trashFilePath;
        if (!outcome.ok() || !service.restoreFile(info))
            state.SkipWithError("round trip failed");
    }
}
BENCHMARK(BM_DeleteThenRestoreFromSavedPath)->Arg(0)->Arg(1000)->Unit(benchmark::kMicrosecond);

void BM_DeleteThenRestoreByTrashLookup(benchmark::State& state)
{
    Setup setup;
    setup.fillTrash(int(state.range(0)));
    browse::FileDeleteService service(options());
    for (auto _ : state) {
        if (!service.moveToTrash(QStringLiteral("IMG 0001.JPG"), setup.folder, {}).ok())
            state.SkipWithError("delete failed");
        browse::DeletedFileInfo info; // no saved path: found through the .trashinfo records
        info.fileName = QStringLiteral("IMG 0001.JPG");
        info.folderPath = setup.folder;
        if (!service.restoreFile(info))
            state.SkipWithError("restore failed");
    }
}
BENCHMARK(BM_DeleteThenRestoreByTrashLookup)->Arg(0)->Arg(1000)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
