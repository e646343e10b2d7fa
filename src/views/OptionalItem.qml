import QtQuick

// Makes the item inside it only while it is needed: `OptionalItem { isNeeded: …; SomeItem { … } }`. In Qt 6.4 a Loader
// cannot make components of files with `ComponentBehavior: Bound`; besides, a Loader is a focus scope.
Repeater {
    required property bool isNeeded

    model: isNeeded ? 1 : 0
}
