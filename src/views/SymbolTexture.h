#pragma once

#include "views/TextureItem.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace amberquill {

// One of the interface's own symbols in white, aligned to device pixels. The item is a square.
class SymbolTexture : public amberquill::TextureItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL) // such as "plus"

public:
    using TextureItem::TextureItem;

    [[nodiscard]] QString name() const { return name_; }
    void setName(const QString& name);

Q_SIGNALS:
    void nameChanged();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    QString name_;
};

} // namespace amberquill
