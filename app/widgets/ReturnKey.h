#pragma once

class QKeyEvent;
class QWidget;

/// For a window without a default button: Return and Enter press the push button or tool button that has the focus.
/// False for all other keys, which remain the window's.
bool takesReturn(const QWidget& window, const QKeyEvent& event);
