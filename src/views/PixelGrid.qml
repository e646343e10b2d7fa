pragma Singleton

import QtQuick

// The device pixels of the window. A binding that calls snapped() depends on the ratio, so it is evaluated again when
// the window moves to a screen with another one. Calls of a C++ function are not tracked.
QtObject {
    property double ratio: 1 // device pixels in a point, set by the root view

    // The nearest whole device pixel to a position or a length, all in points.
    function snapped(value: double): double {
        return Math.round(value * ratio) / ratio;
    }
}
