#pragma once

#include "data/FolderMetrics.h"
#include "model/LauncherModel.h"
#include "views/TileRows.h"

#include <QRectF>
#include <QUuid>
#include <optional>

namespace amberquill {

// The tiles of the open folder and the place of its panel, in the content's points. After the folder is
// closed the tiles stay until its panel has faded out.
class FolderTiles : public amberquill::TileRows {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY panelChanged FINAL)
    Q_PROPERTY(QRectF panelRect READ panelRect NOTIFY panelChanged FINAL)
    Q_PROPERTY(QRectF titleBand READ titleBand NOTIFY panelChanged FINAL)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged FINAL)

public:
    // The model outlives its tiles.
    explicit FolderTiles(LauncherModel& model, QObject* parent = nullptr);

    [[nodiscard]] bool isOpen() const { return isOpen_; }
    [[nodiscard]] bool isEmpty() const { return rows().empty(); }
    // On whole device pixels, so that the slab's outline is sharp.
    [[nodiscard]] QRectF panelRect() const;
    // The horizontal line that the title field is centred on; as wide as the field.
    [[nodiscard]] QRectF titleBand() const;
    [[nodiscard]] QString title() const { return title_; }

    // Renames the open folder.
    Q_INVOKABLE void rename(const QString& title);

Q_SIGNALS:
    void isOpenChanged();
    void panelChanged();
    void titleChanged();

private:
    void refresh();
    void relayout() override { refresh(); }
    void show(const Folder& folder);
    void dropWhenGone();
    [[nodiscard]] std::vector<Row> rowsOf(const Folder& folder) const;

    LauncherModel& model_;
    FolderMetrics metrics_;
    QString title_;
    bool isOpen_ = false;
};

} // namespace amberquill
