// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzScratch.h"

#include "platform/Log.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <filesystem>

namespace lumaro::fuzz {

namespace {

// A temporary folder removed by its bytes: inputs write names that are not UTF-8, which QTemporaryDir
// cannot remove.
struct ScratchFolder
{
    QTemporaryDir dir;
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(QFile::encodeName(dir.path()).toStdString(), ignored);
    }
};

QTemporaryDir& scratch()
{
    static ScratchFolder folder;
    return folder.dir;
}

// Apart from the scratch folder, which is emptied between inputs.
QTemporaryDir& home()
{
    static ScratchFolder folder;
    return folder.dir;
}

} // namespace

void FuzzScratch::initialise()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The harness must not touch the user's Trash, settings or favourites.
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qputenv(name, home().path().toUtf8());
    platform::Log::silence();
    static int argc = 1;
    static char name[] = "lumaro-fuzz";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
}

QString FuzzScratch::path(const QString& relative)
{
    return relative.isEmpty() ? scratch().path() : scratch().filePath(relative);
}

QString FuzzScratch::write(const QString& relative, const QByteArray& data)
{
    const QString target = path(relative);
    QDir().mkpath(QFileInfo(target).path());
    QFile file(target);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(data);
    return target;
}

void FuzzScratch::clear()
{
    std::error_code ignored;
    for (const auto& entry :
         std::filesystem::directory_iterator(QFile::encodeName(path()).toStdString(), ignored))
        std::filesystem::remove_all(entry.path(), ignored);
}

} // namespace lumaro::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    lumaro::fuzz::FuzzScratch::initialise();
    return 0;
}
