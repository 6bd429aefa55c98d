#pragma once

class QWidget;

/// Keeps the wheel from changing the choice of a list that only comes under the pointer: the combo boxes of the window
/// take the wheel when a key or a click has given them the focus, and pass it on to what is behind them before that.
void keepWheelFromLists(QWidget& window);
