#pragma once

#include "data/LayoutCoding.h"
#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "motion/Timeline.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/MemoryPreferences.h"

#include <functional>
#include <memory>

namespace amberquill {

// Records what the model requests of its window.
class RecordingController final : public LauncherController {
public:
    void hide(const std::optional<QString>& thenOpen) override { hides.push_back(thenOpen); }
    void showMenu() override { ++menusShown; }
    void endEditing() override {
        ++editingEnded;
        whenEditingEnds();
    }

    std::vector<std::optional<QString>> hides;
    std::function<void()> whenEditingEnds = [] {};
    int editingEnded = 0;
    int menusShown = 0;
};

// A model with files in memory and virtual time. Its size is 1500 × 892: cells of 180 × 140 from (120, 120).
class ModelStage {
public:
    static inline const QString layoutPath = QStringLiteral("/data/Amberquill/layout.json");

    void begin() { Timeline::shared().runOn(&queue_); }
    void end() {
        model_.reset();
        Timeline::shared().runOn(nullptr);
    }

    // `count` applications named "App 1" and so on.
    static std::vector<AppInfo> apps(int count) {
        std::vector<AppInfo> result;
        for (int i = 1; i <= count; ++i) {
            result.push_back(
                {QStringLiteral("/Applications/%1.app").arg(i), QStringLiteral("App %1").arg(i)});
        }
        return result;
    }

    static QString path(int number) { return QStringLiteral("/Applications/%1.app").arg(number); }

    LauncherModel& makeModel() {
        model_ = std::make_unique<LauncherModel>(LauncherModel::Services{
            .queue = queue_,
            .files = files_,
            .preferences = preferences_,
            .applicationSupport = QStringLiteral("/data"),
            .scan =
                [this] {
                    ++scans_;
                    return installed_;
                },
            .rememberedNames = remembered_,
            .homes = homes_,
            .applyToFrameworks = applyToFrameworks_,
            .loginItem = loginItem_,
            .layoutIsLate = layoutIsLate_,
        });
        controller_ = std::make_shared<RecordingController>();
        model_->setController(controller_);
        return *model_;
    }

    // A model that has been shown with this many applications installed.
    LauncherModel& shownWith(int count) {
        installed_ = apps(count);
        LauncherModel& model = makeModel();
        model.setSize({1500, 892});
        model.willShow();
        queue_.runPosted();
        return model;
    }

    void press(const QPointF& at) { model_->pointerChanged({at, at}); }
    void dragTo(const QPointF& from, const QPointF& to) { model_->pointerChanged({from, to}); }
    void release(const QPointF& from, const QPointF& at) { model_->pointerEnded({from, at}); }
    void tap(const QPointF& at) {
        press(at);
        release(at, at);
    }

    ManualQueue queue_;
    MemoryFileSystem files_;
    MemoryPreferences preferences_;
    std::vector<AppInfo> installed_;
    QHash<QString, QString> remembered_;
    HomeFolders homes_;
    std::function<void(AppLanguage)> applyToFrameworks_ = [](AppLanguage) {};
    std::shared_ptr<LoginItem> loginItem_ = std::make_shared<NullLoginItem>();
    bool layoutIsLate_ = false;
    int scans_ = 0;
    std::unique_ptr<LauncherModel> model_;
    std::shared_ptr<RecordingController> controller_;
};

} // namespace amberquill
