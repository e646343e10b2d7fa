import QtQuick

// An item that exists only while it is needed: `OptionalItem { isNeeded: …; SomeItem { … } }`. A Loader would do the
// same, but Qt 6.4's makes no component of a file with `ComponentBehavior: Bound`, and it is a focus scope.
Repeater {
    required property bool isNeeded

    model: isNeeded ? 1 : 0
}
