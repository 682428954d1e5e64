// The page, put together of the files in this folder.
#include "generators/overview/overviewpage.h"

#include "generators/overview/factsjson.h"
#include "overviewparts.h" // made by the build

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
QByteArray policyNameOf(const char *sha256)
{
    return "sha256-" + QByteArray::fromHex(sha256).toBase64();
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

/// The data is by far the largest part, and written where it stands.
QByteArray Overview::pageOf(const Facts &facts)
{
    provideFiles();
    const Hole holes[] = {
        {"title", facts.project.name.toHtmlEscaped().toUtf8()},
        {"styleHash", policyNameOf(kStyleSha256)},
        {"scriptHash", policyNameOf(kScriptSha256)},
        {"style", joined(kStyles)},
        {"script", joined(kScripts)},
    };
    const QByteArray page = fileOf("page.html");
    const QByteArray data = QByteArrayLiteral("$data$");
    const int place = page.indexOf(data);
    QByteArray text = filled(page.left(place), holes);
    writeJson(facts, text);
    text += filled(page.mid(place + data.size()), holes);
    return text;
}

QByteArray Overview::startOfPages()
{
    provideFiles();
    const QByteArray page = fileOf("page.html");
    return page.left(page.indexOf('$'));
}
