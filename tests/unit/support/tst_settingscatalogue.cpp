// The catalogue of settings: what the sources read, the look-up, and docs/settings.md, which
// GOLDEN_UPDATE=1 rewrites.
#include "support/editdistance.h"
#include "support/settingscatalogue.h"
#include "tests/fixtures/testkit.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

using Form = Setting::Form;
using Span = Setting::Span;

namespace
{

constexpr SettingStore kStores[] = {SettingStore::General, SettingStore::J1939,
                                    SettingStore::Description, SettingStore::Misc};

/// Words of those files that read settings which look like keys, and keys of other tools.
const QSet<QString> kNoKeys = {"korvel_bitsize",       "korvel_implementation_type",
                               "korvel_variable_name", "line_ending_index",
                               "od_const_u8",          "od_const_u16",
                               "od_const_u32",         "reserved",
                               "routing_counts",       "sdm_loop_counter",
                               "srdo_loop_counter"};

QString readAll(const QString &path)
{
    QFile file(QStringLiteral(TESSARINE_SOURCES "/") + path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The product's sources by their paths, without comments, with the words of device descriptions,
/// and with one kind of holes in texts.
QMap<QString, QString> readSources()
{
    static const QRegularExpression comment("//[^\n]*");
    static const QRegularExpression namedHole("\\$\\w+\\$");
    static const QRegularExpression word(R"re(constexpr const char \*(k\w+) = ("\w+");)re");
    const QString words = readAll("formats/edskeys.h");
    QMap<QString, QString> sources;
    for (const char *folder : {"app", "check", "import", "generators", "store"}) {
        QDirIterator files(TESSARINE_SOURCES "/" + QString(folder), {"*.cpp", "*.h"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = QDir(TESSARINE_SOURCES).relativeFilePath(files.next());
            if (path.startsWith("store/yaml/"))
                continue; // its tables name the keys of a file
            QString text = readAll(path).remove(comment).replace(namedHole, "%1");
            for (auto match = word.globalMatch(words); match.hasNext();) {
                const auto found = match.next();
                for (const char end : {')', ','}) // one word may be the start of another
                    text.replace("EdsKeys::" + found.captured(1) + end, found.captured(2) + end);
            }
            sources.insert(path, text);
        }
    }
    return sources;
}

void collect(const QString &text, const char *pattern, QSet<QString> &words)
{
    for (auto match = QRegularExpression(pattern).globalMatch(text); match.hasNext();)
        words << match.next().captured(1);
}

/// The keys that a source names: in calls of readers and writers, in tables that have a column of
/// keys, and whatever else is spelt as keys are; not so in the store, whose columns are spelt like
/// that.
QSet<QString> keysIn(const QString &path, const QString &source)
{
    static const QRegularExpression table(
        R"re(struct (\w+) \{[^}]*(?:\*\w*[sS]etting;|\*key;|bool isNumber;))re");
    QSet<QString> keys;
    collect(
        source,
        R"re((?:\b(?:\w+Settings?Value(?:Line)?|\w+Setting|setting|ofProject|textOf|lineEntry|isOn|isOne|count)|)re"
        R"re((?:settings|general|j1939|(?:General|J1939)Settings\([^()]*\))\.(?!value\()\w+)\(\s*(?:[\w.]+,\s*)?)re"
        R"re((?:QStringLiteral\(|QLatin1String\()?"([\w%]*[A-Za-z][\w%]*)")re",
        keys);
    collect(source, R"re(\b[kK]ey = QStringLiteral\("([\w%]+)"\))re", keys);
    for (auto match = table.globalMatch(source); match.hasNext();) {
        const QRegularExpression rows("constexpr " + match.next().captured(1) +
                                          R"re( \w+\[\] = \{.*?\n\};)re",
                                      QRegularExpression::DotMatchesEverythingOption);
        for (auto found = rows.globalMatch(source); found.hasNext();) {
            const QString text = found.next().captured();
            collect(text, R"re("([a-z0-9_%]*[a-z][a-z0-9_%]*)")re", keys);
            collect(text, R"re(\{"([A-Z]\w+)")re", keys);
            collect(text, R"re("([A-Z]\w+)"\})re", keys);
        }
    }
    if (source.contains("etting") && !path.startsWith("store/"))
        collect(source, R"re("([a-z0-9]+(?:_(?:[a-z0-9]|%1)+|%1[a-z0-9]+)+)")re", keys);
    return keys - kNoKeys;
}

const Setting *findAnywhere(const QString &key)
{
    for (const SettingStore store : kStores) {
        if (const Setting *setting = SettingsCatalogue::find(store, key))
            return setting;
    }
    return nullptr;
}

// --- The document ---

QString formText(Form form)
{
    switch (form) {
    case Form::Flag:
        return "1 is on";
    case Form::Switch:
        return "above 0 is on";
    case Form::True:
    case Form::Truth:
        return "`true` is on";
    case Form::Decimal:
        return "number";
    case Form::ByPrefix:
        return "number or 0x";
    case Form::Expression:
        return "number or C";
    case Form::Name:
        return "C name";
    case Form::Code:
        return "lines of C";
    case Form::Text:
        return "text";
    case Form::TextLines:
        return "lines of text";
    case Form::Files:
        return "file names";
    case Form::Portable:
        return "`portable` is on";
    }
    return QString();
}

QString valueText(const Setting &setting)
{
    constexpr qint64 kNoLimit = 0x7FFFFFFF;
    const auto range = [](const Setting::Range &r) {
        return QString("%1 to %2").arg(r.low).arg(r.high);
    };
    QStringList words = {formText(setting.form)};
    if (setting.range.isKnown() && setting.range.high < kNoLimit)
        words << range(setting.range);
    if (*setting.unit)
        words << setting.unit;
    QString text = words.join(", ");
    if (setting.span == Span::OneOrEach)
        text += "; one or list";
    else if (setting.span != Span::Project)
        text += setting.span == Span::LastRepeats ? "; list, last repeats" : "; list";
    return setting.isNumbered() ? text + "; N is " + range(setting.numbers) : text;
}

QString rowText(const Setting &setting)
{
    QStringList changes = QString(setting.changes).split(", ", Qt::SkipEmptyParts);
    for (QString &word : changes)
        word = '`' + word + '`';
    QString row = QStringList({"| `" + QString(setting.key) + '`', setting.meaning,
                               valueText(setting), changes.join(", ") + " |\n"})
                      .join(" | ");
    return row.replace("%1", "N").replace(" |  |", " | |");
}

QString documentText()
{
    QString text = readAll("tests/unit/support/settingshead.md");
    const SettingTopic *last = nullptr;
    for (const SettingTopic &topic : SettingsCatalogue::topics()) {
        if (!last || last->store != topic.store)
            text += QString("\n## %1\n").arg(SettingsCatalogue::nameOf(topic.store));
        text +=
            QString(
                "\n### %1\n\n| setting | meaning | value | changes |\n| --- | --- | --- | --- |\n")
                .arg(topic.title);
        for (const Setting &setting : topic)
            text += rowText(setting);
        last = &topic;
    }
    return text;
}

} // namespace

class tst_SettingsCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { sources = readSources(); }

    void hasWhatTheSourcesName()
    {
        QSet<QString> known;
        for (auto source = sources.begin(); source != sources.end(); ++source) {
            const QSet<QString> keys = keysIn(source.key(), source.value());
            for (const QString &key : keys) {
                const Setting *setting = findAnywhere(key);
                if (!setting) // a pattern, which find() does not take for a key
                    setting = findAnywhere(QString(key).replace("%1", "1"));
                QVERIFY2(setting, key.toUtf8() + " of " + source.key().toUtf8() +
                                      " is no setting of support/settingstable.cpp");
                known << setting->key;
            }
        }
        for (const SettingTopic &topic : SettingsCatalogue::topics()) {
            for (const Setting &setting : topic)
                QVERIFY2(known.contains(setting.key),
                         setting.key + QByteArray(" is read by nobody"));
        }
    }

    /// What rows say of macros, files and other settings is spelt as these are.
    void rowsAreSound()
    {
        static const QRegularExpression macro("^(\\w+_[A-Z0-9_%]+|gen_\\w+\\.[ch])$");
        static const QRegularExpression reference("`([a-z]+_[a-z_]+)`");
        const QString all = QStringList(sources.values()).join('\n');
        for (const SettingTopic &topic : SettingsCatalogue::topics()) {
            QVERIFY(topic.begin() != topic.end());
            for (const Setting &setting : topic) {
                QSet<QString> references;
                collect(setting.meaning, qPrintable(reference.pattern()), references);
                for (const QString &key : qAsConst(references))
                    QVERIFY2(findAnywhere(key), qPrintable(key));
                for (const QString &word : QString(setting.changes).split(", ", Qt::SkipEmptyParts))
                    QVERIFY2(!macro.match(word).hasMatch() || all.contains(word), qPrintable(word));
                const QString key =
                    QString(setting.key).replace("%1", QString::number(setting.numbers.high));
                QCOMPARE(SettingsCatalogue::find(topic.store, key), &setting);
                QCOMPARE(setting.isNumbered(), QString(setting.key).contains("%1"));
                QVERIFY2(!QString(setting.meaning).endsWith('.'), setting.key);
            }
        }
    }

    void lookUp_data()
    {
        // clang-format off
        columns<int, QString, QString, QString>("store", "key", "row", "nearest");
        QTest::newRow("known") << 0 << "co_node_id" << "co_node_id" << "co_node_id";
        QTest::newRow("other_store") << 1 << "co_node_id" << "" << "";
        QTest::newRow("digits_of_its_own") << 0 << "1010autostore_by_application" << "1010autostore_by_application"
                                           << "1010autostore_by_application";
        QTest::newRow("numbered") << 0 << "line12type" << "line%1type" << "line12type";
        QTest::newRow("pattern") << 0 << "line%1type" << "" << "line1type";
        QTest::newRow("leading_zero") << 0 << "line01type" << "" << "line1type";
        QTest::newRow("number_too_high") << 1 << "diagsupport_dm65" << "" << "diagsupport_dm1";
        QTest::newRow("second_number") << 2 << "BaudRate_10_2" << "BaudRate_10" << "BaudRate_10_2";
        QTest::newRow("description_of_line") << 2 << "VendorName_2" << "VendorName" << "VendorName_2";
        QTest::newRow("general_of_line") << 0 << "nmtmaster_2" << "" << "nmtmaster";
        QTest::newRow("line_0_has_no_number") << 2 << "VendorName_0" << "" << "VendorName";
        QTest::newRow("missing") << 0 << "co_timer_intrval" << "" << "co_timer_interval";
        QTest::newRow("swapped_of_line") << 2 << "VednorName_3" << "" << "VendorName_3";
        QTest::newRow("no_line_but_a_rate") << 2 << "BaudRat_20" << "" << "BaudRate_20";
        QTest::newRow("number_stays") << 0 << "targetsetings_7_name" << "" << "targetsettings_7_name";
        QTest::newRow("case") << 3 << "postgenenabled" << "" << "postGenEnabled";
        QTest::newRow("short") << 0 << "dyno" << "" << "dynod";
        QTest::newRow("short_and_far") << 0 << "dyn" << "" << "";
        QTest::newRow("far") << 0 << "timer" << "" << "";
        QTest::newRow("not_read") << 2 << "NrOfRPDO" << "" << "";
        QTest::newRow("long") << 0 << QString(1000000, 'x') << "" << "";
        // clang-format on
    }
    void lookUp()
    {
        const auto [store, key] = fetchRow<int, QString>();
        const Setting *setting = SettingsCatalogue::find(kStores[store], key);
        QTEST(QString(setting ? setting->key : ""), "row");
        QTEST(SettingsCatalogue::nearest(kStores[store], key), "nearest");
    }

    void distances()
    {
        QCOMPARE(editDistance("", "abc"), 3);
        QCOMPARE(editDistance("kitten", "Sitting"), 3);
        QCOMPARE(editDistance("abcd", "badc"), 2); // neighbours swapped twice
        QCOMPARE(didYouMean("acess", {"ro", "access"}), "; did you mean \"access\"");
        QCOMPARE(didYouMean("rx", {"access", "wow"}), ""); // two of three letters are others
    }

    void documentIsCurrent()
    {
        const QString text = documentText();
        if (qEnvironmentVariableIsSet("GOLDEN_UPDATE")) {
            QFile file(TESSARINE_SOURCES "/docs/settings.md");
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(text.toUtf8());
        }
        QVERIFY2(readAll("docs/settings.md") == text,
                 "run tst_settingscatalogue with GOLDEN_UPDATE=1");
    }

private:
    QMap<QString, QString> sources;
};

QTEST_GUILESS_MAIN(tst_SettingsCatalogue)
#include "tst_settingscatalogue.moc"
