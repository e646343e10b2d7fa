#pragma once

#include "model/LauncherModel.h"
#include "views/TileRows.h"

#include <QtQml/qqmlregistration.h>
#include <vector>

namespace amberquill {

// The tiles of the pages. They stand on a strip on which page n begins n content widths from its left end;
// turning a page moves the strip. While something moves, the pages that were there stay and only the one
// turned to is made; once all rests, the rows are those of the page shown and its two neighbours.
class TileModel : public amberquill::TileRows {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QPointF gridCenter READ gridCenter NOTIFY layoutChanged FINAL) // in the content's points

public:
    // The model outlives its tiles.
    explicit TileModel(LauncherModel& model, QObject* parent = nullptr);

    [[nodiscard]] QPointF gridCenter() const { return model_.metrics().gridRect().center(); }

private:
    void refresh();
    void settle();
    void settleWhenAtRest();
    void relayout() override;
    [[nodiscard]] std::vector<int> pagesAtRest() const;
    [[nodiscard]] std::vector<Row> rowsOf(const std::vector<int>& pages) const;

    LauncherModel& model_;
    std::vector<int> pages_; // those whose tiles are rows now, ascending
    bool settlePosted_ = false;
};

} // namespace amberquill
