#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// The texts that the views show, in the interface language.
class ViewTexts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString search READ search NOTIFY changed FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] static QString search();

    // The interface language has changed: every text is read anew.
    void retranslate() { Q_EMIT changed(); }

Q_SIGNALS:
    void changed();
};

} // namespace amberquill
