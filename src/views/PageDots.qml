pragma ComponentBehavior: Bound

import QtQuick
import Amberquill.Views

// One dot for each page. The current page has a brighter one.
Row {
    id: dots

    required property int count
    required property int current
    required property ViewTexts texts

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
                x: PixelGrid.snapped(5)
                y: x
                width: PixelGrid.snapped(8)
                height: width
                radius: width / 2
                fill: dot.index === dots.current ? Theme.currentDot : Theme.otherDot
            }

            TapHandler {
                gesturePolicy: TapHandler.ReleaseWithinBounds
                onTapped: dots.selected(dot.index)
            }
        }
    }
}
