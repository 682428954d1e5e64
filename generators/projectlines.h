// The lines that generated C knows, and whether it takes its multi-line form.
#pragma once

#include <QList>

class ObjectDataBase;

/// One decision for all generated C, so that tables, counts and calls fit each other.
struct ProjectLines {
    /// Existing lines 0..31, ascending; gaps are possible. Without any, the first of the others.
    QList<quint8> numbers;
    bool multiLine = false; ///< several lines, or the misc setting "generateML" is "true"
};

ProjectLines readProjectLines(const ObjectDataBase &store);
