// What the sections of all generated C get, whichever file they write.
#pragma once

#include "generators/codefeatures.h"
#include "generators/dialect.h"
#include "generators/generalsettings.h"
#include "generators/textwriter.h"
#include "store/objectdatabase.h"

/// Handed to each section; the sections of a file share one. A family of files derives its own,
/// with its facts and with what one section leaves for the next. \a Words is the family's record of
/// differences, which outlives the context.
template <class Words>
struct SourceContext {
    ObjectDataBase &store;
    TextWriter &out;
    const Words &dialect;
    GeneralSettings settings;
    ProjectFeatures features;

    SourceContext(ObjectDataBase &database, TextWriter &writer, const Words &words)
        : store(database), out(writer), dialect(words), settings(database),
          features(readCodeFeatures(database))
    {
    }

    /// A text in the words of the stack.
    const char *of(const Word &word) const { return dialect.of(word); }
    void raw(const Word &text) { out.raw(of(text)); }
};
