#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// The texts of the views in the interface language.
class ViewTexts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString search READ search NOTIFY changed FINAL)
    Q_PROPERTY(QString clear READ clear NOTIFY changed FINAL)
    Q_PROPERTY(QString noResults READ noResults NOTIFY changed FINAL)
    Q_PROPERTY(QString emptyFolder READ emptyFolder NOTIFY changed FINAL)
    Q_PROPERTY(QString newFolder READ newFolder NOTIFY changed FINAL)
    Q_PROPERTY(QString settings READ settings NOTIFY changed FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] static QString search();
    [[nodiscard]] static QString clear();
    [[nodiscard]] static QString noResults();
    [[nodiscard]] static QString emptyFolder();
    [[nodiscard]] static QString newFolder();
    [[nodiscard]] static QString settings();

    // To be called when the interface language has changed: all texts are read anew.
    void retranslate() { Q_EMIT changed(); }

    Q_INVOKABLE [[nodiscard]] static QString page(int number, int count);

Q_SIGNALS:
    void changed();
};

} // namespace amberquill
