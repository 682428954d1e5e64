// The two forms of DBC files.
#include "generators/descriptions/dbcform.h"

#include "formats/dbcstrings.h"
#include "generators/descriptions/dbcgenerator.h"

namespace
{

QString textAsItIs(const QString &text, bool * /*isWhole*/)
{
    return text;
}

DbcForm makeClassic()
{
    DbcForm form;
    form.frames = &Frames::classicForm();
    form.name = Dbc::symbolName;
    form.text = textAsItIs;
    return form;
}

DbcForm makePortable()
{
    DbcForm form;
    form.preferPortable = true;
    form.frames = &Frames::busForm();
    form.tellsDevice = true;
    form.tellsMore = true;
    form.doublesBackslashes = false;
    form.hasEachIdentifierOnce = true;
    form.name = DbcStrings::name;
    form.text = DbcStrings::portable;
    return form;
}

} // namespace

const DbcForm &classicDbc()
{
    static const DbcForm form = makeClassic();
    return form;
}

const DbcForm &portableDbc()
{
    static const DbcForm form = makePortable();
    return form;
}
