// What a tool with windows shows while the stage after the generation runs.
#pragma once

#include <QObject>
#include <QString>

class QWidget;

/// Shows nothing here; the console tool has none at all.
class PostGenProgressHandler : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void hide() {}
    virtual void setLabelText(const QString &) {}
    virtual void setCancelButtonText(const QString &) {}
    virtual void show() {}
    virtual void adjustSize() {}
    virtual void showMessageBox(QWidget *, const QString &, const QString &, const QString &) {}

public slots:
    void cancelProcessTriggered() { emit cancelProcess(); }

signals:
    void cancelProcess();
};
