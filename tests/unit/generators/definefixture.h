// A project, and the sections of gen_define.h that come of it.
#pragma once

#include "generators/defines/definecontext.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <QBuffer>
#include <QRegularExpression>

/// A new project with line 0 of CANopen and what \a rows tell, see projecttext.h.
class DefineProject
{
public:
    explicit DefineProject(const QString &rows = QString())
    {
        store.createNewDataBase();
        change("line 0\n" + rows);
    }

    void change(const QString &rows) { buildProject(store, rows); }

    DefineContext context(TextWriter &out, const DefineDialect &dialect = classic)
    {
        for (const quint8 line : store.getNodes())
            store.cacheAllSubs(line, 0);
        return DefineContext(store, out, dialect);
    }

    /// What a section writes.
    QString text(void (*section)(DefineContext &), const DefineDialect &dialect = classic,
                 bool isMultiProtocol = false)
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        TextWriter out(&buffer);
        DefineContext facts = context(out, dialect);
        facts.multiProtocol = isMultiProtocol;
        section(facts);
        out.finish();
        return QString::fromUtf8(buffer.data());
    }

    StoreFixture files;
    ObjectDataBase store;

    static constexpr DefineDialect classic = classicDefineDialect();
    static constexpr DefineDialect v4 = v4DefineDialect();
};

/// A classic text as the V4 generation has it.
inline QString inV4(QString text)
{
    static const QRegularExpression renamed(
        "\\bCO_(?=REC_BUFFER_|TR_BUFFER_|COB_C|INHIBIT|EVENT_DYNAMIC_CAN\t|CONFIG_REC_|"
        "CONFIG_TRANS_|TIMER_INTERVAL|BIG_ENDIAN|DRV_)");
    text.replace("#define CO_MULTI_LINE", "#define CAN_MULTI_LINE");
    return text.replace(renamed, "CORE_");
}
