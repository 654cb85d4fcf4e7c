// SPDX-License-Identifier: GPL-3.0-or-later
// A folder's ".hidden" file as any file manager, editor or damaged card may have left it, read by the folder
// listing, then added to as the app does when it makes `_index` there (tags on a card): the listing shows
// exactly the entries not listed, and adding never shows again a name that was hidden.
//
// Input: the names of the folder's files, one a line, then a NUL, then the ".hidden" file's bytes (without a
// NUL, the whole input is ".hidden" beside a few fixed names).
#include "fuzz/FuzzScratch.h"
#include "platform/DirectoryLister.h"
#include "platform/IndexFileTagStore.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/HiddenList.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

using namespace lumaro;
using platform::HiddenList;

namespace {

// File names the input asks for: no '/', no NUL (the split), not "." or "..", at most a few dozen.
QList<QByteArray> namesOf(const QByteArray& list)
{
    QList<QByteArray> names;
    for (const QByteArray& line : list.split('\n')) {
        if (line.isEmpty() || line.contains('/') || line == "." || line == ".." || line.size() > 200)
            continue;
        if (!names.contains(line))
            names.append(line);
        if (names.size() == 40)
            break;
    }
    return names;
}

QSet<QByteArray> listedNames(const QString& folder)
{
    QSet<QByteArray> names;
    const auto entries = platform::DirectoryLister::listVisible(folder);
    fuzz::require(entries.has_value(), "the folder lists");
    for (const platform::DirectoryEntry& entry : *entries) {
        fuzz::require(!names.contains(entry.nativeName), "each entry is listed once");
        names.insert(entry.nativeName);
    }
    return names;
}

bool isHidden(const std::vector<QByteArray>& hidden, const QByteArray& name)
{
    return name.startsWith('.') || std::binary_search(hidden.begin(), hidden.end(), name);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::FuzzScratch::clear();
    const QByteArray input = fuzz::bytesOf(data, size);
    const qsizetype split = input.indexOf('\0');
    QList<QByteArray> names = split < 0
                                  ? QList<QByteArray>{"IMG_0001.JPG", "IMG 0002.JPG", "照片.jpg", "_index"}
                                  : namesOf(input.left(split));
    const QByteArray hiddenFile = split < 0 ? input : input.mid(split + 1);

    const QString folder = fuzz::FuzzScratch::path(QStringLiteral("DCIM"));
    QDir().mkpath(folder);
    const QByteArray native = platform::FileNameCodec::encode(folder);
    names.removeAll(QByteArrayLiteral(".hidden"));
    // Made from the name's bytes as they are: a name that is not UTF-8 must reach the disk unchanged.
    QList<QByteArray> made;
    for (const QByteArray& name : names) {
        const int fd = ::open(QByteArray(native + '/' + name).constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd >= 0) {
            ::close(fd);
            made.append(name);
        }
    }
    fuzz::FuzzScratch::write(QStringLiteral("DCIM/.hidden"), hiddenFile);

    const std::vector<QByteArray> hidden = HiddenList::names(folder);
    fuzz::require(std::is_sorted(hidden.begin(), hidden.end()), "the names come sorted");
    fuzz::require(std::none_of(hidden.begin(), hidden.end(), [](const QByteArray& n) { return n.isEmpty(); }),
                  "no empty name");
    const QSet<QByteArray> listed = listedNames(folder);
    for (const QByteArray& name : made)
        fuzz::require(listed.contains(name) != isHidden(hidden, name), "shown exactly when not hidden");

    // Tags on a card make `_index` and list it: every name hidden before stays hidden.
    const QString picture =
        fuzz::FuzzScratch::write(QStringLiteral("DCIM/tagged.jpg"), QByteArrayLiteral("x"));
    QDir(folder).rmdir(QStringLiteral("_index"));
    QFile::remove(folder + QStringLiteral("/_index"));
    if (platform::IndexFileTagStore().setTags(picture, {QStringLiteral("red")})) {
        const std::vector<QByteArray> after = HiddenList::names(folder);
        if (hiddenFile.size() <= HiddenList::maxBytes)
            fuzz::require(std::includes(after.begin(), after.end(), hidden.begin(), hidden.end()),
                          "adding _index hides everything hidden before");
        fuzz::require(!listedNames(folder).contains(QByteArrayLiteral("_index")) ||
                          hiddenFile.size() + 8 > HiddenList::maxBytes,
                      "the _index folder is hidden");
    }
    return 0;
}
