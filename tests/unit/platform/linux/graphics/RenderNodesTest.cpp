#include "platform/linux/graphics/RenderNodes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace amberquill::desktop {
namespace {

using namespace Qt::StringLiterals;

// Folders with the layout of /dev/dri and /sys/class/drm.
class RenderNodes : public testing::Test {
protected:
    void addNode(const QString& name, const QString& driver) {
        QDir(folder_.path()).mkpath(u"dev"_s);
        QFile device(folder_.filePath(u"dev/"_s + name));
        ASSERT_TRUE(device.open(QIODevice::WriteOnly));
        if (!driver.isEmpty()) {
            const QString kernel = u"class/"_s + name + u"/device"_s;
            ASSERT_TRUE(QDir(folder_.path()).mkpath(kernel));
            ASSERT_TRUE(QFile::link(u"../../../../bus/pci/drivers/"_s + driver,
                                    folder_.filePath(kernel + u"/driver"_s)));
        }
    }

    [[nodiscard]] std::vector<RenderNode> found() const {
        return renderNodes(folder_.filePath(u"dev"_s).toStdString(),
                           folder_.filePath(u"class"_s).toStdString());
    }

    QTemporaryDir folder_;
};

TEST_F(RenderNodes, AreNamedByTheirKernelDriver) {
    addNode(u"renderD128"_s, u"i915"_s);
    const auto nodes = found();
    ASSERT_EQ(nodes.size(), 1U);
    EXPECT_EQ(nodes[0].driver, "i915");
    EXPECT_TRUE(nodes[0].mayBeOpened);
    EXPECT_TRUE(nodes[0].renders3d);
}

TEST_F(RenderNodes, DisplayOnlyDevicesAreLeftOut) {
    addNode(u"card0"_s, u"ast"_s);
    addNode(u"by-path"_s, {});
    EXPECT_TRUE(found().empty());
}

TEST_F(RenderNodes, WithoutADriverTheNameIsEmpty) {
    addNode(u"renderD128"_s, {});
    const auto nodes = found();
    ASSERT_EQ(nodes.size(), 1U);
    EXPECT_TRUE(nodes[0].driver.isEmpty());
}

TEST_F(RenderNodes, AVirtualGpuThatDoesNotAnswerHasNo3d) {
    addNode(u"renderD128"_s, u"virtio_gpu"_s);
    addNode(u"renderD129"_s, u"vmwgfx"_s);
    for (const auto& node : found()) {
        EXPECT_FALSE(node.renders3d) << node.driver.constData();
    }
    EXPECT_EQ(found().size(), 2U);
}

TEST_F(RenderNodes, AreNoneWithoutTheFolder) {
    EXPECT_TRUE(found().empty());
}

TEST_F(RenderNodes, AreBoundedInNumber) {
    for (int i = 0; i < 100; ++i) {
        addNode(u"renderD"_s + QString::number(i), {});
    }
    EXPECT_EQ(found().size(), 64U);
}

} // namespace
} // namespace amberquill::desktop
