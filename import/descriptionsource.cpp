// The two formats of device descriptions.
#include "import/descriptionsource.h"

#include "formats/edskeys.h"
#include "formats/edsparser.h"
#include "formats/xddparser.h"
#include "support/filereasons.h"

namespace
{

template <typename Parser>
void connectTakers(Parser *parser, const DescriptionSource::Takers &takers)
{
    QObject::connect(parser, &Parser::newIndex, parser, takers.object);
    QObject::connect(parser, &Parser::newSubIndex, parser, takers.subindex);
}

/// EDS and DCF.
class EdsSource : public DescriptionSource
{
public:
    explicit EdsSource(const QString &fileName) : file(fileName) {}

    bool read(const Takers &takers) override
    {
        connectTakers(&parser, takers);
        (void)parser.LoadEds(file); // without objects the rest is taken all the same
        return parser.wasRead();
    }

    std::optional<QVector<Entry>> section(const char *name) const override
    {
        const EdsSection *found = parser.sections().section(QLatin1String(name));
        if (!found)
            return std::nullopt;
        QVector<Entry> entries;
        for (const EdsEntry &entry : found->entries)
            entries.append({entry.key.toString(), entry.value.toString(), entry.line});
        return entries;
    }

    Reason whyNothing() const override
    {
        return {QStringLiteral("has no section of an object from 0x1000 to 0xBFFF"), 0};
    }

    Rules rules() const override { return {"eds-value", "eds-line", "eds-pdo"}; }

    void warn(const char *rule, int line, const std::function<QString()> &words) const override
    {
        parser.sections().note(rule, line, words);
    }
    void tellProblems() const override { parser.sections().tellProblems(); }

private:
    QString file;
    EdsParser parser;
};

/// XDD and XDC.
class XddSource : public DescriptionSource
{
public:
    explicit XddSource(const QString &fileName) : file(fileName) {}

    bool read(const Takers &takers) override
    {
        connectTakers(&parser, takers);
        return parser.load(file) || FileReasons::whyNotReadable(file).isEmpty();
    }

    /// There all texts stand together, but for the comments, which there are none of.
    std::optional<QVector<Entry>> section(const char *name) const override
    {
        if (!parser.whyNotRead().isEmpty() || qstrcmp(name, EdsKeys::kComments) == 0)
            return std::nullopt;
        QVector<Entry> entries;
        const auto &all = parser.information();
        for (auto text = all.constBegin(); text != all.constEnd(); ++text)
            entries.append({text.key(), text->value, text->line});
        return entries;
    }

    Reason whyNothing() const override
    {
        if (parser.whyNotRead().isEmpty())
            return {QStringLiteral("has no object from 0x1000 to 0xBFFF"), 0};
        return {QStringLiteral("could not be imported: ") + parser.whyNotRead(),
                parser.lineOfReason()};
    }

    Rules rules() const override { return {"xdd-value", "xdd-line", "xdd-pdo"}; }

    void warn(const char *rule, int line, const std::function<QString()> &words) const override
    {
        parser.note(rule, line, words);
    }
    void tellProblems() const override { parser.tellProblems(); }

private:
    QString file;
    XddParser parser;
};

} // namespace

std::unique_ptr<DescriptionSource> DescriptionSource::ofFile(const QString &fileName)
{
    for (const char *ending : {".xdd", ".xdc"}) {
        if (fileName.endsWith(QLatin1String(ending), Qt::CaseInsensitive))
            return std::make_unique<XddSource>(fileName);
    }
    return std::make_unique<EdsSource>(fileName);
}

DescriptionSource::Entry DescriptionSource::entry(const char *sectionName, const char *key) const
{
    Entry result;
    const auto entries = section(sectionName).value_or(QVector<Entry>());
    for (const Entry &one : entries) {
        if (one.key.compare(QLatin1String(key), Qt::CaseInsensitive) == 0)
            result = one;
    }
    return result;
}
