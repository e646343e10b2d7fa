#pragma once

#include "model/LauncherModel.h"
#include "platform/MainQueue.h"
#include "views/TileRows.h"

#include <QtQml/qqmlregistration.h>
#include <vector>

namespace amberquill {

// The tiles of the pages. They stand on a strip on which page n begins n content widths from its left end;
// turning a page moves the strip. While something moves, the pages that were there stay, up to a number of
// them, and only the one turned to is made; once all rests, the rows become those of the page shown and its
// two neighbours, a few for each frame.
class TileModel : public amberquill::TileRows {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QPointF gridCenter READ gridCenter NOTIFY layoutChanged FINAL) // in the content's points

public:
    // Both outlive the tiles.
    TileModel(LauncherModel& model, MainQueue& queue, QObject* parent = nullptr);

    [[nodiscard]] QPointF gridCenter() const { return model_.metrics().gridRect().center(); }
    // Drops the tiles of all pages but the one shown and its neighbours, though nothing is seen of it:
    // settling waits for the launcher.
    void dropPagesLeftBehind();

private:
    void refresh();
    void noteTurn(int page);
    void dropFarBehind();
    void settleLater();
    [[nodiscard]] bool settleSome();
    void settleWhenAtRest();
    bool dropOthers(const std::vector<int>& wanted);
    void relayout() override;
    [[nodiscard]] std::vector<int> pagesAtRest() const;
    [[nodiscard]] std::vector<Row> rowsOf(int page) const;
    // The rows of the pages that are whole or begun: those that are there, and of those that are missing as
    // many as there is room for. Afterwards `room` is what is left of it.
    [[nodiscard]] std::vector<Row> rowsWith(int& room) const;
    [[nodiscard]] std::vector<Row> rowsThere() const;

    LauncherModel& model_;
    MainQueue& queue_;
    std::vector<int> whole_;  // the pages whose tiles are all rows now, ascending
    std::vector<int> begun_;  // those of which only some may be, ascending
    std::vector<int> turned_; // the pages turned to, the latest first; as many as may be there
    bool isSettling_ = false;
    DelayedWork settling_;
};

} // namespace amberquill
