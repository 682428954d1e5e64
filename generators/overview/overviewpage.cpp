// The page, put together of the files in this folder.
#include "generators/overview/overviewpage.h"

#include "generators/overview/factsjson.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <iterator>

/// The linker leaves out what no code names.
static void provideFiles()
{
    Q_INIT_RESOURCE(overview); // not in a namespace
}

namespace
{

// Each in its element, one after the other in this order.
constexpr const char *kStyles[] = {"page.css"};
constexpr const char *kScripts[] = {
    "text.js",    "dom.js",     "data.js",        "links.js",       "summary.js",
    "matrix.js",  "frames.js",  "identifiers.js", "load.js",        "filter.js",
    "details.js", "objects.js", "footprint.js",   "connections.js", "comparison.js",
    "start.js", // calls what stands in the others
};

QByteArray fileOf(const char *name)
{
    QFile file(QLatin1String(":/overview/") + QLatin1String(name));
    (void)file.open(QIODevice::ReadOnly); // it is in the tool
    return file.readAll();
}

template <size_t N>
QByteArray joined(const char *const (&names)[N])
{
    QByteArray text;
    for (const char *name : names)
        text += fileOf(name);
    return text;
}

/// As a content security policy names what may run.
QByteArray hashOf(const QByteArray &text)
{
    return "sha256-" + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64();
}

/// What stands for "$name$" in the template.
struct Hole {
    const char *name;
    QByteArray content;
};

/// In one pass: what fills a hole is not searched for others.
template <size_t N>
QByteArray filled(const QByteArray &page, const Hole (&holes)[N])
{
    QByteArray text;
    const QList<QByteArray> parts = page.split('$');
    for (int i = 0; i < parts.size(); ++i) {
        const bool isHole = i % 2 != 0;
        const auto hole = std::find_if(std::begin(holes), std::end(holes), [&](const Hole &each) {
            return isHole && parts.at(i) == each.name;
        });
        text += hole == std::end(holes) ? parts.at(i) : hole->content;
    }
    return text;
}

} // namespace

QByteArray Overview::pageOf(const Facts &facts)
{
    return pageOf(facts.project.name, jsonOf(facts));
}

QByteArray Overview::pageOf(const QString &title, const QByteArray &data)
{
    provideFiles();
    const QByteArray style = joined(kStyles);
    const QByteArray script = joined(kScripts);
    return filled(fileOf("page.html"), {
                                           {"title", title.toHtmlEscaped().toUtf8()},
                                           {"styleHash", hashOf(style)},
                                           {"scriptHash", hashOf(script)},
                                           {"style", style},
                                           {"data", data},
                                           {"script", script},
                                       });
}
