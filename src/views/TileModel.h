#pragma once

#include "model/LauncherModel.h"
#include "platform/MainQueue.h"
#include "views/TileRows.h"

#include <QtQml/qqmlregistration.h>
#include <vector>

namespace amberquill {

// The tiles of the pages, on a strip: page n begins n content widths from its left end, and turning a page
// moves the strip. While something moves, only the page turned to is made, and the pages that exist stay, up
// to a limit. At rest the rows become those of the page shown and its two neighbours, a few in each frame.
class TileModel : public amberquill::TileRows {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QPointF gridCenter READ gridCenter NOTIFY layoutChanged FINAL) // in the content's points

public:
    // Both outlive the tiles.
    TileModel(LauncherModel& model, MainQueue& queue, QObject* parent = nullptr);

    [[nodiscard]] QPointF gridCenter() const { return model_.metrics().gridRect().center(); }
    // Drops the tiles of all pages but the one shown and its neighbours. For a hidden launcher, which does
    // not settle by itself.
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
    // The rows of the pages that are whole or begun: all that exist, and up to `room` new ones, whose number
    // is subtracted from `room`.
    [[nodiscard]] std::vector<Row> rowsWith(int& room) const;
    [[nodiscard]] std::vector<Row> existingRows() const;

    LauncherModel& model_;
    MainQueue& queue_;
    std::vector<int> whole_;  // pages with all of their rows, ascending
    std::vector<int> begun_;  // pages with some of their rows, ascending
    std::vector<int> turned_; // the pages turned to, the latest first; no more than may exist
    bool isSettling_ = false;
    DelayedWork settling_;
};

} // namespace amberquill
