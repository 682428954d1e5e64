// gen_extern_decl.h and gen_var_decl.c: declarations and definitions of the application's variables
// that the tables of signals and objects name.
#pragma once

#include "generators/dialect.h"
#include "generators/filegenerator.h"

#include <QHash>
#include <QStringList>
#include <QVector>

#include <map>

/// Writes both files, for all lines of a project. The application may leave gen_var_decl.c out of
/// its build and define the variables itself.
class ExtDeclGenerator : public FileGenerator
{
    Q_OBJECT

public:
    ExtDeclGenerator() : ExtDeclGenerator(Dialect()) {}

    bool checkWritability() override;

protected:
    explicit ExtDeclGenerator(const Dialect &words);

private:
    QString targetFile() const override { return inOutputDirectory("gen_extern_decl.h"); }
    QString sourceFile() const { return inOutputDirectory("gen_var_decl.c"); }
    QStringList outputFiles() const override { return {targetFile(), sourceFile()}; }
    void writeFiles() override;

    Dialect dialect;
};

/// The same files for the V4 stack.
class ExtDeclGeneratorV4 : public ExtDeclGenerator
{
    Q_OBJECT

public:
    ExtDeclGeneratorV4();
};

namespace ExtDecl
{

struct CType;

/// One variable, or an array of which the project names elements.
struct Variable {
    QString name;
    const CType *type = nullptr;
    quint32 bytes = 0;    ///< of one element, at least 1
    quint32 elements = 0; ///< of an array, by the highest index in use; 0: no array
    std::map<quint32, QString> defaultValues; ///< of the elements in use, as the project gives them
};

/// An object whose variable is not declared as its table takes it.
struct Misfit {
    QString name; ///< as the object gives it, on one line
    quint8 line = 0;
    quint16 index = 0;
    quint8 subindex = 0;
    /// What stands beside another; both empty for what is not declared at all.
    QString type;
    QString otherType;
};

struct Variables {
    QVector<Variable> declared;
    QStringList others;         ///< expressions, and what has no type
    QVector<Misfit> misfits;    ///< of objects, each variable and expression once
    QHash<QString, int> places; ///< in declared, by name
};

/// Each name once, in order of first use: signals of groups and identifiers first, then objects. Of
/// several types of one variable the widest counts, since all tables must find room in it; of equal
/// ones that of an object, whose table takes pointers of no other type.
Variables readVariables(ObjectDataBase &store);

/// The same with the signals that are cached; those of lines that are not are read one by one.
Variables readVariables(const ObjectDataBase &store);

/// How C code refers to a signal's variable.
struct Access {
    QString expression;    ///< an lvalue, or an array; empty if the type is not known
    const char *type = ""; ///< of a number, or of an array's elements
    quint32 bytes = 0;     ///< of an array; 0 for a number
};

/// A declared variable is taken as it is declared, all else by the type of the signal.
Access accessTo(const Variables &variables, const SignalData &signal);

/// A declaration of the header without what stands around it, such as "UNSIGNED8 level[]".
QString declaration(const Variable &variable);
/// The same with the number of elements and the default values.
QString definition(const Variable &variable);

} // namespace ExtDecl
