// Cells of rows that are written.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVarLengthArray>

#include <type_traits>

/// What a cell gets, without a variant for each: a row has thirty. A text is not copied, and must
/// outlive the run of the statement.
class RowValue
{
public:
    enum class Kind : quint8 {
        None, ///< the column is left out
        Null,
        Number,
        Text,
        Bytes,
    };

    RowValue() = default;
    template <class Integer, class = std::enable_if_t<std::is_integral_v<Integer>>>
    RowValue(Integer value) : valueKind(Kind::Number), integer(static_cast<qint64>(value))
    {
    }
    /// A null text is an empty one.
    RowValue(const QString &value) : valueKind(Kind::Text), string(&value) {}
    RowValue(QString &&) = delete;
    explicit RowValue(const QByteArray &value) : valueKind(Kind::Bytes), array(value) {}

    static RowValue null()
    {
        RowValue value;
        value.valueKind = Kind::Null;
        return value;
    }

    Kind kind() const { return valueKind; }
    qint64 number() const { return integer; }
    const QString &text() const { return *string; }
    const QByteArray &bytes() const { return array; }

private:
    Kind valueKind = Kind::None;
    union {
        qint64 integer = 0;
        const QString *string;
    };
    QByteArray array;
};

using RowValues = QVarLengthArray<RowValue, 32>;
