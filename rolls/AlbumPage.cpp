// SPDX-License-Identifier: GPL-3.0-or-later
#include "rolls/AlbumPage.h"

#include "browse/state/ImageAnnotation.h"

#include <QSaveFile>

namespace lumaro::rolls {

namespace {

const char* const kStyle = R"(
body{margin:0;font-family:system-ui,sans-serif;background:#111;color:#eee}
header{padding:16px 20px;display:flex;gap:16px;align-items:center;flex-wrap:wrap}
h1{font-size:20px;font-weight:600;margin:0}
nav button{border:1px solid #555;background:#222;color:#eee;border-radius:14px;padding:4px 12px;cursor:pointer}
nav button[aria-pressed=true]{background:#eee;color:#111}
nav .dot{display:inline-block;width:10px;height:10px;border-radius:5px;margin-right:4px}
main{display:grid;grid-template-columns:repeat(auto-fill,minmax(220px,1fr));gap:8px;padding:0 8px 20px}
figure{margin:0;background:#1b1b1b}
figure img{width:100%;aspect-ratio:3/2;object-fit:contain;display:block;background:#000}
figcaption{font-size:12px;padding:4px 6px;color:#aaa;overflow:hidden;text-overflow:ellipsis;white-space:nowrap}
figure.hidden{display:none}
)";

// Shows only the pictures that carry the chosen colour; "all" shows every one.
const char* const kScript = R"(
document.querySelectorAll('nav button').forEach(function (button) {
  button.addEventListener('click', function () {
    var colour = button.getAttribute('data-colour');
    document.querySelectorAll('nav button').forEach(function (b) { b.setAttribute('aria-pressed', b === button); });
    document.querySelectorAll('main figure').forEach(function (f) {
      var tags = (f.getAttribute('data-tags') || '').split(' ');
      f.classList.toggle('hidden', colour !== '' && tags.indexOf(colour) < 0);
    });
  });
});
)";

QString escaped(const QString& text)
{
    return text.toHtmlEscaped();
}

QString filterButtons(const QList<StagedPicture>& pictures)
{
    QString nav = QStringLiteral("<nav><button data-colour=\"\" aria-pressed=\"true\">全部</button>");
    for (const QString& colour : browse::annotationColors()) {
        const bool used = std::any_of(pictures.cbegin(), pictures.cend(),
                                      [&](const StagedPicture& p) { return p.tags.contains(colour); });
        if (used)
            nav += QStringLiteral(" <button data-colour=\"%1\" aria-pressed=\"false\"><span class=\"dot\" "
                                  "style=\"background:%1\"></span>%1</button>")
                       .arg(colour);
    }
    return nav + QStringLiteral("</nav>");
}

QString figure(const StagedPicture& picture)
{
    QStringList colours;
    for (const QString& tag : picture.tags)
        if (browse::annotationColors().contains(tag))
            colours << tag;
    const QString full = picture.original.isEmpty()
                             ? QString(QStringLiteral("p/") + picture.base + QStringLiteral(".jpg"))
                             : QString(QStringLiteral("o/") + picture.original);
    return QStringLiteral("<figure data-tags=\"%1\"><a href=\"%2\"><img src=\"t/%3.jpg\" loading=\"lazy\" "
                          "alt=\"%4\" /></a><figcaption><a href=\"p/%3.jpg\">%4</a></figcaption></figure>\n")
        .arg(colours.join(QLatin1Char(' ')), escaped(full), picture.base, escaped(picture.caption));
}

} // namespace

QString AlbumPage::html(const QString& title, const QList<StagedPicture>& pictures)
{
    QString body;
    for (const StagedPicture& picture : pictures)
        body += figure(picture);
    return QStringLiteral(
               "<!DOCTYPE html>\n<html lang=\"zh\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n"
               "<meta charset=\"utf-8\" />\n"
               "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n"
               "<meta name=\"generator\" content=\"Lumaro\" />\n"
               "<title>%1</title>\n<style>%2</style>\n</head>\n<body>\n<header><h1>%1</h1>"
               "<span>%3 张</span>%4</header>\n<main>\n%5</main>\n<script>//<![CDATA[%6//]]></script>\n"
               "</body>\n</html>\n")
        .arg(escaped(title), QString::fromLatin1(kStyle), QString::number(pictures.size()),
             filterButtons(pictures), body, QString::fromLatin1(kScript));
}

bool AlbumPage::write(const QString& path, const QString& title, const QList<StagedPicture>& pictures,
                      QString* error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(html(title, pictures).toUtf8()) < 0 ||
        !file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace lumaro::rolls
