pragma Singleton

import QtQuick

// The device pixels of the window. A binding that rounds here is evaluated anew when the window comes to a screen of
// another resolution, which a function of C++ could not bring about.
QtObject {
    property double ratio: 1 // device pixels in a point, told by the root view

    // The nearest whole device pixel to a position or a length, all in points.
    function snapped(value: double): double {
        return Math.round(value * ratio) / ratio;
    }
}
