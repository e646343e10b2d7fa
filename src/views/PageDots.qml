pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// One dot for each page, the one shown brighter than the others.
Row {
    id: dots

    required property int count
    required property int current
    required property ViewTexts texts
    required property double ratio // device pixels in a point

    signal selected(int page)

    spacing: 6

    Repeater {
        model: dots.count

        Item {
            id: dot

            required property int index

            width: 18
            height: 18

            Accessible.role: Accessible.PageTab
            Accessible.name: dots.texts.page(index + 1, dots.count)
            Accessible.selectable: true
            Accessible.selected: index === dots.current
            Accessible.onPressAction: {
                if (enabled)
                    dots.selected(index);
            }

            RoundedShape {
                x: Math.round(5 * dots.ratio) / dots.ratio
                y: x
                width: Math.round(8 * dots.ratio) / dots.ratio
                height: width
                radius: width / 2
                fill: Qt.rgba(1, 1, 1, dot.index === dots.current ? 0.95 : 0.35)
            }

            TapHandler {
                gesturePolicy: TapHandler.ReleaseWithinBounds
                onTapped: dots.selected(dot.index)
            }
        }
    }
}
